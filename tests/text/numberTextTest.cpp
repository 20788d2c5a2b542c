// Numbers as text, beside the C library and std::to_chars on millions of numbers of every shape.
#include "vek/text/numberText.hpp"
#include "tests/support/decimalPoint.hpp"
#include "tests/support/messages.hpp"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>

namespace {

using namespace vek;
using namespace std::string_literals;

std::string formatted(const char *format, auto... arguments) {
    std::array<char, 1200> text;
    const int length = std::snprintf(text.data(), text.size(), format, arguments...);
    return test::withPoint({text.data(), static_cast<std::size_t>(length)});
}

std::string realText(double value) {
    char text[realRoom];
    return {text, writeReal(value, text)};
}

class Numbers : public testing::Test {
protected:
    std::mt19937_64 random{20260101};

    double anyDouble() { return std::bit_cast<double>(random()); }
    std::uint64_t below(std::uint64_t limit) { return random() % limit; }
    /// Of any number of bits.
    std::uint64_t anyInteger() { return random() >> below(64); }
    /// Beside a power of two, on either side, some steps away.
    double nearPowerOfTwo() {
        const double power = std::ldexp(1.0, static_cast<int>(below(120)) - 60);
        return std::bit_cast<double>(std::bit_cast<std::uint64_t>(power) + below(5) - 2);
    }
};

void expectWritten(double value) {
    const std::string text = realText(value);
    char expected[realRoom + 10];
    const auto end = std::to_chars(expected, std::end(expected), value, std::chars_format::fixed, 6).ptr;
    ASSERT_EQ(text, std::string(expected, end)) << formatted("%a", value);
}

void expectRead(const std::string &text) {
    const double value = readReal(text);
    const double expected = test::toDouble(text);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected))
        << text << " gives " << formatted("%a", value) << ", not " << formatted("%a", expected);
}

TEST_F(Numbers, RealsAreWrittenAsToCharsAndPrintfDo) {
    for (const double value :
         {0.0, 5e-324, 2.2250738585072014e-308, 1.7976931348623157e308, 0.0000005, 0.0000015, 17592186044415.999,
          17592186044416.0, 9007199254740992.0, 1e22, 1e23, HUGE_VAL, std::numeric_limits<double>::quiet_NaN()})
        for (const double signedValue : {std::copysign(value, 1.0), std::copysign(value, -1.0)})
            ASSERT_EQ(realText(signedValue), formatted("%lf", signedValue));
    for (int i = 0; i < test::rounds(600000); ++i) {
        const auto power = static_cast<int>(below(60));
        const auto integer = static_cast<double>(anyInteger());
        expectWritten(anyDouble());
        expectWritten(nearPowerOfTwo());
        expectWritten(integer / 1e6); // short decimals and their neighbours
        expectWritten(integer / std::pow(10.0, power % 12));
        expectWritten(-std::ldexp(integer, -power)); // with ties at the sixth decimal
        expectWritten(static_cast<double>(static_cast<float>(anyDouble())));
    }
}

TEST_F(Numbers, RealsAreReadAsStrtodDoes) {
    std::istringstream words(
        "0 -0 +5 .5 5. . 1e5 1E-5 1e 1e+ 1e5x 00.00100 1.5.5 --1 4.9406564584124654e-324 2.4703282292062327e-324 "
        "2.4703282292062328e-324 1.7976931348623157e308 1.7976931348623158e308 1.7976931348623159e308 1e308 1e309 "
        "9007199254740993 9007199254740992e22 1e23 0.00000000000000000000001 18446744073709551616 "
        "36893488147419103233");
    for (std::string word; words >> word;)
        expectRead(word);
    expectRead("");
    for (int i = 0; i < test::rounds(250000); ++i) {
        const double value = anyDouble();
        if (!std::isfinite(value))
            continue;
        const auto digits = static_cast<int>(14 + below(12));
        const auto integer = static_cast<unsigned long long>(anyInteger());
        const auto exponent = static_cast<int>(below(100)) - 50;
        const std::string decimal = std::to_string(integer);
        expectRead(formatted("%.*e", digits, value));
        expectRead(formatted("%.*e", digits, nearPowerOfTwo()));
        expectRead(formatted("%llue%d", integer, exponent));
        expectRead(formatted("%.*f", static_cast<int>(below(20)), std::ldexp(value, -std::ilogb(value) + exponent)));
        expectRead(decimal.substr(0, 1 + below(6)) + '.' + decimal);
        const std::string zeros(below(30), '0');
        expectRead(zeros + '.' + zeros + decimal + zeros);
        expectRead(decimal + zeros + '.' + zeros + 'e' + std::to_string(exponent));
    }
}

// The hardest texts: exactly between two neighbouring numbers, and the last digit of hundreds aside.
TEST_F(Numbers, RealsHalfwayBetweenNeighboursAreReadExactly) {
    static_assert(std::numeric_limits<long double>::digits >= 54);
    for (int i = 0; i < test::rounds(20000); ++i) {
        const auto bits = i % 2 == 0 ? std::bit_cast<std::uint64_t>(nearPowerOfTwo()) : random() >> 1;
        const auto lower = std::bit_cast<double>(bits);
        const auto upper = std::bit_cast<double>(bits + 1);
        if (!std::isnormal(lower) || !std::isfinite(upper))
            continue;
        const long double middle = (static_cast<long double>(lower) + static_cast<long double>(upper)) / 2;
        std::string text = formatted("%.*Le", static_cast<int>(i % 3 == 0 ? 780 : 17 + below(40)), middle);
        expectRead(text);
        const std::size_t last = text.find('e') - 1;
        text.insert(last + 1, 1 + below(300), '0');
        expectRead(text);
        text[last + 1] = '1';
        expectRead(text);
        text[last + 1] = '0';
        text[last] = text[last] == '0' ? '1' : static_cast<char>(text[last] - 1);
        expectRead(text);
    }
}

TEST_F(Numbers, RealsOfAnyLengthAreReadExactlyAndInLinearTime) {
    const std::string nines(1000000, '9');
    const std::string zeros(1000000, '0');
    const std::string half = formatted("%.60Lf", 1.0L + std::ldexp(1.0L, -53));
    const auto start = std::chrono::steady_clock::now();
    for (const std::string &number : {nines, '.' + nines, zeros + "12.5", '.' + zeros + "125", '1' + zeros, zeros,
                                      half + zeros, half + zeros + '1', '.' + zeros + nines})
        for (const std::string &exponent :
             {""s, "e1000003"s, "e-1000001"s, "e2000000"s, 'e' + nines, "e-" + nines, 'e' + zeros + '2'})
            expectRead(number + exponent);
    expectRead(std::string(1000000, ' ') + "-1.5");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

TEST_F(Numbers, IntegersAreWrittenAndReadAsWrittenByToString) {
    for (int i = 0; i < test::rounds(1000000); ++i) {
        const auto value = static_cast<std::int32_t>(i % 2 == 0 ? anyInteger() : 0U - anyInteger());
        char text[integerRoom];
        const std::string written(text, writeInteger(value, text));
        ASSERT_EQ(written, std::to_string(value));
        ASSERT_EQ(readInteger(written), value);
        const auto wide = static_cast<std::int64_t>(random() >> below(60)); // beyond 32 bits it wraps
        ASSERT_EQ(readInteger(std::to_string(wide)), static_cast<std::int32_t>(wide)) << wide;
    }
}

} // namespace
