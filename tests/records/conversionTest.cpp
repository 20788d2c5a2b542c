// Bodies and what they convert to, through a structure and back: how odd, damaged and hostile texts are read.
#include "support/messages.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace vek::test;
using std::string_literals::operator""s;

struct case_t {
    std::int32_t id;
    std::string body;
    std::string expected; // from and to "*": a part of the body
};

std::string repeated(const std::string &text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

// Shows the case with a caret under the first difference.
std::string mismatch(const case_t &one, const std::string &actual) {
    std::size_t at = 0;
    while (at < one.expected.size() && at < actual.size() && one.expected[at] == actual[at])
        ++at;
    return "\n    reads " + shown(one.body) + "\n expected " + shown(one.expected) + "\n   writes " + shown(actual) +
           '\n' + std::string(10 + shown(actual.substr(0, at)).size(), ' ') + '^';
}

bool matches(const std::string &expected, const std::string &actual) {
    if (!expected.starts_with('*'))
        return expected == actual;
    return actual.find(expected.substr(1, expected.size() - 2)) != std::string::npos;
}

void expectAll(std::initializer_list<case_t> cases) {
    for (const case_t &one : cases) {
        const std::string actual = converted(one.id, one.body);
        EXPECT_TRUE(matches(one.expected, actual)) << mismatch(one, actual);
    }
}

// Values of one key of a message of few keys.
void expectValues(std::int32_t id, const std::string &key,
                  std::initializer_list<std::pair<std::string, std::string>> values) {
    for (const auto &[in, out] : values)
        expectAll({{id, '{' + key + '=' + in + ";}", '*' + key + '=' + out + ";*"}});
}

TEST(Conversion, BodyGrammar) {
    const std::int32_t id = VEK_MSG_TABLE_REF; // an integer NUM and a text NAME
    expectAll({
        {id, "{NUM=5;NAME=x;}", "{NUM=5;NAME=x;}"},
        {id, "{NAME=x;NUM=5;}", "{NUM=5;NAME=x;}"},
        {id, "{5,x,}", "{NUM=5;NAME=x;}"},
        {id, "{5,x,surplus,}", "{NUM=5;NAME=x;}"},
        {id, "{7}", "{NUM=7;}"},
        {id, "{\"7\"x,}", "{NUM=7;NAME=x;}"},
        {id, "", "{NUM=0;}"},
        {id, "{", "{NUM=0;}"},
        {id, "5", "{NUM=0;}"},
        {id, "{}", "{NUM=0;}"},
        {id, "(NUM=5;)", "{NUM=5;}"},
        {id, "{num=6;NUM=5;UNKNOWN=1;}", "{NUM=5;}"},
        {id, "{NUM = 5;}", "{NUM=0;}"},
        {id, "{NUM=5;NUM=6;}", "{NUM=5;}"},
        {id, "{NAME=\"\";NAME=x;}", "{NUM=0;}"},
        {id, "{NUM=\"\";NUM=6;NAME=y;}", "{NUM=0;NAME=y;}"},
        {id, "{NAME=x;NUM=1;NAME=y;NUM=2;}", "{NUM=1;NAME=x;}"},
        {id, "{NAME=;NUM=5;}", "{NUM=0;NAME=NUM;}"}, // the empty value swallows the next token
        {id, "{NUM;=5;}", "{NUM=5;}"},
        {id, "{NUM=;,=5;}", "{NUM=5;}"},
        {id, "{;,;NUM=5;;;NAME=x}", "{NUM=5;NAME=x;}"},
        {id, "{=5;NAME=x;}", "{NUM=0;NAME=x;}"},
        {id, "{NUM=5;NAME=}", "{NUM=5;}"},
        {id, "{NUM=5;loose;NAME=x;}", "{NUM=5;NAME=x;}"},
        {id, "{loose;6;NAME=x;}", "{NUM=0;NAME=x;}"},
        {id, "{5,x,=}", "{NUM=0;}"}, // a last "=" makes the whole body keyed
        {id, "{5,x,NAME=}", "{NUM=0;}"},
        {id, "{\"NUM\"=5;{NAME}=x;}", "{NUM=5;}"},
        {id, "{NAME=a\"b\"c;}", "{NUM=0;NAME=a\"b\"c;}"},
        {id, "{NAME=\"a;b=c,\";NUM=2;}", "{NUM=2;NAME=a\2b\1c\3;}"},
        {id, "{NAME=\"abc}", "{NUM=0;NAME=abc;}"},
        {id, "{NAME={x;{y}};NUM=3;}", "{NUM=3;NAME=\4x\2\4y\5\5;}"},
        {id, "{NAME={x;NUM=3;}", "{NUM=0;}"},
        {id, "{NUM=4;NAME=}x};}", "{NUM=4;NAME=\5x\5;}"},
        {id, "{NAME= a\tb\n;}", "{NUM=0;NAME= a\tb\n;}"},
        {id, "{NAME=\1\2\3\4\5\6\x7f\x80\x81\xff;}", "{NUM=0;NAME=\1\2\3\4\5\6\x7f\x80\x81\xff;}"},
        {id, "{NAME=" + std::string(5000, 'n') + ";}", "{NUM=0;NAME=" + std::string(5000, 'n') + ";}"},
    });
}

TEST(Conversion, Numbers) {
    expectValues(VEK_MSG_DEVICE_STATE, "DEVICE_STATE",
                 {{"12abc", "12"},
                  {"abc", "0"},
                  {"0x10", "0"},
                  {" \t\n\v\f\r-5", "-5"},
                  {"+7", "7"},
                  {"+-7", "0"},
                  {"- 7", "0"},
                  {"1.9e3", "1"},
                  {"000000000000000000012", "12"},
                  {"2147483648", "-2147483648"},
                  {"-2147483649", "2147483647"},
                  {"4294967301", "5"},
                  {"99999999999999999999", "1661992959"}});
    expectValues(VEK_MSG_EXPOSE_RESOLUTION, "LASER_INTENSITY",
                 {{"70000", "4464"}, {"32768", "-32768"}, {"-32769", "32767"}, {"4294967297", "1"}, {"x", "0"}});
    expectValues(VEK_MSG_FOCUS_VALUE, "FOCUS_VALUE",
                 {{"12.5", "12.500000"},
                  {" \v+.5x", "0.500000"},
                  {"5.", "5.000000"},
                  {".", "0.000000"},
                  {"-.e5", "0.000000"},
                  {"-0", "-0.000000"},
                  {"1e3", "1000.000000"},
                  {"1E+2", "100.000000"},
                  {"25e-1", "2.500000"},
                  {"1e", "1.000000"},
                  {"1e+x", "1.000000"},
                  {"1.5.5", "1.500000"},
                  {"inf", "0.000000"},
                  {"nan", "0.000000"},
                  {"0x1p3", "0.000000"},
                  {"1e400", "inf"},
                  {"-1e999999999999999999999", "-inf"},
                  {"1e-999999999999999999999", "0.000000"},
                  {"0e999999999999999999999", "0.000000"},
                  {"0.0000005", "0.000000"}, // below the half, as a double
                  {"0.0078125", "0.007812"}, // a tie goes to the even digit
                  {"0.0234375", "0.023438"},
                  {"9007199254740993", "9007199254740992.000000"},
                  {"1e23", "99999999999999991611392.000000"}});
    EXPECT_EQ(converted(VEK_MSG_FOCUS_VALUE, "{FOCUS_VALUE=1e300;}").size(), "{FOCUS_VALUE=.000000;}"s.size() + 301);
    expectAll({
        {VEK_MSG_DELAY_VALUE_TABLE, "{DELAY_VALUE_TABLE={{0.1,16777217,},{1e39,-1e-50,},};}",
         "{DELAY_VALUE_TABLE={{RESOLUTION=0.100000;DELAY_VAL_MIC=16777216.000000;},"
         "{RESOLUTION=inf;DELAY_VAL_MIC=-0.000000;},};}"},
    });
    expectValues(VEK_MSG_EXPOSE_PARAMS, "W_SIZE_PIXEL", // an integer that stands in the text as a real
                 {{"12.9", "12.000000"},
                  {"-12.9", "-12.000000"},
                  {"2147483647.9", "2147483647.000000"},
                  {"2147483648", "0.000000"},
                  {"-2147483648.9", "-2147483648.000000"},
                  {"-2147483649", "0.000000"},
                  {"1e400", "0.000000"}});
}

TEST(Conversion, Words) {
    expectValues(VEK_MSG_BYTE_ID, "ID",
                 {{"TRUE", "TRUE"}, {"FALSE", "FALSE"}, {"True", "FALSE"}, {"1", "FALSE"}, {" TRUE", "FALSE"}});
    expectValues(VEK_MSG_MEDIA, "TYPE",
                 {{"mediaPlateProcessLess_e", "mediaPlateProcessLess_e"},
                  {"unknown_e", "unknown_e"},
                  {"negative_e", "mediaFilm_e"}, // the name of another table
                  {"MEDIAPLATE_E", "mediaFilm_e"},
                  {"mediaPlate_", "mediaFilm_e"}});
    expectAll({
        // Only where the record is the structure can an unknown name be told from the first one.
        {VEK_MSG_GDAPI_DATA_PATH, "{GDAPI_DATA_PATH=TSP;}", "{GDAPI_DATA_PATH=TSP;}"},
        {VEK_MSG_GDAPI_DATA_PATH, "{GDAPI_DATA_PATH=tsp;LPT_SCSI_port=3;}", "{LPT_SCSI_port=3;}"},
        {VEK_MSG_GDAPI_DATA_PATH, "{GDAPI_DATA_PATH=x;GDAPI_DATA_PATH=TSP;}", ""},
        {VEK_MSG_GDAPI_DATA_PATH, "{LPT_SCSI_PORT=3;}", ""},
    });
}

TEST(Conversion, Lists) {
    const auto ports = [](const std::string &in, const std::string &out) {
        expectAll({{VEK_MSG_DATA_PATH_PORT, "{DATA_PATH_PORT=" + in + ";}",
                    out.empty() ? "" : "{DATA_PATH_PORT=" + out + ";}"}});
    };
    const std::string key = "DATA_PATH_PORT";
    ports("{1,2,3,}", "{1,2,3,}");
    ports("{1,70000,-3}", "{1,4464,-3,}");
    ports("{,,5;6,}", "{5,6,}");
    ports("{\"\",5,}", "{0,5,}");
    ports("{}", "");
    ports("{=}", "");
    ports("x", "");
    ports("7890", "{89,}");
    ports('{' + key + "1=7;" + key + "0=3;}", "{3,7,}");
    ports('{' + key + "2=7;" + key + "0=3;}", "{3,0,}"); // only as many elements as pairs
    ports('{' + key + "01=7;" + key + "1=3;}", "{0,3,}");
    ports('{' + key + "+1=7;" + key + "-1=3;" + key + "=4;" + key + "1x=5;1=6;}", "{0,0,0,0,0,}");
    ports('{' + key + "4294967296=7;}", "{0,}");
    ports('{' + key + "0=1;" + key + "0=2;}", "{1,0,}");
    ports('{' + key + "0=\"\";" + key + "0=2;}", "{0,0,}");
    ports("{5,6," + key + "1=9;}", "{0,9,0,}"); // keyed from the first element on
    ports("{5,6,=}", "{0,0,}");
    ports('{' + repeated("1,", 3000) + '}', '{' + repeated("1,", 3000) + '}');
    expectAll({
        {VEK_MSG_MEDIA_GROUP, "{MEDIA_GROUP={a,\"\",{b},c=,};I_COUNT=1;}", "{IS_INSTALLED=0;I_COUNT=1;}"},
        {VEK_MSG_MEDIA_GROUP, "{MEDIA_GROUP={a,\"\",{b},\"x,y\",};I_COUNT=1;}",
         "{IS_INSTALLED=0;I_COUNT=1;MEDIA_GROUP={a,\4b\5,x\3y,};}"},
        {VEK_MSG_DELAY_VALUE_TABLE, "{DELAY_VALUE_TABLE={{DELAY_VAL_MIC=1;},{2,3,},\"\",(4),x,};}",
         "{DELAY_VALUE_TABLE={{RESOLUTION=0.000000;DELAY_VAL_MIC=1.000000;},"
         "{RESOLUTION=2.000000;DELAY_VAL_MIC=3.000000;},{RESOLUTION=0.000000;DELAY_VAL_MIC=0.000000;},"
         "{RESOLUTION=4.000000;DELAY_VAL_MIC=0.000000;},{RESOLUTION=0.000000;DELAY_VAL_MIC=0.000000;},};}"},
        {VEK_MSG_DELAY_VALUE_TABLE, "{DELAY_VALUE_TABLE={DELAY_VALUE_TABLE1={1,2,};DELAY_VALUE_TABLE7={3,4,};};}",
         "{DELAY_VALUE_TABLE={{RESOLUTION=0.000000;DELAY_VAL_MIC=0.000000;},"
         "{RESOLUTION=1.000000;DELAY_VAL_MIC=2.000000;},};}"},
        {VEK_MSG_DELAY_VALUE_TABLE, "{{{1,2,},},}",
         "{DELAY_VALUE_TABLE={{RESOLUTION=1.000000;DELAY_VAL_MIC=2.000000;},};}"},
        {VEK_MSG_CASSETTE, "{VERSION={TYPE=mediaPlate_e;};}", "*VERSION={TYPE=mediaPlate_e;EXPOSURE_TYPE=negative_e;*"},
        {VEK_MSG_CASSETTE, "{MEDIA={TYPE=mediaPlate_e;};}", "*VERSION={TYPE=mediaFilm_e;*"},
    });
}

TEST(Conversion, CountsThatDisagreeWithTheirList) {
    for (const auto &[count, printed] : {std::pair("1", "1;W_UNIT_LOCATION={1.000000,};H_UNIT_LOCATION={3.000000,};}"),
                                         {"9", "9;W_UNIT_LOCATION={1.000000,2.000000,};H_UNIT_LOCATION={3.000000,};}"},
                                         {"0", "0;}"},
                                         {"-2147483648", "-2147483648;}"}})
        expectAll({{VEK_MSG_PUNCH_SYSTEM, "{W_UNIT_LOCATION={1,2,};H_UNIT_LOCATION={3,};NUM_OF_UNITS="s + count + ";}",
                    "*NUM_OF_UNITS="s + printed + '*'}});
    expectAll({
        {VEK_MSG_CASSETTE, "{NUM_AVAILABLE_PUNCH_SYS=2;PUNCH_SYS_NAME={\"\",a,b,};}", "*SYS=2;PUNCH_SYS_NAME={a,};*"},
        {VEK_MSG_RES_INT_TABLE, "{NUM_ENTRIES=1;RES_INT_TABLE={{1,},{2,},};}",
         "*NUM_ENTRIES=1;RES_INT_TABLE={{RES=1.000000;INT=0.000000;SPEED=0.000000;DEF_INT=0.000000;"
         "DEF_SPEED=0.000000;DELETABLE=FALSE;},};GEN_NUM_OF_TABLES=0;}*"},
    });
}

TEST(Conversion, ArraysOfFixedRoom) {
    const auto status = [](const std::string &in, const std::string &out) {
        expectAll({{VEK_MSG_DEVICE_STATUS, '{' + in + '}', "{STATUS=0;LOW_STATUS=0;SEVERITY=0;" + out + '}'}});
    };
    status("NUM_OF_MESSAGES=1000000;", "NUM_OF_MESSAGES=10;");
    status("NUM_OF_MESSAGES=-3;MSGS={a,};", "NUM_OF_MESSAGES=-3;");
    status("MSGS={a,};", "NUM_OF_MESSAGES=0;");
    status("MSGS={a,b,c,};NUM_OF_MESSAGES=2;", "NUM_OF_MESSAGES=2;MSGS={a,b,};");
    status("NUM_OF_MESSAGES=2;MSGS={\"\",b,c,};", "NUM_OF_MESSAGES=2;MSGS={b,};");
    status("NUM_OF_MESSAGES=99;MSGS={" + repeated("m,", 12) + "};",
           "NUM_OF_MESSAGES=10;MSGS={" + repeated("m,", 10) + "};");
    status("NUM_OF_MESSAGES=3;MSGS={MSGS2=c;MSGS0=a;x,};", "NUM_OF_MESSAGES=3;MSGS={a,c,};");
    status("NUM_OF_MESSAGES=10;MSGS={MSGS5=f;MSGS1=b;};", "NUM_OF_MESSAGES=10;MSGS={b,};");
    status("NUM_OF_MESSAGES=10;MSGS={MSGS9=last;MSGS10=beyond;" + repeated("x,", 20) + "};",
           "NUM_OF_MESSAGES=10;MSGS={last,};");
    status("NUM_OF_MESSAGES=1;MSGS={" + std::string(300, 'm') + ",};",
           "NUM_OF_MESSAGES=1;MSGS={" + std::string(254, 'm') + ",};");
    expectAll({
        {VEK_MSG_EXPOSE_JOB, "{PUNCH_PARAMS={NUM_SYSTEMS=12;ACTIVE_SYSTEMS={" + repeated("4,", 12) + "};};}",
         "*PUNCH_PARAMS={NUM_SYSTEMS=10;ALIGN=0;ACTIVE_SYSTEMS={" + repeated("4,", 10) + "};};}*"},
        {VEK_MSG_EXPOSE_JOB, "{PUNCH_PARAMS={NUM_SYSTEMS=-1;ACTIVE_SYSTEMS={1,};};}",
         "*PUNCH_PARAMS={NUM_SYSTEMS=-1;ALIGN=0;};}*"},
        {VEK_MSG_COLOR_TABLE, "{COLOR_TABLE={{1,2,}," + repeated("{3,4,},", 300) + "};}",
         "{DRUM_ID=0;INDEX=0;COLOR_TABLE={{VALUE=1.000000;FLAGS=2;}," + repeated("{VALUE=3.000000;FLAGS=4;},", 255) +
             "};}"},
        {VEK_MSG_LAYOUT, "{JOBTICKET_NAME=" + std::string(256, 'j') + ";SEPS_ARRAY=" + std::string(255, 's') + ";}",
         "*JOBTICKET_NAME=" + std::string(255, 'j') + ";SEPS_ARRAY=" + std::string(255, 's') + ";}*"},
        {VEK_MSG_MEDIA_PARAMS, "{CASSETTE_NAME=" + std::string(32, 'c') + ";}",
         "*CASSETTE_NAME=" + std::string(31, 'c') + ";}*"},
        {VEK_MSG_CYLINDER_JOB, "{DEVICE_MEDIA_NAME_ID=" + std::string(300, 'd') + ";}",
         "*DEVICE_MEDIA_NAME_ID=" + std::string(255, 'd') + ";}*"},
    });
}

TEST(Conversion, ImagePlacementTextsRunOn) {
    const auto placed = [](const std::string &name, const std::string &separation, const std::string &expected) {
        for (const std::string &body : {"{NAME=" + name + ";SEPARATION=" + separation + ";}",
                                        "{SEPARATION=" + separation + ";NAME=" + name + ";}"})
            expectAll({{VEK_MSG_IMAGE_TOP_LEFT, body, "*H_MIRROR=0;" + expected + "}*"}});
    };
    const std::string full(256, 'n');
    placed(std::string(255, 'n'), "s", "NAME=" + std::string(255, 'n') + ";SEPARATION=s;");
    placed(full, "sep", "NAME=" + full + "sep;SEPARATION=sep;");
    placed(full + "more", "sep", "NAME=" + full + "sep;SEPARATION=sep;");
    placed(full + "more", "\"\"", "NAME=" + full + ";"); // an unset text counts as empty
    placed(std::string(1000, 'n'), "\"\"", "NAME=" + full + ";");
    placed("n", std::string(1000, 's'), "NAME=n;SEPARATION=" + std::string(131, 's') + ";");
    placed(full, std::string(1000, 's'),
           "NAME=" + full + std::string(131, 's') + ";SEPARATION=" + std::string(131, 's') + ";");
    expectAll({{VEK_MSG_IMAGE_TOP_LEFT, "{W_TOP_LEFT=1;H_TOP_LEFT=2;NAME=" + full + "more;}",
                "{DRUM_ID=0;INDEX=0;W_TOP_LEFT=1;H_TOP_LEFT=2;W_IMAGE_TOP_LEFT=0;H_IMAGE_TOP_LEFT=0;W_MIRROR=0;"
                "H_MIRROR=0;NAME=" +
                    full + ";}"}});
}

TEST(Conversion, Ranges) {
    const auto speed = [](const std::string &in, const std::string &out) {
        expectAll({{VEK_MSG_DEVICE_INFO, '{' + in + '}',
                    "*H_ADDITION=0.000000;" + (out.empty() ? "}" : "SPINNER_SPEED_RANGE_TYPE=" + out) + '*'}});
    };
    const std::string continuous = "SPINNER_SPEED_RANGE_TYPE=continuous_e;";
    speed(continuous + "SPINNER_SPEED={3,1,2,};", "continuous_e;SPINNER_SPEED={1.000000,3.000000,};}");
    speed("SPINNER_SPEED={3,1,2,};" + continuous, "continuous_e;SPINNER_SPEED={1.000000,3.000000,};}");
    speed("SPINNER_SPEED={3,1,2,};", "discrete_e;SPINNER_SPEED={3.000000,1.000000,2.000000,};}");
    speed("SPINNER_SPEED_RANGE_TYPE=x;SPINNER_SPEED={3,};", "discrete_e;SPINNER_SPEED={3.000000,};}");
    speed(continuous + "SPINNER_SPEED={7,};", "continuous_e;SPINNER_SPEED={7.000000,7.000000,};}");
    speed(continuous + "SPINNER_SPEED={-2,-3,};", "continuous_e;SPINNER_SPEED={-3.000000,-1.000000,};}");
    speed(continuous + "SPINNER_SPEED={0,-0,};", "continuous_e;SPINNER_SPEED={0.000000,0.000000,};}");
    speed(continuous + "SPINNER_SPEED={-0,0,};", "continuous_e;SPINNER_SPEED={-0.000000,-0.000000,};}");
    speed(continuous + "SPINNER_SPEED={SPINNER_SPEED1=4;SPINNER_SPEED0=5;};",
          "continuous_e;SPINNER_SPEED={4.000000,5.000000,};}");
    speed("SPINNER_SPEED={\"\",2,};", "discrete_e;SPINNER_SPEED={0.000000,2.000000,};}");
    speed(continuous, "");
    speed(continuous + "SPINNER_SPEED={};", "");
    speed("SPINNER_SPEED={" + repeated("1,", 600) + "};",
          "discrete_e;SPINNER_SPEED={" + repeated("1.000000,", 600) + "};}");
    expectAll({{VEK_MSG_DEVICE_INFO_2, "{DEVICE_INFO={RESOLUTION={1,2,};RES_RANGE_TYPE=continuous_e;};}",
                "{DEVICE_INFO={RES_RANGE_TYPE=continuous_e;RESOLUTION={1.000000,2.000000,};};*"s.replace(0, 1, "*{")}});
}

TEST(Conversion, WideStrings) {
    expectAll({
        {VEK_MSG_JOB_PORT, "{JOB_NAME={72,105,0,};}", "{JOB_NAME={72,105,0,};}"},
        {VEK_MSG_JOB_PORT, "{JOB_PORT=2;}", "{JOB_PORT=2;}"},
        {VEK_MSG_JOB_PORT, "{JOB_NAME={};JOB_PORT=x;}", "{JOB_PORT=0;}"},
        {VEK_MSG_JOB_PORT, "{JOB_NAME={65533,-3,32768,65536,};}", "{JOB_NAME={-3,-3,-32768,0,};}"},
        {VEK_MSG_JOB_PORT, "{JOB_NAME={72,\"\",0,};}", "{JOB_NAME={72,0,};}"},
        {VEK_MSG_JOB_PORT, "{JOB_NAME={JOB_NAME1=2;JOB_NAME0=1;JOB_NAME9=3;};}", "{JOB_NAME={1,2,};}"},
        {VEK_MSG_JOB_PORT, "{JOB_NAME={1,2,=};}", ""},
        {VEK_MSG_JOB_SEP_LIST, "{SEP_LIST={{67,0,},{},\"\",{66,},};}", "{SEP_LIST={{67,0,},{66,},};}"},
        {VEK_MSG_JOB_SEP_LIST, "{SEP_LIST={SEP_LIST1={SEP_LIST10=66;SEP_LIST11=0;};SEP_LIST0={67,0,};};}",
         "{SEP_LIST={{67,0,},{66,0,},};}"},
        {VEK_MSG_JOB_SEP_LIST, "{SEP_LIST={{SEP_LIST0=66;SEP_LIST00=67;},};}", "{SEP_LIST={{67,},};}"},
        {VEK_MSG_JOB_SEP_LIST, "{{74,0,},{{67,0,},},}", "{JOB_NAME={74,0,};SEP_LIST={{67,0,},};}"},
    });
}

} // namespace
