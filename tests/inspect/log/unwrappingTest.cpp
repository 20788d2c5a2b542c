// Whatever a log is wrapped in, the messages in it are those of the log itself, with their times and lines.
#include "vek/inspect/log/unwrapping.hpp"

#include "tests/support/messages.hpp"
#include "vek/inspect/forms/growingLog.hpp"
#include "vek/inspect/forms/jsonAppender.hpp"
#include "vek/inspect/log/logScanner.hpp"
#include "vek/inspect/log/logTime.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <functional>

namespace {

using namespace vek;
using namespace vek::inspect;
using namespace vek::test;

struct unwrapped_t : messageSink_t {
    void message(const foundMessage_t &found) override {
        const std::optional<logTime_t> time = timeIn(found.lineHead);
        messages.push_back((time ? time->inWords().substr(0, 23) : "no time") + (found.isDamaged ? " damaged " : " ") +
                           std::string(found.text));
        lines.push_back(found.line);
    }
    std::vector<std::string> messages;
    std::vector<std::uint64_t> lines;
};

template <class Unwrapper>
unwrapped_t messagesIn(const std::string &log, std::size_t block, Unwrapper unwrapper) {
    unwrapped_t found;
    logScanner_t scanner;
    for (std::size_t at = 0; at < log.size(); at += block)
        scanner.feed(unwrapper.take(std::string_view(log).substr(at, block)), found);
    scanner.feed(unwrapper.finish(), found);
    scanner.finish(found);
    return found;
}

unwrapped_t messagesIn(const std::string &log, std::size_t block) {
    return messagesIn(log, block, unwrapper_t(wrappingOf(log)));
}

// Every sample, texts with quotes, backslashes and controls, and lines without messages.
std::vector<std::string> logLines() {
    std::vector<std::string> lines;
    std::vector<std::string> texts{"no message here",
                                   message(4112, "{MEDIA_NAME=C:\\new\\x41 \"a\"\3 \xC3\xA4\xF0\x9F\x98\x80;}"),
                                   "@@4112    99 7 1 {cut}!!"};
    for (const sample_t &sample : samples())
        if (sample.text.size() < 3000)
            texts.push_back(sample.text);
    for (std::size_t i = 0; i < texts.size(); ++i)
        lines.push_back("2026-03-01T08:00:" + std::to_string(10 + i % 50) + ".25" + std::to_string(i % 10) +
                        " host > " + texts[i]);
    return lines;
}

std::string jsonOf(std::string_view text) {
    std::string out;
    jsonAppender_t(out).value(text);
    return out;
}

std::string inUtf16(const std::string &log, bool isBigEnd) {
    std::string out;
    const auto put = [&](std::uint32_t unit) {
        out += static_cast<char>(isBigEnd ? unit >> 8 : unit & 255);
        out += static_cast<char>(isBigEnd ? unit & 255 : unit >> 8);
    };
    for (std::size_t at = 0; at < log.size();) {
        const auto first = static_cast<unsigned char>(log[at]);
        const std::size_t size = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
        std::uint32_t character = size == 1 ? first : first & (0x7FU >> size);
        for (std::size_t i = 1; i < size; ++i)
            character = character << 6 | (static_cast<unsigned char>(log[at + i]) & 0x3FU);
        if (character >= 0x10000)
            put(0xD800 + ((character - 0x10000) >> 10));
        put(character >= 0x10000 ? 0xDC00 + ((character - 0x10000) & 0x3FF) : character);
        at += size;
    }
    return out;
}

std::string inEscapes(std::string_view text, bool isAllHex) {
    std::string out;
    char digits[5];
    for (const char c : text) {
        std::snprintf(digits, sizeof digits, "\\x%02x", static_cast<unsigned char>(c));
        const bool isPlain = c >= ' ' && c != '"' && c != '\\' && c < 0x7F;
        out += !isAllHex && isPlain     ? std::string(1, c)
               : c == '\\' && !isAllHex ? "\\\\"
               : c == '"' && !isAllHex  ? "\\\""
                                        : digits;
    }
    return out;
}

TEST(Unwrapping, FindsTheMessagesOfTheLogItself) {
    const std::vector<std::string> lines = logLines();
    const auto each = [&lines](const std::function<std::string(const std::string &line, std::size_t number)> &wrap) {
        std::string log;
        for (std::size_t i = 0; i < lines.size(); ++i)
            log += wrap(lines[i], i);
        return log;
    };
    const std::string plain = each([](const auto &line, auto) { return line + "\n"; });
    const auto bytes = [](const std::string &line) {
        std::string list;
        for (const char c : line)
            list += (list.empty() ? "" : ",") + std::to_string(static_cast<unsigned char>(c));
        return list;
    };
    constexpr std::size_t timeSize = 24;
    struct case_t {
        const char *name;
        std::string log;
        bool keepsLines = true;
    };
    const case_t cases[] = {
        {"nothing", plain},
        {"UTF-16", inUtf16("\xEF\xBB\xBF" + plain, false)},
        {"UTF-16, the other end", inUtf16("\xEF\xBB\xBF" + plain, true)},
        {"UTF-16 without mark", inUtf16(plain, false)},
        {"the other end without mark", inUtf16(plain, true)},
        {"a journal", each([](const auto &line, auto) {
             return "{\"_PID\":\"7\",\"MESSAGE\":" + jsonOf(line) + ",\"__REALTIME_TIMESTAMP\":\"1772352000250000\"}\n";
         })},
        {"a journal of bytes",
         each([&](const auto &line, auto) { return "{\"MESSAGE\" : [" + bytes(line) + "]}\r\n"; })},
        {"the time behind", each([](const auto &line, auto) {
             return "{\"log\":" + jsonOf(line.substr(timeSize)) + ",\"time\":\"" + line.substr(0, timeSize - 1) +
                    "\"}\n";
         })},
        {"a container's, in parts", each([](const auto &line, auto) {
             return "{\"log\":" + jsonOf(line.substr(0, 40)) +
                    ",\"stream\":\"stdout\"}\n{\"log\":" + jsonOf(line.substr(40) + "\n") + ",\"stream\":\"stdout\"}\n";
         }),
         false},
        {"JSON in JSON", each([](const auto &line, auto) {
             return "{\"log\":" + jsonOf("{\"level\":1,\"text\":{\"m\":" + jsonOf(line) + "}}\n") +
                    ",\"stream\":\"stderr\"}\n";
         })},
        {"an array", "[" + each([](const auto &line, auto i) {
                         return (i == 0 ? "" : ",") + ("{\"m\":" + jsonOf(line) + "}\n");
                     }) + "]"},
        {"an array that is laid out", "[\n" + each([](const auto &line, auto i) {
                                          return std::string(i == 0 ? "" : ",\n") +
                                                 "  {\n    \"n\": [1, {}],\n    \"m\": " + jsonOf(line) + "\n  }";
                                      }) + "\n]\n",
         false},
        {"an array of texts",
         "[" + each([](const auto &line, auto i) { return (i == 0 ? "" : ",\n") + jsonOf(line); }) + "]"},
        {"escapes", each([](const auto &line, auto) { return "b\"" + inEscapes(line, false) + "\\n\"\n"; })},
        {"nothing but escapes", each([](const auto &line, auto) { return inEscapes(line, true) + "\n"; })},
    };
    const unwrapped_t expected = messagesIn(plain, plain.size());
    ASSERT_GT(expected.messages.size(), 40U);
    EXPECT_EQ(wrappingOf(plain), wrapping_t::none);
    for (const case_t &one : cases)
        for (const std::size_t block : {std::size_t{1}, std::size_t{7}, std::size_t{4096}, one.log.size()}) {
            const unwrapped_t found = messagesIn(one.log, block);
            ASSERT_EQ(found.messages, expected.messages) << one.name << " in blocks of " << block;
            const unwrapped_t growing = messagesIn(one.log, block, growingLog_t());
            ASSERT_EQ(growing.messages, expected.messages) << one.name << " that grows by " << block;
            if (one.keepsLines) {
                ASSERT_EQ(found.lines, expected.lines) << one.name;
                ASSERT_EQ(growing.lines, expected.lines) << one.name << " that grows";
            }
        }
}

// A log that grows seems plain until a message has escapes, or is right as it stands with its backslashes.
TEST(Unwrapping, FindsEscapesOfALaterMessage) {
    const std::string path = message(4112, "{MEDIA_NAME=C:\\x41;}");
    const std::string umlaut = message(4112, "{MEDIA_NAME=\xC3\xA4!! \\x41;}");
    const std::string seemsPlain =
        "a\\b @@ " + message(4112, "{MEDIA_NAME=a!!b;}") + "\n@@4112    99 7 1 {C:\\x}!!\n" + "on ";
    const auto inEach = [&](const auto &form) { return seemsPlain + form(umlaut) + "\n" + form(path) + "\n"; };
    const auto asItIs = [](const std::string &text) { return text; };
    const auto escaped = [](const std::string &text) { return inEscapes(text, false); };
    const std::string paths = seemsPlain + path + "\n" + escaped(umlaut) + "\n";
    for (const std::size_t block : {std::size_t{1}, std::size_t{5}, std::size_t{64}, std::size_t{4096}}) {
        EXPECT_EQ(messagesIn(inEach(escaped), block, growingLog_t()).messages,
                  messagesIn(inEach(asItIs), 4096).messages);
        EXPECT_EQ(messagesIn(paths, block, growingLog_t()).messages,
                  messagesIn(paths, 4096, unwrapper_t(wrapping_t::none)).messages);
    }
}

// A line is there as soon as its end is.
TEST(Unwrapping, WaitsForNothingBehindALine) {
    const std::string text = message(4112, "{MEDIA_NAME=\xC3\xA4;}");
    for (const std::string &line :
         {text, "{\"m\":" + jsonOf(text) + "}", inEscapes(text, false), inEscapes(text, true)}) {
        growingLog_t log;
        unwrapped_t found;
        logScanner_t scanner;
        for (std::size_t i = 0; i < 6; ++i) {
            for (const char c : (i % 2 == 0 ? "link up" : line) + "\n")
                scanner.feed(log.take({&c, 1}), found);
            EXPECT_EQ(found.messages.size(), (i + 1) / 2) << line;
        }
    }
}

TEST(Unwrapping, LeavesAloneWhatIsNoWrapping) {
    const std::string text = message(4112, "{MEDIA_NAME=C:\\new;}");
    for (const std::string &log :
         std::vector<std::string>{std::string(), std::string("{"), std::string("[1,2]"), text,
                                  "{\"id\":4112,\"focusValue_t\":{\"MEDIA_NAME\":\"@@4112 {\"}}", "{\"a\":1}\n" + text,
                                  "a\\n\n" + text, "C:\\new\n" + message(4112, "{MEDIA_NAME=a;}")})
        EXPECT_EQ(wrappingOf(log), wrapping_t::none) << log;
    // Lines between objects stay, and what begins as one but is none.
    const std::string wrapped = "{\"m\":" + jsonOf(text) + "}\n";
    EXPECT_EQ(messagesIn(wrapped + text + "\n{\"broken\n{" + text + "\n" + wrapped, 5).messages.size(), 4U);
}

TEST(LogTime, GivesADateWithoutAYearTheLatestThatIsNotToCome) {
    const std::int64_t now = std::time(nullptr);
    for (std::int64_t days = 0; days < 364; ++days) {
        const auto time = static_cast<std::time_t>(now - days * 86400);
        char line[32], iso[32];
        std::strftime(line, sizeof line, "%b %e %H:%M:%S", std::gmtime(&time));
        std::strftime(iso, sizeof iso, "%Y-%m-%dT%H:%M:%S", std::gmtime(&time));
        EXPECT_EQ(timeIn(line)->inWords(), iso);
    }
}

} // namespace
