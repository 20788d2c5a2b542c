// The examples of docs/text-format.md, and the table of odd bodies, run: in a block "body ID" each line is a body and
// what it reads as, in a block "envelope" a whole text and what becomes of it.
#include "tests/support/messages.hpp"
#include "vek/api/problem.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

using namespace vek;
using namespace vek::test;

constexpr int fewestExamples = 60; // a page that isn't found has none

// The control codes 1 to 5 have pictures on the page, U+2401 to U+2405; other bytes may be spelt \xHH.
std::string withCodes(std::string text) {
    for (char code = 1; code <= 5; ++code)
        for (std::size_t at; (at = text.find(std::string("\xE2\x90") + static_cast<char>('\x80' + code))) != text.npos;)
            text.replace(at, 3, 1, code);
    for (std::size_t at = 0; (at = text.find("\\x", at)) != std::string::npos; ++at)
        text.replace(at, 4, 1, static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16)));
    return text == "nothing" ? "" : text;
}

// Whether a text is as the page says, which leaves parts at its start or its end out.
bool isShownAs(const std::string &text, std::string shape) {
    const std::string gap = "\xE2\x80\xA6";
    const bool anyStart = shape.starts_with(gap), anyEnd = shape.ends_with(gap);
    shape = shape.substr(anyStart ? gap.size() : 0);
    shape.resize(shape.size() - (anyEnd ? gap.size() : 0));
    if (anyStart && anyEnd)
        return text.find(shape) != std::string::npos;
    return anyStart ? text.ends_with(shape) : anyEnd ? text.starts_with(shape) : text == shape;
}

std::string envelopeOf(std::string_view text) {
    const envelope_t envelope = readEnvelope(text);
    if (const problem_t problem = checkEnvelope(text, envelope))
        return "refused: " + problem.text;
    const envelopeNumbers_t numbers = envelope.head.numbers({0, INT32_MIN, INT32_MIN});
    const auto number = [](const char *name, std::int32_t value) {
        return value == INT32_MIN ? std::string(", no ") + name
                                  : std::string(", ") + name + ' ' + std::to_string(value);
    };
    return std::to_string(numbers.id) + number("echo tag", numbers.echoTag) +
           number("sequence number", numbers.sequenceNumber) + ", body " + std::string(envelope.body);
}

class ExamplePages : public testing::TestWithParam<const char *> {};

TEST_P(ExamplePages, ReadAsTheySay) {
    std::ifstream page(std::string(VEK_PROJECT_FOLDER "/") + GetParam());
    std::string block;
    int examples = 0;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("```")) {
            block = line.substr(3);
            continue;
        }
        const bool isBody = block.starts_with("body ");
        if (!isBody && block != "envelope")
            continue;
        const std::size_t arrow = line.find(" -> ");
        ASSERT_NE(arrow, std::string::npos) << line;
        const std::string text = withCodes(line.substr(0, line.find_last_not_of(' ', arrow) + 1));
        const std::string expected = withCodes(line.substr(arrow + 4));
        const std::string actual = isBody ? converted(std::stoi(block.substr(5)), text) : envelopeOf(text);
        EXPECT_TRUE(isShownAs(actual, expected)) << line << "\n  is " << shown(actual);
        ++examples;
    }
    EXPECT_GE(examples, fewestExamples);
}

INSTANTIATE_TEST_SUITE_P(All, ExamplePages, testing::Values("docs/text-format.md", "tests/records/conversions.md"));

} // namespace
