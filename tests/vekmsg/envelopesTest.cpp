// One envelope is one thing for all who look at it: the calls, the front, inspection, the scanner, the page's rows and
// each command of the tool tell the same id, numbers and value, and whether it is damaged.
//
// What broke before: of "@@<tab>4112 ..." get gave the value, check found nothing, and the summary an unknown id.
#include "tests/support/messages.hpp"
#include "tools/page/core/logRows.hpp"
#include "vek/api/private/headerNumbers.hpp"
#include "vek/api/vekParams2ASCII.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/log/logScanner.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <regex>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace vek;

const std::string body = "{MEDIA_NAME=Violet;FOCUS_VALUE=3.250000;}";

struct envelopeCase_t {
    std::string text;    // "#" is the right length, "{}" the body
    std::string numbers; // id, echo tag and sequence number, "-" for one that isn't there; "" when all must agree only
    bool isDamaged = false;
};

std::vector<envelopeCase_t> envelopes() {
    std::vector<envelopeCase_t> all{
        {"@@4112    # 7 41 {}!!", "4112 7 41"},
        {"@@\t4112    # 7 41 {}!!", "4112 7 41"},
        {"@@  +4112 # +7 +41 {}!!", "4112 7 41"},
        {"@@4112  +#   -7\t \t-41 {}!!", "4112 -7 -41"},
        {"@@004112 000# 007 000041 {}!!", "4112 7 41"},
        {"@@\n4112\r\n#\n7\v41 {}!!", "4112 7 41"},
        {"@@4112 # - 41 {}!!", "4112 - 41"},
        {"@@4112 # 99999999999 -99999999999 {}!!", "4112 2147483647 -2147483648"},
        {"@@99999 # 7 41 {}!!", "99999 7 41"},
        {"@@4294971408 # 7 41 {}!!", "2147483647 7 41"}, // not 4112
        {"@@4112 4294967359 7 41 {}!!", "4112 7 41", true},
        {"@@4112 -63 7 41 {}!!", "4112 7 41", true},
        {"@@4112    62 7 41 {}!", "4112 7 41", true},
        {"@@4112 # 7 41 {}!!!", "4112 7 41"},
        {std::string("@@4112 # 7 41 {MEDIA_NAME=Vio\0let;}!!", 37), "4112 7 41", true},
    };
    // Cut at every byte behind the id.
    const std::string whole = test::message(4112, body);
    for (std::size_t size = 6; size < whole.size(); ++size)
        all.push_back({whole.substr(0, size), "", true});
    return all;
}

// A right length that has its own digits in it.
std::string textOf(const envelopeCase_t &one) {
    std::string text = one.text;
    if (const std::size_t at = text.find("{}"); at != std::string::npos)
        text.replace(at, 2, body);
    if (const std::size_t at = text.find('#'); at != std::string::npos)
        text.replace(at, 1, std::to_string(text.size() + 2)); // two digits and the NUL for one character
    return text;
}

std::string words(std::initializer_list<std::optional<std::int32_t>> numbers) {
    std::string all;
    for (const std::optional<std::int32_t> &number : numbers)
        all.append(all.empty() ? "" : " ").append(number ? std::to_string(*number) : "-");
    return all;
}

std::string output(const std::string &arguments) {
    std::string all;
    FILE *const pipe = popen((VEK_TOOL " " + arguments + " 2>/dev/null").c_str(), "r");
    char block[4096];
    for (std::size_t size; (size = std::fread(block, 1, sizeof block, pipe)) > 0;)
        all.append(block, size);
    pclose(pipe);
    return all;
}

std::optional<std::int32_t> numberIn(const std::string &text, const char *pattern) {
    std::smatch found;
    return std::regex_search(text, found, std::regex(pattern)) ? std::optional(std::stoi(found[1])) : std::nullopt;
}

std::string numbersIn(const std::string &text, const std::array<const char *, 3> &patterns) {
    return words({numberIn(text, patterns[0]), numberIn(text, patterns[1]), numberIn(text, patterns[2])});
}

std::string numbersOf(const inspect::envelopeParts_t &parts) {
    const auto value = [](const inspect::envelopeNumber_t &number) {
        return number.isThere ? std::optional(number.value) : std::nullopt;
    };
    return words({value(parts.id), value(parts.echoTag), value(parts.sequenceNumber)});
}

page::row_t pageRow(const std::string &log) {
    page::logRows_t rows;
    std::string out;
    rows.take(log, out);
    rows.take("", out);
    page::row_t row{};
    EXPECT_EQ(out.size(), sizeof row);
    std::memcpy(&row, out.data(), std::min(out.size(), sizeof row));
    return row;
}

// Of a damaged envelope a call may read less than people see.
void expectCallsAgree(const std::string &text, const std::string &numbers, bool isDamaged) {
    headerNumbers = {-12345, -12346};
    std::int32_t id = -1;
    void *structure = nullptr;
    testing::internal::CaptureStdout();
    vekStrToVal(text.c_str(), &id, &structure);
    testing::internal::GetCapturedStdout();
    const headerNumbers_t read = headerNumbers;
    const test::structure_t owner(id, structure);
    const auto ifRead = [](std::int32_t number, std::int32_t before) {
        return number == before ? std::nullopt : std::optional(number);
    };
    const std::string all = words({id, ifRead(read.echoTag(), -12345), ifRead(read.sequenceNumber(), -12346)});
    EXPECT_TRUE(all == numbers || (isDamaged && numbers.starts_with(words({id})))) << all;
    if (!isDamaged && id == 4112) {
        EXPECT_EQ(static_cast<FocusValue *>(structure)->focusValue, 3.25);
    }
}

void expectToolAgrees(const std::string &file, const std::string &numbers, bool isDamaged) {
    const std::string id = numbers.substr(0, numbers.find(' '));
    EXPECT_EQ(numbersIn(output("json " + file), {"\"id\":(-?\\d+)", "\"echo\":(-?\\d+)", "\"seq\":(-?\\d+)"}), numbers);
    EXPECT_EQ(numbersIn(output("last --json " + file), {"\"id\":(-?\\d+)", "\"echo\":(-?\\d+)", "\"seq\":(-?\\d+)"}),
              numbers);
    EXPECT_EQ(numbersIn(output("flat " + file), {"@id = (-?\\d+)", "@echo = (-?\\d+)", "@seq = (-?\\d+)"}), numbers);
    const std::string title = output("show " + file);
    const std::array<const char *, 3> inTitle{"\n\\w+ (-?\\d+)", ", echo (-?\\d+)", ", sequence (-?\\d+)"};
    EXPECT_EQ(numbersIn(title, inTitle), numbers) << title;
    if (id.size() < 10) { // which an id that is asked for may have
        EXPECT_EQ(output("show --id " + id + " " + file), title);
    }
    EXPECT_EQ(output("show --id 4113 " + file), "");
    const std::string summary = output("summary " + file);
    EXPECT_EQ(numberIn(summary, "\n *(-?\\d+) "), std::stoi(id)) << summary;
    EXPECT_NE(summary.find(isDamaged ? "1 message, 1 damaged" : "1 message, 0 damaged"), std::string::npos) << summary;
    const std::string found = output("check " + file);
    const std::regex envelope("\\[(wrong-length|no-end-marker|inner-nul|no-id|no-start-marker)\\]");
    EXPECT_EQ(std::regex_search(found, envelope), isDamaged) << found;
    if (!isDamaged && id == "4112") {
        EXPECT_EQ(output("get FOCUS_VALUE " + file), "3.250000\n");
        EXPECT_EQ(output("get --id 4112 FOCUS_VALUE " + file), "3.250000\n");
    }
}

TEST(Envelopes, AreTheSameForAllWhoLookAtThem) {
    const std::string file =
        (std::filesystem::temp_directory_path() / ("vekEnvelopes." + std::to_string(getpid()))).string();
    for (const envelopeCase_t &one : envelopes()) {
        const std::string text = textOf(one);
        SCOPED_TRACE(test::shown(text));
        const inspect::tree_t tree(text);
        const std::string numbers = one.numbers.empty() ? numbersOf(tree.envelope()) : one.numbers;
        expectCallsAgree(text, numbers, one.isDamaged);
        const problem_t problem = checkMessage(text, std::stoi(numbers));
        EXPECT_EQ(static_cast<bool>(problem), one.isDamaged) << problem.text;
        EXPECT_EQ(isEnvelopeDamaged(text), one.isDamaged);
        EXPECT_EQ(messageId(text), std::stoi(numbers));
        EXPECT_EQ(numbersOf(tree.envelope()), numbers);
        EXPECT_EQ(static_cast<bool>(tree.envelope().problem), one.isDamaged);
        const std::string log = "got " + text + "\n";
        const page::row_t row = pageRow(log);
        const std::optional<std::int32_t> sequence = row.hasSequence != 0 ? std::optional(row.sequence) : std::nullopt;
        EXPECT_TRUE(numbers.ends_with(" " + words({sequence})) && numbers.starts_with(words({row.id}))) << row.id;
        EXPECT_EQ(row.isDamaged != 0, one.isDamaged);
        if (one.numbers.empty() && text.size() % 4 != 0)
            continue; // the tool takes its time
        std::ofstream(file, std::ios::binary) << log;
        expectToolAgrees(file, numbers, one.isDamaged);
    }
    std::filesystem::remove(file);
}

// Half a marker is none: a call reads nothing, a log has no message there, and of a file alone all say so.
TEST(Envelopes, NeedTheirWholeStartMarker) {
    for (const std::string start : {"@", "", " @@"}) {
        const std::string text = start + test::message(4112, body).substr(2);
        EXPECT_EQ(readEnvelope(text).result, envelopeResult_t::wrongMarker);
        EXPECT_EQ(checkMessage(text, 4112).code, problemCode_t::noStartMarker);
        EXPECT_EQ(messageId(text), 0);
        const inspect::tree_t tree(text);
        EXPECT_TRUE(tree.envelope().startMarker.isEmpty() || !tree.envelope().before.isEmpty());
        EXPECT_TRUE(tree.envelope().problem);
    }
}

} // namespace
