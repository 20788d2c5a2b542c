// Bodies and what they convert to, through a structure and back: how odd, damaged and hostile texts are read.
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

TEST(Conversion, AssignsPairsByKeyOrByPosition) {
    expectAll(VEK_MSG_TABLE_REF, // an integer NUM and a text NAME
              {"{NAME=x;NUM=5;} -> {NUM=5;NAME=x;}", "{5;x;surplus} -> {NUM=5;NAME=x;}", "5 -> {NUM=0;}",
               "{ -> {NUM=0;}", "x57 -> {NUM=5;}", "(NUM=5;) -> {NUM=5;}",
               "{num=6;NUM =7;UNKNOWN=1;NUM=5;} -> {NUM=5;}", "{NAME=x;NUM=1;NAME=y;NUM=2;} -> {NUM=1;NAME=x;}",
               "{NAME=\"\";NAME=x;} -> {NUM=0;}",
               "{NAME=;NUM=5;} -> {NUM=0;NAME=NUM;}",  // the empty value swallows the next token
               "{loose;6;NAME=x;} -> {NUM=0;NAME=x;}", // one "=" makes the whole body keyed
               "{\"NUM\"=5;{NAME}=x;} -> {NUM=5;}", "{NAME={x;NUM=3;} -> {NUM=0;}", "{={x;NUM=3;} -> {NUM=0;}"});
    expectAll(VEK_MSG_TABLE_REF,
              {"{NAME==;,x;NUM;=3} -> {NUM=3;NAME=x;}", "{;,;=1;NUM,=3;NAME=} -> {NUM=3;}",
               "{=\"0123456789abcdef\";NUM=3} -> {NUM=3;}", "{NAME=\"x;NUM=3;} -> {NUM=0;NAME=x\2NUM\0013\2;}",
               "{NAME=x\"y;NUM\"=3;z\";} -> {NUM=0;NAME=x\"y;}", "{NAME={\"}\";NUM=3;} -> {NUM=0;NAME=\4\"\5;}",
               "{NAME={1,{2},};NUM=3;} -> {NUM=3;NAME=\0041\3\0042\5\3\5;}", "{NAME=};NUM=3} -> {NUM=3;NAME=\5;}",
               "{\"3\"\"a\"b} -> {NUM=3;NAME=a;}", "{{3}}}} -> {NUM=0;NAME=\5\5;}", "{,,3;,;x} -> {NUM=3;NAME=x;}"});
    expectValues(VEK_MSG_TABLE_REF, "NAME",
                 {"a\"b\"c -> a\"b\"c", "\"a;b=c,\" -> a\2b\1c\3", "{x;{y}} -> \4x\2\4y\5\5", "} -> \5",
                  " a\tb\n\x7f\xff -> \040a\tb\n\x7f\xff"});
}

TEST(Conversion, ReadsNumbersAsFarAsTheyGo) {
    expectValues(VEK_MSG_DEVICE_STATE, "DEVICE_STATE",
                 {"12abc -> 12", "0x10 -> 0", " \t\n\v\f\r-5 -> -5", "+-7 -> 0", "1.9e3 -> 1",
                  "2147483648 -> -2147483648", "99999999999999999999 -> 1661992959"});
    expectValues(VEK_MSG_EXPOSE_RESOLUTION, "LASER_INTENSITY", {"70000 -> 4464", "32768 -> -32768"});
    expectValues(VEK_MSG_FOCUS_VALUE, "FOCUS_VALUE",
                 {" \v+.5x -> 0.500000", "-.e5 -> 0.000000", "-0 -> -0.000000", "1e+x -> 1.000000", "inf -> 0.000000",
                  "nan -> 0.000000", "0x1p3 -> 0.000000", "-1e400 -> -inf", "0.0078125 -> 0.007812",
                  "1e23 -> 99999999999999991611392.000000"});
    expectAll(VEK_MSG_DELAY_VALUE_TABLE,
              {"{DELAY_VALUE_TABLE={{0.1,16777217,},{1e39,-1e-50,},};} -> {DELAY_VALUE_TABLE={{RESOLUTION=0.100000;"
               "DELAY_VAL_MIC=16777216.000000;},{RESOLUTION=inf;DELAY_VAL_MIC=-0.000000;},};}"});
    expectValues(
        VEK_MSG_EXPOSE_PARAMS, "W_SIZE_PIXEL", // an integer that stands in the text as a real
        {"-12.9 -> -12.000000", "2147483647.9 -> 2147483647.000000", "-2147483649 -> 0.000000", "1e400 -> 0.000000"});
}

TEST(Conversion, TakesWordsByTheLetter) {
    expectValues(VEK_MSG_BYTE_ID, "ID", {"TRUE -> TRUE", "True -> FALSE", "TRUE1 -> FALSE", " TRUE -> FALSE"});
    expectValues(VEK_MSG_MEDIA, "TYPE",
                 {"unknown_e -> unknown_e", "negative_e -> mediaFilm_e", "MEDIAPLATE_E -> mediaFilm_e"});
    // Only where the record is the structure can an unknown name be told from the first one.
    expectAll(VEK_MSG_GDAPI_DATA_PATH, {"{GDAPI_DATA_PATH=tsp;LPT_SCSI_port=3;} -> {LPT_SCSI_port=3;}",
                                        "{GDAPI_DATA_PATH=x;GDAPI_DATA_PATH=TSP;LPT_SCSI_PORT=3;} -> "});
}

TEST(Conversion, ReadsListsByPositionOrByExactKey) {
    expectValues(VEK_MSG_DATA_PATH_PORT, "DATA_PATH_PORT",
                 {"{1,70000,-3} -> {1,4464,-3,}", "{\"\",5,} -> {0,5,}", "{=} -> ", "7890 -> {89,}",
                  "{DATA_PATH_PORT2=7;DATA_PATH_PORT0=3;} -> {3,0,}", // only as many elements as pairs
                  "{DATA_PATH_PORT01=7;DATA_PATH_PORT1=3;} -> {0,3,}", "{DATA_PATH_PORT4294967296=7;} -> {0,}",
                  "{DATA_PATH_PORT0=1;DATA_PATH_PORT0=2;} -> {1,0,}",
                  "{5,6,DATA_PATH_PORT1=9;} -> {0,9,0,}", // keyed from the first element on
                  '{' + repeated("1,", 3000) + "} -> {" + repeated("1,", 3000) + '}'});
    expectAll(VEK_MSG_MEDIA_GROUP, {"{MEDIA_GROUP={a,b,c=,};I_COUNT=1;} -> {IS_INSTALLED=0;I_COUNT=1;}",
                                    "{MEDIA_GROUP={a,\"\",{b},\"x,y\",};I_COUNT=1;} -> "
                                    "{IS_INSTALLED=0;I_COUNT=1;MEDIA_GROUP={a,\4b\5,x\3y,};}"});
    expectAll(VEK_MSG_CASSETTE, {"{VERSION={TYPE=mediaPlate_e;};} -> *VERSION={TYPE=mediaPlate_e;EXPOSURE_TYPE=negati",
                                 "{NUM_AVAILABLE_PUNCH_SYS=2;PUNCH_SYS_NAME={\"\",a,b,};} -> "
                                 "*NUM_AVAILABLE_PUNCH_SYS=2;PUNCH_SYS_NAME={a,};"});
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
    expectValues(VEK_MSG_COLOR_TABLE, "COLOR_TABLE",
                 {"{{1,2,}," + repeated("{3,4,},", 300) + "} -> {{VALUE=1.000000;FLAGS=2;}," +
                  repeated("{VALUE=3.000000;FLAGS=4;},", 255) + '}'});
    expectValues(VEK_MSG_LAYOUT, "JOBTICKET_NAME", {overlong + " -> " + std::string(255, 'm')});
    expectValues(VEK_MSG_MEDIA_PARAMS, "CASSETTE_NAME", {overlong + " -> " + std::string(31, 'm')});
}

} // namespace
