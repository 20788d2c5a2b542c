// Damaged messages with what check() says of each: the code, and a caret under the place.
#include "tests/support/messages.hpp"
#include "vek/inspect/check/check.hpp"

#include <gtest/gtest.h>

namespace {

using namespace vek;
using namespace vek::inspect;
using namespace vek::test;

/// A text, the same length of blanks with carets under what is found, and the codes in order of their places; of a
/// body, which gets its envelope here, the body alone is shown.
struct case_t {
    std::int32_t id;
    std::string text, carets, codes;
    std::string suggestion = {}; ///< of the first that has one
};

const case_t bodies[] = {
    {4112, "{MEDIA_NAME=a;FOCUS_VALUE=3.250000;}", "                                    ", ""},
    {4112, "{MEDIA_NAME=a;FOCUS_VALEU=3.250000;}", "              ^^^^^^^^^^^          ^", "unknown-key missing-key",
     "FOCUS_VALUE"},
    {4112, "{MEDIA_NAME=a;\nFOCUS_VALUE=3.250000;}", "              ^^^^^^^^^^^^          ^", "line-break missing-key",
     "FOCUS_VALUE"},
    {4112, "{MEDIA_NAME=a;FOCUS_VALUE=3,5;}", "                          ^^^  ", "decimal-comma", "3.5"},
    {4112, "{MEDIA_NAME=;FOCUS_VALUE=3.250000;}", "             ^^^^^^^^^^^ ^^^^^^^^ ^",
     "swallowed-token stray-value missing-key"},
    {4112, "{FOCUS_VALUE=3.250000;MEDIA_NAME=a;FOCUS_VALUE=1;}", "                      ^^^^^^^^^^   ^^^^^^^^^^^    ",
     "key-order duplicate-key"},
    {4112, "{a,3.250000,x,}", "^^^^^^^^^^^^^^^", "positional-body surplus-value"},
    {4112, "{MEDIA_NAME=\"a\";FOCUS_VALUE==abc;}", "            ^^  ^^^^^^^^^^^^^^^^^ ",
     "leading-quote separators no-number"},
    {4112, "{MEDIA_NAME=a\tb;FOCUS_VALUE=3.5x;}", "            ^^^             ^^^^  ",
     "control-character trailing-characters"},
    {4112, "{MEDIA_NAME=a\nb;FOCUS_VALUE=3.250000;}", "            ^^^                       ", "line-break"},
    {4112, "{MEDIA_NAME={a;FOCUS_VALUE=3.500000;}", "            ^                       ^",
     "unbalanced-brace missing-key"},
    {4117, "{ID=true;}", "    ^^^^  ", "no-boolean", "TRUE"},
    {4117, "{ID=1;}", "    ^  ", "no-boolean", "TRUE"},
    {4118, "{DEVICE_STATE=4294967297;}", "              ^^^^^^^^^^  ", "number-range"},
    {4118, "{DEVICE_STATE=x;}", "              ^  ", "no-number"},
    {4119, "{DATA_PATH_PORT={70000,1;};}", "                 ^^^^^ ^^   ", "number-range separators"},
    {4103, "{MAX_OUTPUT=1.000000;OUT_CONTENT=1.000000;OUTPUT_TYPE=sheet_E;}",
     "                                                      ^^^^^^^  ", "unknown-name", "sheet_e"},
    {4161, "{STATUS=1;LOW_STATUS=2;SEVERITY=3;NUM_OF_MESSAGES=3;MSGS={a,b,};}",
     "                                                  ^              ", "count-mismatch", "2"},
    {4130, "{DEVICE_MEDIA_NAME_ARRAY={\"\",b,};}", "                          ^^^     ", "empty-value"},
    {4193, "{}", "^^", "empty-value"},
    {4130, "{}", "^^", "empty-value"},
    {4193, "{JOB_NAME=Hi;}", "          ^^  ", "nested-missing"},
};

std::string carets(const std::vector<finding_t> &findings, std::size_t offset, std::size_t size) {
    std::string line(size, ' ');
    for (const finding_t &finding : findings)
        for (std::size_t at = finding.place.start; at < finding.place.end; ++at)
            if (at >= offset && at - offset < size)
                line[at - offset] = '^';
    return line;
}

std::string codes(const std::vector<finding_t> &findings) {
    std::string names;
    for (const finding_t &finding : findings)
        names.append(names.empty() ? "" : " ").append(findingName(finding.code));
    return names;
}

std::string firstSuggestion(const std::vector<finding_t> &findings) {
    for (const finding_t &finding : findings)
        if (!finding.suggestion.empty())
            return finding.suggestion;
    return {};
}

TEST(Findings, AreUnderTheirPlaces) {
    for (const case_t &one : bodies) {
        const std::string text = message(one.id, one.text);
        const std::vector<finding_t> findings = check(tree_t(text));
        const std::string all = codes(findings);
        EXPECT_EQ(all, one.codes) << one.text;
        EXPECT_EQ(carets(findings, text.find(one.text), one.text.size()), one.carets) << one.text << "\n" << all;
        EXPECT_EQ(firstSuggestion(findings), one.suggestion) << one.text;
        EXPECT_EQ(isClean(tree_t(text)), one.codes.empty());
    }
}

TEST(Findings, OfEnvelopes) {
    const case_t envelopes[] = {
        {0, "@@4118    38 7 42 {DEVICE_STATE=3;}!!\n", "", "trailing-text"},
        {0, "@@4118    28 7 42 }!! after", "", "wrong-length body-shape missing-key trailing-text", "22"},
        {0, "@@4118    37 7 42 {DEVICE_STATE=3;}!!", "", "wrong-length", "38"},
        {0, "@@4118    99 7 42 {DEVICE_STATE=3;", "", "wrong-length no-end-marker", "35"},
        {0, "@@4118    99 7 42 {DEVICE_STATE=3", "", "wrong-length no-end-marker", "34"},
        {0, "@@4096    99 7 42 {DEVICE_INFO={DEVICE_", "", "wrong-length no-end-marker", "40"},
        {0, "@@4118    99 7 42 DEVICE_STATE=3;!!", "", "wrong-length body-shape", "36"},
        {0, "@@4118    36 7 {DEVICE_STATE=3;}!!", "", "wrong-length header-number", "35"},
        {0, "@@4118 39 7 42  {DEVICE_STATE=3;}!!", "", "wrong-length body-shape", "36"},
        {0, "@@4118    40 7 42   {DEVICE_STATE=3;}!!", "", "body-shape"},
        {0, "@@x", "", "no-id header-number header-number header-number no-end-marker"},
        {0, "@@9999    38 7 42 {DEVICE_STATE=3;}!!", "", "unknown-id"},
        {0, "@@4190    23 7 42 {}!!", "", "no-structure"},
        {0, "@4118    38 7 42 {DEVICE_STATE=3;}!!", "", "no-start-marker"},
    };
    for (const case_t &one : envelopes) {
        const std::vector<finding_t> findings = check(tree_t(one.text));
        EXPECT_EQ(codes(findings), one.codes) << one.text;
        EXPECT_EQ(firstSuggestion(findings), one.suggestion) << one.text;
    }
}

TEST(Findings, OfWhatDoesNotFit) {
    std::string pixels = sampleOf(4165).text;
    pixels.replace(pixels.find("96378.000000"), 12, "96378.500000");
    EXPECT_EQ(codes(check(tree_t(pixels))), "number-range");
    const std::string text =
        message(4182, "{MEDIA_TYPE=mediaFilm_e;UNLOAD_MEDIA_TYPE=1;UNLOAD_POLICY=1;FILM_FEED=1.000000;"
                      "CASSETTE_NAME=" +
                          std::string(32, 'c') + ";}");
    EXPECT_EQ(codes(check(tree_t(text))), "beyond-room");
    EXPECT_EQ(codes(check(tree_t(message(4130, "{DEVICE_MEDIA_NAME_ARRAY={" + std::string(100000, 'n') + ",};}")))),
              "too-long");
}

} // namespace
