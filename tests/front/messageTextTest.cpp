// The texts around bodies: what the plain reader makes of an envelope, what the typed front says is wrong with it, and
// which header numbers and lengths messages are written with.
#include "tests/front/hostTest.hpp"
#include "tests/support/messages.hpp"
#include "vek/api/vekParams2ASCII.hpp"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <string>

namespace {

using namespace vek;
using namespace vek::test;

const std::string noStart = "noStartMarker: the text does not begin with \"@@\"";
const std::string noEnd = "noEndMarker: the text does not end with \"!!\"";
const std::string noId = "noId: no message id behind \"@@\"";
const std::string nul = "innerNul: a NUL inside the text";

std::string length(const char *said, int actual) {
    return std::string("wrongLength: the length is said to be ") + said + ", but the text has " +
           std::to_string(actual) + " characters with its NUL";
}

struct text_t {
    std::string text;   // "#####" is the right length, "~" a NUL, "^" stands before the byte that the report names
    std::string plain;  // the plain reader's result, the three numbers (0, -8 and -9 before), and any body in brackets
    std::string report; // what the front says, which wants message 4112: the code and why
};

const text_t texts[] = {
    {"@@4112 ##### 7 41 {A=1;}!!", "correct 4112 7 41 [{A=1;}]", ""},
    {"@@4112 ##### 7 41 a!!b!!", "correct 4112 7 41 [a!!b]", ""},
    {"@@4112 ##### 7 41  b !!", "correct 4112 7 41 [ b ]", ""},
    {"@@4112 ##### 7 41!!", "correct 4112 7 41", ""},
    {"@@ \t\n\v\f\r4112##### 7 41 b!!", "correct 4112 7 41 [b]", ""},
    {"@@+4112 00024 +7 -41 !!", "correct 4112 7 -41 []", ""},
    {"@@^-5 ##### 2147483647 -2147483648 b!!", "correct -5 2147483647 -2147483648 [b]",
     "otherId: the text is message -5, not 4112"},
    {"@@  ^99999999999 ##### -99999999999 99999999999 b!!", "correct 2147483647 -2147483648 2147483647 [b]",
     "otherId: the text is message 2147483647, not 4112"},
    // Numbers that can't be read: the target keeps its value, reading goes on where it stopped.
    {"@@4112 ##### + 41 b!!", "correct 4112 -8 41 [b]", ""},
    {"@@4112 ##### x 41 b!!", "correct 4112 -8 -9 [ 41 b]", ""},
    {"@@4112 ##### 7 {A=1;}!!", "correct 4112 7 -9 [A=1;}]", ""},
    {"@@  ^x ##### 7 41 b!!", "wrongLength 0 -8 -9", noId},
    {"@@^- 20 -1 1 {A=B;}!!", "wrongLength 0 -8 -9", noId},
    {"@@^", "wrongLength 0 -8 -9", noId},
    {"@@4112^", "wrongLength 4112 -8 -9", length("0", 7)},
    {"@@4112    ^20 -1 1 !!", "wrongLength 4112 -8 -9", length("20", 21)},               // without the NUL
    {"@@4112 ^4294967323 7 41 b!!", "wrongLength 4112 -8 -9", length("2147483647", 27)}, // 2^32 too long
    {"@@4112 ^-21 -1 1 !!", "wrongLength 4112 -8 -9", length("-21", 19)},
    {"@@4112    22 7 41 b!!^\r\n", "wrongLength 4112 -8 -9", "lineEnd: a line end behind the message: leave it out"},
    {"@@4112    ^22 7 41 b!?\n", "wrongLength 4112 -8 -9", length("22", 23)},
    {"^", "wrongMarker 0 -8 -9", noStart},
    {"^@4112 ##### 7 41 b!!", "wrongMarker 0 -8 -9", noStart},
    {"^ @@4112 ##### 7 41 b!!", "wrongMarker 0 -8 -9", noStart},
    // At the end marker everything has been delivered already.
    {"@@4112 ##### 7 41 b^!?", "wrongMarker 4112 7 41 [b]", noEnd},
    {"@@4112 ##### 7 41^ !", "wrongMarker 4112 7 41", noEnd},
    {"@@4112 #####^", "wrongMarker 4112 -8 -9", noEnd},
    {"@@4112 ##### 7 41^~!!", "correct 4112 7 41 []", nul},
    {"@@4112 ##### 7 41 !!^~~", "wrongMarker 4112 7 41 [!]", nul},
};

std::string plainReading(std::string_view text) {
    const envelope_t envelope = readEnvelope(text);
    const envelopeNumbers_t numbers = envelope.numbersForHost({0, -8, -9});
    std::string read = envelope.result == envelopeResult_t::correct       ? "correct"
                       : envelope.result == envelopeResult_t::wrongMarker ? "wrongMarker"
                                                                          : "wrongLength";
    for (const std::int32_t number : {numbers.id, numbers.echoTag, numbers.sequenceNumber})
        read += ' ' + std::to_string(number);
    return envelope.isBodyRead() ? read + " [" + std::string(envelope.body) + ']' : read;
}

std::string shownReport(const problem_t &problem) {
    constexpr const char *names[] = {"none",        "noStartMarker", "innerNul",      "noId",
                                     "wrongLength", "lineEnd",       "noEndMarker",   "otherId",
                                     "aboveLimit",  "tooLong",       "countAboveRoom"};
    return problem ? std::string(names[static_cast<int>(problem.code)]) + ": " + problem.text : "";
}

void read(const std::string &text) {
    const structure_t structure(text.c_str(), 4118);
}

class MessageTextTest : public HostTest {};

TEST_F(MessageTextTest, IsReadAsFarAsItGoesAndReportedWhereItIsWrong) {
    for (const text_t &one : texts) {
        SCOPED_TRACE(shown(one.text));
        std::string text = one.text;
        std::replace(text.begin(), text.end(), '~', '\0');
        const std::size_t place = std::min(text.find('^'), text.size());
        text.erase(place, 1);
        if (const std::size_t at = text.find("#####"); at != std::string::npos) {
            char digits[8];
            std::snprintf(digits, sizeof digits, "%5zu", withoutNul(text).size() + 1);
            text.replace(at, 5, digits);
        }
        EXPECT_EQ(plainReading(withoutNul(text)), one.plain);
        EXPECT_NE(one.plain.find(' ' + std::to_string(messageId(text)) + ' '), std::string::npos);
        problem_t problem;
        EXPECT_EQ(parse<FocusValue>(text, problem) == nullptr, !one.report.empty());
        EXPECT_EQ(shownReport(problem), one.report);
        EXPECT_EQ(problem.offset, problem ? place : 0);
        try {
            EXPECT_TRUE(parse<FocusValue>(text) != nullptr && one.report.empty());
        } catch (const messageError_t &error) {
            EXPECT_EQ(error.what(), problem.text + " (byte " + std::to_string(place) + ")");
            EXPECT_TRUE(error.code() == problem.code && error.offset() == place);
        }
    }
}

TEST_F(MessageTextTest, HasTheNumbersOfTheLastMessageRead) {
    read(message(4118, "{}", -3, INT_MAX));
    problem_t problem;
    for (const char *refused : {"@@4118    99 1 1 {}!!", " @@4118   24 1 1 {}!!"}) {
        read(refused);
        EXPECT_EQ(parse<DeviceState>(refused, problem), nullptr);
    }
    EXPECT_EQ(parse<FocusValue>(message(4118, "{}", 9, 61), problem), nullptr);
    EXPECT_EQ(written(4118, nullptr), message(4118, "", -3, INT_MIN));
    read(message(4162, "{}", 5, 6)); // one without a structure
    std::int32_t vain = 0;
    written(4190, &vain); // the empty string is no message
    EXPECT_EQ(written(4118, nullptr), message(4118, "", 5, 7));
    const auto state = parse<DeviceState>(message(4118, "{DEVICE_STATE=4;}", -5, 9), problem);
    EXPECT_FALSE(problem); // a problem of before is gone
    EXPECT_EQ(print(*state, problem), message(4118, "{DEVICE_STATE=4;}", -5, 10));
}

// Longer ones than can be read back have the first five digits of their length; the front writes none of them.
TEST_F(MessageTextTest, LengthHasFiveDigits) {
    const auto startAnew = [] { read(message(4118, "{}", -1, 0)); };
    startAnew();
    EXPECT_EQ(written(4112, nullptr), "@@4112    21 -1 1 !!");
    EXPECT_EQ(written(-5, nullptr), "@@-5    19 -1 2 !!");
    const std::size_t around = std::string("@@4202 ##### -1 1 {TYPE=FALSE;INFO=;}!!").size() + 1;
    for (const std::size_t length : {99998U, 99999U, 100000U, 123456U}) {
        std::string text(length - around, 'i');
        Info info{0, text.data()};
        startAnew();
        const std::string plain = written(4202, &info);
        EXPECT_EQ(plain.size() + 1, length);
        EXPECT_EQ(plain.substr(0, 18), "@@4202 " + std::to_string(length).substr(0, 5) + " -1 1 ");
        EXPECT_EQ(structure_t(plain).as<Info>().info, length < 100000 ? text : "");
        problem_t problem;
        startAnew();
        EXPECT_EQ(print(info, problem), length < 100000 ? plain : "");
        EXPECT_EQ(shownReport(problem), length < 100000 ? ""
                                                        : "tooLong: the message would have " + std::to_string(length) +
                                                              " characters with its NUL, 99999 are the most");
    }
}

TEST_F(MessageTextTest, IsNotWrittenOfMoreElementsThanThereIsRoomFor) {
    DeviceStatus status{};
    problem_t problem;
    for (const std::int32_t count : {INT32_MIN, -1, 0, 10, 11}) {
        status.numOfMessages = count;
        EXPECT_EQ(print(status, problem) == "", count == 11);
    }
    EXPECT_EQ(shownReport(problem), "countAboveRoom: numOfMessages is 11, there is room for 10");
    EXPECT_THROW((void)print(status), messageError_t);
}

// Of a text of any length, by default the longest that the format knows; answered like every other refusal.
TEST_F(MessageTextTest, IsRefusedAboveTheLengthThatAHostTakes) {
    const std::string shorter = message(4112, "{FOCUS_VALUE=2.500000;}");
    std::string longer = "@@4101 100000 7 41 {ARRAY_CASSETTE={};}!!";
    longer.insert(longer.size() - 2, 99999 - longer.size(), ';');
    const auto refusal = []<class Structure>(const Structure &, const std::string &text, auto... longest) {
        problem_t problem;
        const bool isRead = parse<Structure>(text, problem, longest...) != nullptr;
        EXPECT_EQ(isRead, !problem);
        EXPECT_EQ(problem.numbers.echoTag, problem ? 7 : -1);
        if (problem) {
            EXPECT_THROW((void)parse<Structure>(text, longest...), messageError_t);
        }
        return shownReport(problem);
    };
    const std::string above = "aboveLimit: the text has ";
    EXPECT_EQ(refusal(FocusValue(), shorter), "");
    EXPECT_EQ(refusal(FocusValue(), shorter, shorter.size() + 1), "");
    EXPECT_EQ(refusal(FocusValue(), shorter, shorter.size()), above + std::to_string(shorter.size() + 1) +
                                                                  " characters with its NUL, more than the " +
                                                                  std::to_string(shorter.size()) + " that are taken");
    EXPECT_EQ(refusal(CassetteArray(), longer),
              above + "100000 characters with its NUL, more than the 99999 that are taken");
    EXPECT_EQ(refusal(CassetteArray(), longer, 100000U), "");
}

} // namespace
