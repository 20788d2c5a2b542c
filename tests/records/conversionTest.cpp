// What is longer than its place, converted; the table of odd and hostile bodies is conversions.md.
#include "tests/support/messages.hpp"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace vek::test;

std::string repeated(const std::string &text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

// What a body converts to, which starts and ends anywhere in the text when `expected` begins with "*".
void expectConverted(std::int32_t id, const std::string &body, const std::string &expected) {
    const std::string actual = converted(id, body);
    const bool isPart = expected.starts_with('*') && actual.find(expected.substr(1)) != std::string::npos;
    EXPECT_TRUE(isPart || actual == expected)
        << "   reads " << shown(body) << "\nexpected " << shown(expected) << "\n  writes " << shown(actual);
}

// Cases written as "body -> what it converts to".
void expectAll(std::int32_t id, std::initializer_list<std::string> cases) {
    for (const std::string &one : cases)
        expectConverted(id, one.substr(0, one.find(" -> ")), one.substr(one.find(" -> ") + 4));
}

// The same for the values of one key.
void expectValues(std::int32_t id, const std::string &key, std::initializer_list<std::string> cases) {
    for (const std::string &one : cases) {
        const std::string value = one.substr(one.find(" -> ") + 4);
        expectConverted(id, '{' + key + '=' + one.substr(0, one.find(" -> ")) + ";}",
                        value.empty() ? value : '*' + key + '=' + value + ';');
    }
}

TEST(Conversion, DropsWhatIsBeyondTheRoomOfAnArray) {
    const std::string start = "{STATUS=0;LOW_STATUS=0;SEVERITY=0;NUM_OF_MESSAGES=";
    const std::string overlong(300, 'm');
    expectAll(
        VEK_MSG_DEVICE_STATUS,
        {"{NUM_OF_MESSAGES=1000000;} -> " + start + "10;}", "{NUM_OF_MESSAGES=-3;MSGS={a,};} -> " + start + "-3;}",
         "{NUM_OF_MESSAGES=99;MSGS={1,2,3,4,5,6,7,8,9,a,b};} -> " + start + "10;MSGS={1,2,3,4,5,6,7,8,9,a,};}",
         "{NUM_OF_MESSAGES=10;MSGS={MSGS9=last;MSGS10=beyond;" + repeated("x,", 20) + "};} -> " + start +
             "10;MSGS={last,};}",
         "{NUM_OF_MESSAGES=1;MSGS={" + overlong + ",};} -> " + start + "1;MSGS={" + std::string(254, 'm') + ",};}"});
    expectValues(VEK_MSG_EXPOSE_JOB, "PUNCH_PARAMS",
                 {"{NUM_SYSTEMS=12;ACTIVE_SYSTEMS={1,2,3,4,5,6,7,8,9,10,11,12,};} -> "
                  "{NUM_SYSTEMS=10;ALIGN=0;ACTIVE_SYSTEMS={1,2,3,4,5,6,7,8,9,10,};}"});
    const std::string list = '{' + repeated("1,", 3000) + '}';
    expectValues(VEK_MSG_DATA_PATH_PORT, "DATA_PATH_PORT", {list + " -> " + list});
    expectValues(VEK_MSG_COLOR_TABLE, "COLOR_TABLE",
                 {"{{1,2,}," + repeated("{3,4,},", 300) + "} -> {{VALUE=1.000000;FLAGS=2;}," +
                  repeated("{VALUE=3.000000;FLAGS=4;},", 255) + '}'});
    expectValues(VEK_MSG_LAYOUT, "JOBTICKET_NAME", {overlong + " -> " + std::string(255, 'm')});
    expectValues(VEK_MSG_MEDIA_PARAMS, "CASSETTE_NAME", {overlong + " -> " + std::string(31, 'm')});
}

} // namespace
