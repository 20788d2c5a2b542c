// The envelope around a body, and the two header numbers.
#include "support/messages.hpp"
#include "vek/api/private/envelopeWriter.hpp"
#include "vek/records/status.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <string>
#include <tuple>

namespace {

using namespace vek;
using namespace vek::test;
using enum envelopeResult_t;

class Envelope : public testing::Test {
protected:
    void SetUp() override { headerNumbers = {}; }
};

struct case_t {
    std::string text; // "#####" stands for the right length
    envelopeResult_t result;
    envelopeNumbers_t numbers; // before: -7, -8, -9
    std::string body;          // "none": not reached
};

const case_t cases[] = {
    {"@@4112 ##### 7 41 {A=1;}!!", correct, {4112, 7, 41}, "{A=1;}"},
    {"@@4112 ##### 7 41 a!!b!!", correct, {4112, 7, 41}, "a!!b"},
    {"@@4112 ##### 7 41  b !!", correct, {4112, 7, 41}, " b "},
    {"@@4112 ##### 7 41!!", correct, {4112, 7, 41}, "none"},
    {"@@ \t\n\v\f\r4112##### 7 41 b!!", correct, {4112, 7, 41}, "b"},
    {"@@+4112 00024 +7 -41 !!", correct, {4112, 7, -41}, ""},
    {"@@-5 ##### 2147483647 -2147483648 b!!", correct, {-5, INT_MAX, INT_MIN}, "b"},
    {"@@99999999999 ##### -99999999999 99999999999 b!!", correct, {INT_MAX, INT_MIN, INT_MAX}, "b"},
    // Numbers that can't be read: the target keeps its value, reading goes on where it stopped.
    {"@@4112 ##### + 41 b!!", correct, {4112, -8, 41}, "b"},
    {"@@4112 ##### x 41 b!!", correct, {4112, -8, -9}, " 41 b"},
    {"@@4112 ##### 7 {A=1;}!!", correct, {4112, 7, -9}, "A=1;}"},
    {"@@x ##### 7 41 b!!", wrongLength, {-7, -8, -9}, "none"},
    {"@@", wrongLength, {-7, -8, -9}, "none"},
    {"@@4112    20 -1 1 !!", wrongLength, {4112, -8, -9}, "none"},       // without the NUL
    {"@@4112 4294967323 7 41 b!!", wrongLength, {4112, -8, -9}, "none"}, // 2^32 too long
    {"@@4112 -21 -1 1 !!", wrongLength, {4112, -8, -9}, "none"},
    {"", wrongMarker, {-7, -8, -9}, "none"},
    {"@4112 ##### 7 41 b!!", wrongMarker, {-7, -8, -9}, "none"},
    {" @@4112 ##### 7 41 b!!", wrongMarker, {-7, -8, -9}, "none"},
    // At the end marker everything has been delivered already.
    {"@@4112 ##### 7 41 b!?", wrongMarker, {4112, 7, 41}, "b"},
    {"@@4112 ##### 7 41 !", wrongMarker, {4112, 7, 41}, "none"},
    {"@@4112 ##### 7 41", wrongMarker, {4112, 7, 41}, "none"},
};

TEST_F(Envelope, IsReadAsFarAsItGoes) {
    for (const case_t &one : cases) {
        std::string text = one.text;
        if (const std::size_t at = text.find('#'); at != std::string::npos) {
            char length[8];
            std::snprintf(length, sizeof length, "%5zu", text.size() + 1);
            text.replace(at, 5, length);
        }
        envelopeNumbers_t numbers{-7, -8, -9};
        std::string_view body = "none";
        EXPECT_EQ(readEnvelope(text, numbers, body), one.result) << shown(text);
        EXPECT_EQ(std::tie(numbers.id, numbers.echoTag, numbers.sequenceNumber),
                  std::tie(one.numbers.id, one.numbers.echoTag, one.numbers.sequenceNumber))
            << shown(text);
        EXPECT_EQ(body, one.body) << shown(text);
    }
}

TEST_F(Envelope, NumbersAreThoseOfTheLastMessageRead) {
    structureOf(4118, "{}");
    EXPECT_EQ(written(4118, nullptr), message(4118, "", 7, 42));
    EXPECT_EQ(written(4118, nullptr), message(4118, "", 7, 43));
    structure_t("@@4118    99 1 1 {}!!"); // wrong length: not read so far
    structure_t(" @@4118   24 1 1 {}!!", 4118);
    EXPECT_EQ(written(4118, nullptr), message(4118, "", 7, 44));
    structure_t(message(4118, "{}", -3, INT_MAX));
    EXPECT_EQ(written(4118, nullptr), message(4118, "", -3, INT_MIN));
    structure_t(message(4162, "{}", 5, 6)); // one without a structure
    EXPECT_EQ(written(4118, nullptr), message(4118, "", 5, 7));
    std::int32_t vain = 0;
    written(4190, &vain); // the empty string is no message
    written(4191, &vain);
    EXPECT_EQ(written(4118, nullptr), message(4118, "", 5, 8));
}

TEST_F(Envelope, LengthHasFiveDigits) {
    EXPECT_EQ(written(4112, nullptr), "@@4112    21 -1 1 !!");
    EXPECT_EQ(written(-5, nullptr), "@@-5    19 -1 2 !!");
    const std::size_t around = std::string("@@4202 ##### -1 1 {TYPE=FALSE;INFO=;}!!").size() + 1;
    for (const auto &[length, digits] : {std::pair<std::size_t, std::string>{99998, "99998"},
                                         {99999, "99999"},
                                         {100000, "10000"},
                                         {123456, "12345"}}) {
        headerNumbers = {};
        std::string text(length - around, 'i');
        Info info{0, text.data()};
        const std::string overlong = written(4202, &info);
        EXPECT_EQ(overlong.size() + 1, length);
        EXPECT_EQ(overlong.substr(0, 18), "@@4202 " + digits + " -1 1 ");
        EXPECT_EQ(structure_t(overlong).as<Info>().info, length < 100000 ? text : "");
    }
}

} // namespace
