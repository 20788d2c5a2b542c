// What the typed front refuses: why, and where. A case is a text and, under it, a caret at the byte that the report
// names, the code, and the report. "~" stands for a NUL.
#include "tests/front/hostTest.hpp"
#include "vek/api/vekParams2ASCII.hpp"

#include <algorithm>
#include <iterator>
#include <string>

namespace {

using namespace vek;

constexpr const char *refusals[] = {
    R"(
^ noStartMarker: the text does not begin with "@@")",
    R"( @@4112    22 -1 1 !!
^ noStartMarker: the text does not begin with "@@")",
    R"(@@
  ^ noId: no message id behind "@@")",
    R"(@@  x
    ^ noId: no message id behind "@@")",
    R"(@@- 20 -1 1 {A=B;}!!
  ^ noId: no message id behind "@@")",
    R"(@@4112
      ^ wrongLength: the length is said to be 0, but the text has 7 characters with its NUL)",
    R"(@@4112    20 -1 1 !!
          ^ wrongLength: the length is said to be 20, but the text has 21 characters with its NUL)",
    R"(@@4112 99999999999 -1 1 !!
       ^ wrongLength: the length is said to be 2147483647, but the text has 27 characters with its NUL)",
    R"(@@4112 -21 -1 1 !!
       ^ wrongLength: the length is said to be -21, but the text has 19 characters with its NUL)",
    R"(@@4112    21 -1 1 !?
                  ^ noEndMarker: the text does not end with "!!")",
    R"(@@4112    20 -1 1 !
                 ^ noEndMarker: the text does not end with "!!")",
    R"(@@4112    13
            ^ noEndMarker: the text does not end with "!!")",
    R"(@@4112    21 -1 1~!!
                 ^ innerNul: a NUL inside the text)",
    R"(@@4112    22 -1 1 !!~~
                    ^ innerNul: a NUL inside the text)",
    R"(@@4100    21 -1 1 !!
  ^ otherId: the text is message 4100, not 4112)",
    R"(@@  5000    23 -1 1 !!
    ^ otherId: the text is message 5000, not 4112)",
};

const char *nameOf(problemCode_t code) {
    constexpr const char *names[] = {"none",        "noStartMarker", "innerNul", "noId",          "wrongLength",
                                     "noEndMarker", "otherId",       "tooLong",  "countAboveRoom"};
    return names[static_cast<int>(code)];
}

class ProblemTest : public HostTest {};

TEST_F(ProblemTest, RefusedTextsSayWhyAndWhere) {
    for (const std::string expected : refusals) {
        const std::string shown = expected.substr(0, expected.find('\n'));
        std::string text = shown;
        std::replace(text.begin(), text.end(), '~', '\0');
        problem_t problem;
        EXPECT_EQ(parse<FocusValue>(text, problem), nullptr) << shown;
        EXPECT_EQ(shown + '\n' + std::string(problem.offset, ' ') + "^ " + nameOf(problem.code) + ": " + problem.text,
                  expected);
        try {
            parse<FocusValue>(text);
            ADD_FAILURE() << "nothing thrown for " << shown;
        } catch (const messageError_t &error) {
            EXPECT_EQ(error.code(), problem.code);
            EXPECT_EQ(error.offset(), problem.offset);
            EXPECT_EQ(error.what(), problem.text + " (byte " + std::to_string(problem.offset) + ")");
        }
    }
}

TEST_F(ProblemTest, RefusedTextsLeaveTheHeaderNumbers) {
    parse<DeviceState>("@@4118    38 7 41 {DEVICE_STATE=3;}!!");
    problem_t problem;
    parse<DeviceState>("@@4118    37 8 51 {DEVICE_STATE=3;}!!", problem);
    EXPECT_TRUE(problem);
    parse<FocusValue>("@@4118    38 9 61 {DEVICE_STATE=3;}!!", problem);
    EXPECT_TRUE(problem);
    const auto state = parse<DeviceState>("@@4118    38 7 41 {DEVICE_STATE=4;}!!", problem);
    EXPECT_FALSE(problem); // a problem of before is gone
    EXPECT_EQ(print(*state, problem), "@@4118    38 7 42 {DEVICE_STATE=4;}!!");
}

TEST_F(ProblemTest, MessagesThatCannotBeReadBackAreNotWritten) {
    FocusValue focus;
    problem_t problem;
    const auto printed = [&](std::size_t nameLength) {
        parse<DeviceState>("@@4118    38 7 41 {DEVICE_STATE=3;}!!"); // the same header numbers each time
        focus.mediaName = string_t(nameLength, 'x');
        return print(focus, problem);
    };
    const std::size_t largestName = 99999 - printed(1).size(); // of the 99,999, a NUL is one
    const std::string largest = printed(largestName);
    EXPECT_FALSE(problem);
    EXPECT_EQ(largest.size(), 99998U);
    EXPECT_EQ(parse<FocusValue>(largest)->mediaName.length(), largestName);

    EXPECT_EQ(printed(largestName + 1), "");
    EXPECT_EQ(problem.code, problemCode_t::tooLong);
    EXPECT_EQ(problem.text, "the message would have 100000 characters with its NUL, 99999 are the most");
    EXPECT_THROW(print(focus), messageError_t);

    DeviceStatus status{};
    for (const std::int32_t count : {INT32_MIN, -1, 0, 10, 11}) {
        status.numOfMessages = count;
        EXPECT_EQ(print(status, problem) == "", count == 11);
        EXPECT_EQ(problem.code, count == 11 ? problemCode_t::countAboveRoom : problemCode_t::none);
    }
    EXPECT_EQ(problem.text, "numOfMessages is 11, there is room for 10");
}

} // namespace
