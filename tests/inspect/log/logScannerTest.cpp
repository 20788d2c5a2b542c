// The scanner finds the same messages however a log is cut into blocks.
#include "vek/inspect/log/logScanner.hpp"
#include "tests/support/messages.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace vek::inspect;
using namespace vek::test;

struct found_t {
    std::string text, before, lineHead;
    std::uint64_t offset = 0, line = 0, column = 0;
    bool isDamaged = false;
    bool operator==(const found_t &) const = default;
};

std::ostream &operator<<(std::ostream &out, const found_t &found) {
    return out << "\n  " << shown(found.text) << " at " << found.offset << " = " << found.line << ":" << found.column
               << (found.isDamaged ? " damaged" : "") << ", behind '" << found.before << "', head '" << found.lineHead
               << "'";
}

class collector_t : public messageSink_t {
public:
    void message(const foundMessage_t &found) override {
        all.push_back({std::string(found.text), std::string(found.before), std::string(found.lineHead), found.offset,
                       found.line, found.column, found.isDamaged});
    }
    std::vector<found_t> all;
};

std::vector<found_t> scanned(std::string_view log, std::size_t block) {
    logScanner_t scanner;
    collector_t collector;
    for (std::size_t at = 0; at < log.size(); at += block)
        scanner.feed(log.substr(at, block), collector);
    scanner.finish(collector);
    EXPECT_EQ(scanner.offset(), log.size());
    return collector.all;
}

const std::string focus = "@@4112    62 7 41 {MEDIA_NAME=Violet;FOCUS_VALUE=3.250000;}!!";
const std::string state = "@@4118    38 7 42 {DEVICE_STATE=3;}!!";

struct scan_t {
    std::string log;
    std::vector<std::string> texts; ///< damaged ones begin with "~"
};

const scan_t cases[] = {
    {focus, {focus}},
    {"10:00 got " + focus + " and " + state + " today\n" + state + "\r\n", {focus, state, state}},
    {focus + focus + "\n", {focus, focus}},
    // Other programs' marks, and messages without a number.
    {"@@ -1,3 +1,4 @@ void f() {\n@@@@ @ @@\nmail a@@b\n" + state + "@", {state}},
    {"@@" + focus, {focus}},
    {"x @@41x2 {A=1;}!! y\n@@ {A=1;} nothing\n", {"~@@41x2 {A=1;}!!"}},
    {"@@x {A=1;}!!", {"~@@x {A=1;}!!"}},
    // However its numbers are spelt, and over line ends.
    {"@@ -1 @@\t+4118\n00044   +7 -42 {DEVICE_STATE=3;}!!\n", {"@@\t+4118\n00044   +7 -42 {DEVICE_STATE=3;}!!"}},
    {"@@\n\n" + state, {state}},
    {"@@-4118 99 7 42 {DEVICE_STATE=3;}!!\n", {"~@@-4118 99 7 42 {DEVICE_STATE=3;}!!"}},
    {std::string("@@4118 35 7 42 {DEVICE_\0TATE=3;}!!", 34), {std::string("~@@4118 35 7 42 {DEVICE_\0TATE=3;}!!", 35)}},
    // The wrong length: up to "!!".
    {"a @@4118    39 7 42 {DEVICE_STATE=3;}!! b\n" + state, {"~@@4118    39 7 42 {DEVICE_STATE=3;}!!", state}},
    {"@@4118    39 7 42 {DEVICE_STATE=3;}!! " + state, {"~@@4118    39 7 42 {DEVICE_STATE=3;}!!", state}},
    {"@@4202    9 7 42 {INFO=stop!! now;}!! b\n", {"~@@4202    9 7 42 {INFO=stop!! now;}!!"}},
    {"@@4118 99999999999 7 42 {DEVICE_STATE=3;!! and!!\n", {"~@@4118 99999999999 7 42 {DEVICE_STATE=3;!!"}},
    // Cut off: up to the next one, or to the line's end.
    {"a @@4118    38 7 42 {DEV" + state + "\n", {"~@@4118    38 7 42 {DEV", state}},
    {"@@4118    38 7 42 {DEV\r\nwell, hello there!!\n" + state, {"~@@4118    38 7 42 {DEV", state}},
    {"@@4118    38", {"~@@4118    38"}},
    // "@@" and digits in a text are no next one.
    {"@@4202    99 7 42 {INFO=a@@41 b!!c;}!! " + state, {"~@@4202    99 7 42 {INFO=a@@41 b!!c;}!!", state}},
    {"@@4202    99 7 42 {INFO=a@@41;}!!@@41", {"~@@4202    99 7 42 {INFO=a@@41;}!!", "~@@41"}},
    {"@@4118\n@@41", {"~@@4118", "~@@41"}},
    // Wrapped by a page, or with a line end in a text.
    {"see\n@@4112    62 7 41 {MEDIA_NAME=Violet;\n  FOCUS_VALUE=3.250000;}!!\n" + state,
     {"~@@4112    62 7 41 {MEDIA_NAME=Violet;\n  FOCUS_VALUE=3.250000;}!!", state}},
    {"@@4202    40 7 42 {INFO=one\n@@two!!;}!! b\n" + state, {"@@4202    40 7 42 {INFO=one\n@@two!!;}!!", state}},
};

TEST(LogScanner, FindsTheSameMessagesHoweverTheLogIsCut) {
    for (const scan_t &one : cases) {
        const std::vector<found_t> whole = scanned(one.log, one.log.size());
        std::vector<std::string> texts;
        for (const found_t &found : whole) {
            texts.push_back((found.isDamaged ? "~" : "") + found.text);
            EXPECT_EQ(one.log.substr(found.offset, found.text.size()), found.text);
            const auto start = one.log.begin(), at = start + static_cast<std::ptrdiff_t>(found.offset);
            EXPECT_EQ(found.line, 1 + static_cast<std::uint64_t>(std::count(start, at, '\n'))) << one.log;
            EXPECT_EQ(found.column, found.offset - (one.log.rfind('\n', found.offset) + 1) + 1) << one.log;
        }
        EXPECT_EQ(texts, one.texts) << one.log;
        for (std::size_t block = 1; block < one.log.size(); ++block)
            EXPECT_EQ(scanned(one.log, block), whole) << block << ": " << one.log;
    }
}

TEST(LogScanner, TellsWhatStandsInFront) {
    const std::string log = "x\n10:00 got " + focus + " and " + state + "\n" + std::string(5000, 'y') + state;
    for (const std::size_t block : {std::size_t{1}, std::size_t{100}, log.size()}) {
        const std::vector<found_t> found = scanned(log, block);
        ASSERT_EQ(found.size(), 3U);
        EXPECT_EQ(found[0].before, "10:00 got ");
        EXPECT_EQ(found[0].lineHead, "10:00 got ");
        EXPECT_EQ(found[1].before, " and ");
        EXPECT_EQ(found[1].lineHead, "10:00 got ");
        EXPECT_EQ(found[2].before, std::string(logScanner_t::headRoom, 'y'));
        EXPECT_EQ(found[2].lineHead, found[2].before);
    }
}

// Whatever a log has in it: what is kept of it stays small, and the next message is found.
TEST(LogScanner, GivesAMessageWithoutAnEndUp) {
    std::string endless = "@@4112    62 7 41 {" + std::string(3 * logScanner_t::memoryBound, 'x');
    endless[logScanner_t::memoryBound - 1] = '@'; // half a mark, at the end of what is given up
    for (const std::size_t block : {std::size_t{1} << 16, endless.size()}) {
        const std::vector<found_t> found = scanned(endless + state, block);
        ASSERT_EQ(found.size(), 2U);
        EXPECT_EQ(found[0].text.size(), logScanner_t::memoryBound);
        EXPECT_EQ(found[1].text, state);
    }
}

} // namespace
