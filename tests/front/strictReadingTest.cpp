// What strict reading refuses, with the path and the byte, and what it takes as vek::parse does.
#include "tests/front/hostTest.hpp"
#include "tests/support/messages.hpp"
#include "vek/api/line.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace vek;
using namespace vek::test;

class StrictTest : public HostTest {};

template <std::int32_t Id>
problem_t problemOf(std::string_view body) {
    problem_t problem;
    const std::string text = message(Id, body);
    const auto structure = parseStrictly<Id>(text, problem);
    EXPECT_EQ(structure == nullptr, static_cast<bool>(problem)) << body;
    EXPECT_NE(parse<Id>(text), nullptr);
    return problem;
}

struct refusal_t {
    std::string_view body;
    problemCode_t code;
    std::string_view place; ///< what stands there
    std::string_view path;
};

template <std::int32_t Id>
void expectRefused(const std::vector<refusal_t> &refusals) {
    for (const auto &[body, code, place, path] : refusals) {
        const problem_t problem = problemOf<Id>(body);
        EXPECT_EQ(static_cast<int>(problem.code), static_cast<int>(code)) << body << ' ' << problem.text;
        const std::string text = message(Id, body);
        EXPECT_EQ(text.substr(std::min(problem.offset, text.size()), place.size()), place) << problem.text;
        EXPECT_EQ(problem.member, path) << body;
        EXPECT_EQ(problem.text.substr(0, path.size()), path);
        EXPECT_EQ(problem.numbers.echoTag, 7);
    }
}

TEST_F(StrictTest, RefusesWhatWouldBeIgnoredOrReadOtherwise) {
    using enum problemCode_t;
    expectRefused<VEK_MSG_FOCUS_VALUE>({
        {"{MEDIA_NAME=a;FOCUS_VALEU=3.250000;}", unknownKey, "FOCUS_VALEU", "FOCUS_VALEU"},
        {"{MEDIA_NAME=a;FOCUS_VALUE=abc;}", wrongValue, "abc", "FOCUS_VALUE"},
        {"{MEDIA_NAME=a;FOCUS_VALUE=3,25;}", strayValue, "25;", ""},
        {"{MEDIA_NAME=a;FOCUS_VALUE=3.5mm;}", wrongValue, "3.5mm", "FOCUS_VALUE"},
        {"{MEDIA_NAME=a;FOCUS_VALUE=1e999;}", wrongValue, "1e999", "FOCUS_VALUE"},
        {"{MEDIA_NAME=a;FOCUS_VALUE=1;FOCUS_VALUE=2;}", duplicateKey, "FOCUS_VALUE=2", "FOCUS_VALUE"},
        {"{MEDIA_NAME={a;FOCUS_VALUE=3.250000;}", unbalanced, "{a", "MEDIA_NAME"},
        {"{MEDIA_NAME=a;FOCUS_VALUE=3.250000;}}", unbalanced, "}}", ""},
        {"{MEDIA_NAME=\"a;FOCUS_VALUE=3.250000;}", unbalanced, "\"a", "MEDIA_NAME"},
        {"{MEDIA_NAME=;FOCUS_VALUE=3.250000;}", unclear, "=;", "MEDIA_NAME"},
        {"{MEDIA_NAME=a{b;FOCUS_VALUE=3.250000;}", unclear, "{b", "MEDIA_NAME"},
        {"{a,3.250000,x,}", strayValue, "x,", ""},
        {"{,3.250000,}", unclear, ",3", ""},
        {"MEDIA_NAME=a;FOCUS_VALUE=3.250000;}", noBraces, "MEDIA", ""},
        {"{MEDIA_NAME=a;FOCUS_VALUE=3.250000;", noBraces, "{MEDIA", ""},
        {" {MEDIA_NAME=a;FOCUS_VALUE=3.250000;}", noBraces, " {", ""},
    });
    expectRefused<VEK_MSG_MEDIA_OUTPUT>({{"{OUTPUT_TYPE=sheet_E;}", wrongValue, "sheet_E", "OUTPUT_TYPE"}});
    expectRefused<VEK_MSG_BYTE_ID>({{"{ID=1;}", wrongValue, "1;", "ID"}});
    expectRefused<VEK_MSG_DEVICE_STATE>({{"{DEVICE_STATE=4294967297;}", wrongValue, "4294", "DEVICE_STATE"},
                                         {"{DEVICE_STATE=3.0;}", wrongValue, "3.0", "DEVICE_STATE"}});
    expectRefused<VEK_MSG_DEVICE_STATUS>({{"{NUM_OF_MESSAGES=1;MSGS={a,b,};}", countMismatch, "{a,b", "MSGS"},
                                          {"{NUM_OF_MESSAGES=2;MSGS={a,,b,};}", unclear, ",,b", "MSGS[0]"},
                                          {"{NUM_OF_MESSAGES=2;MSGS=ab;}", wrongValue, "ab", "MSGS"},
                                          {"{NUM_OF_MESSAGES=99;MSGS={a,};}", unclear, "99", "NUM_OF_MESSAGES"}});
    expectRefused<VEK_MSG_JOB_SEP_LIST>(
        {{"{SEP_LIST={{72,0,},{72,70000,0,},};}", wrongValue, "70000", "SEP_LIST[1][1]"}});
}

TEST_F(StrictTest, TakesWhatIsReadAsMeant) {
    for (const std::string_view body :
         {"", "{}", "{FOCUS_VALUE=3.25;MEDIA_NAME=a;}", "{MEDIA_NAME=\"a\";FOCUS_VALUE=\"3.25\"}",
          "{MEDIA_NAME=a b;FOCUS_VALUE= +3.25 ;}", "{MEDIA_NAME=a,FOCUS_VALUE=325e-2;;}", "{a,3.25}"})
        EXPECT_EQ(problemOf<VEK_MSG_FOCUS_VALUE>(body).text, "") << body;
    for (const std::string &text : {message(4112, "{FOCUS_VALUE=x;}"), message(4112, "{FOCUS_VALUE=1;}") + '\n'})
        EXPECT_THROW((void)parseStrictly<FocusValue>(text), messageError_t);
    line_t line;
    EXPECT_NE(line.parseStrictly<FocusValue>(message(4112, "{FOCUS_VALUE=1;}", 5)), nullptr);
    problem_t problem;
    EXPECT_EQ(line.parseStrictly<FocusValue>(message(4112, "{FOCUS_VALUE=x;}", 6), problem), nullptr);
    EXPECT_EQ(line.echoTag, 5);
}

} // namespace
