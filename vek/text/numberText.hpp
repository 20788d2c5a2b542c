// Numbers as text: the one place where a body's integers and reals are written and read.
//
// Both directions are exact: writing rounds to nearest, ties to even, reading gives the nearest representable number.
// Neither consults the locale or errno. Pure functions, safe for concurrent use.
#pragma once

#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

namespace vek {

/// Room that writeInteger needs: ten digits and a sign.
inline constexpr std::size_t integerRoom = 11;

/// Room that writeReal needs: 309 digits, a sign, the point and six decimals.
inline constexpr std::size_t realRoom = 320;

static_assert(std::endian::native == std::endian::little, "digits are read and written as words");

/// The numbers 00 to 99, two digits each.
inline constexpr auto digitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

/// Writes a number below 100 with exactly two digits.
inline char *writeDigitPair(std::size_t value, char *to) {
    std::memcpy(to, &digitPairs[2 * value], 2);
    return to + 2;
}

/// The four digits of a number below 10000, zeros in front, as one word: the first in its lowest byte.
inline std::uint32_t fourDigits(std::uint32_t value) {
    std::uint16_t upper = 0;
    std::uint16_t lower = 0;
    std::memcpy(&upper, &digitPairs[std::size_t{2} * (value / 100)], sizeof upper);
    std::memcpy(&lower, &digitPairs[std::size_t{2} * (value % 100)], sizeof lower);
    return upper | std::uint32_t{lower} << 16;
}

/// How many bits of such a word the zeros in front have: 0, 8, 16 or 24, since the last digit always counts.
inline int zeroBitsInFront(std::uint32_t fourDigits) {
    constexpr std::uint32_t zeros = 0x30303030, lastDigit = 1U << 24;
    return std::countr_zero((fourDigits ^ zeros) | lastDigit) & ~7;
}

/// The same with blanks in place of these zeros.
inline std::uint32_t fourPlaces(std::uint32_t value) {
    const std::uint32_t digits = fourDigits(value);
    constexpr std::uint32_t zeroToBlank = ('0' ^ ' ') * 0x01010101U;
    static_assert(('0' & ~('0' ^ ' ')) == ' ');
    return digits & ~(zeroToBlank & ((1U << zeroBitsInFront(digits)) - 1));
}

/// The number that such a word of digits alone is; -1 of any other one.
inline std::int32_t numberOfFourDigits(std::uint32_t word) {
    constexpr std::uint32_t upperHalves = 0xF0F0F0F0, zeros = 0x30303030, toSixteen = 0x06060606;
    if ((word & upperHalves) != zeros || ((word + toSixteen) & upperHalves) != zeros)
        return -1;
    word ^= zeros;
    word = word * 10 + (word >> 8); // the pairs, in every second byte
    return static_cast<std::int32_t>((word & 0x00FF00FFU) * (1 + (100U << 16)) >> 16);
}

/// Writes a number below 10000 without a branch, and without zeros in front. Four characters are stored, of which those
/// behind the returned end count for nothing.
inline char *writeUpToFourDigits(std::uint32_t value, char *to) {
    // Compared with the value, which is known before its digits are.
    const int zeros = (value < 10 ? 1 : 0) + (value < 100 ? 1 : 0) + (value < 1000 ? 1 : 0);
    const std::uint32_t digits = fourDigits(value) >> 8 * zeros;
    std::memcpy(to, &digits, sizeof digits);
    return to + 4 - zeros;
}

/// Writes `value` in decimal and returns the end of what was written. No terminator is written.
char *writeInteger(std::int32_t value, char *to);

/// Writes `value` as C's "%lf" does in the C locale: six decimals, no exponent; infinities and not-a-numbers as "inf",
/// "-inf", "nan" and "-nan". Returns the end of what was written. No terminator is written.
char *writeReal(double value, char *to);

/// Reads optional white space, an optional sign and decimal digits, and ignores what follows. No digits give 0; a value
/// beyond 32 bits keeps its low 32 bits.
inline std::int32_t readInteger(std::string_view text);

/// Reads optional white space, an optional sign, decimal digits with an optional point, and an optional exponent, and
/// ignores what follows. No digits give 0.0, a value beyond the range of double an infinity.
double readReal(std::string_view text);

/// How far a number reaches in a text, as readInteger or readReal takes it; `digits` becomes how many it has in front
/// of an exponent.
std::size_t numberEnd(std::string_view text, bool isReal, std::size_t &digits);

/// Whether a text is an integer of 32 bits, or a finite real, with nothing behind it.
bool isInteger32(std::string_view text);
bool isReal(std::string_view text);

/// Reads a real as writeReal writes it, with up to seven digits in front of the point, "-12.500000", and without a
/// loop. Returns the place behind it; null when something else is here, or when less than two characters follow.
inline const char *readSixDecimals(const char *at, const char *end, double &value);

/// A number's leading white space and sign, taken off the front of its text.
struct numberStart_t {
    const char *at;
    bool isNegative;
};

inline numberStart_t skipToDigits(const char *at, const char *end) {
    while (at != end && isSpace(*at))
        ++at;
    bool isNegative = false;
    if (at != end && (*at == '-' || *at == '+'))
        isNegative = *at++ == '-';
    return {at, isNegative};
}

namespace detail {

constexpr std::uint64_t inEachByte(unsigned char value) {
    return value * (UINT64_MAX / UINT8_MAX);
}

const char *readNegativeSixDecimals(const char *at, const char *end, double &value);

/// Eight characters as one word, the first in its lowest byte: of a digit its value. Bytes above one that is no digit
/// count for nothing.
inline std::uint64_t loadDigits(const char *at) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    return word - inEachByte('0');
}

inline bool areDigits(std::uint64_t word) {
    return ((word | (word + inEachByte(0x7F - 9))) & inEachByte(0x80)) == 0;
}

/// The number that eight digits are: pairs of digits, then of pairs, then of these, all at once.
inline std::uint64_t joinDigits(std::uint64_t word) {
    constexpr std::uint64_t everySecondPair = 0x000000FF000000FFU;
    word = word * 10 + (word >> 8); // the pairs, in every second byte
    return ((word & everySecondPair) * (100 + (std::uint64_t{1000000} << 32)) +
            (word >> 16 & everySecondPair) * (1 + (std::uint64_t{10000} << 32))) >>
           32;
}

} // namespace detail

inline const char *readSixDecimals(const char *at, const char *end, double &value) {
    using namespace detail;
    constexpr std::ptrdiff_t wordSize = 8;
    if (end - at < wordSize)
        return nullptr;
    // Apart, so that where the next value is found doesn't wait for the comparison.
    if (*at == '-') [[unlikely]]
        return readNegativeSixDecimals(at, end, value);
    const std::uint64_t digits = loadDigits(at);
    // The highest bit of each byte that is a point; the first one is right, whatever stands behind it.
    const std::uint64_t others = digits ^ inEachByte(static_cast<unsigned char>('.' - '0'));
    const std::uint64_t points = (others - inEachByte(1)) & ~others & inEachByte(0x80);
    if (points == 0)
        return nullptr;
    const auto point = static_cast<unsigned>(std::countr_zero(points));
    const char *const decimals = at + point / 8 + 1;
    if (end - decimals < wordSize)
        return nullptr;
    // Both parts behind as many zeros as make eight digits. (No shift by the whole word.)
    const std::uint64_t whole = digits << (63 - point) << 8;
    const std::uint64_t fraction = loadDigits(decimals) << 16;
    if (!areDigits(whole) || !areDigits(fraction))
        return nullptr;
    // Both operands are exact, so the division alone rounds.
    const auto millionths = static_cast<std::int64_t>(joinDigits(whole) * 1000000U + joinDigits(fraction));
    value = static_cast<double>(millionths) / 1e6;
    return decimals + 6;
}

inline std::int32_t readInteger(std::string_view text) {
    const char *const end = text.data() + text.size();
    auto [at, isNegative] = skipToDigits(text.data(), end);
    std::uint32_t value = 0;
    for (; at != end && isDigit(*at); ++at)
        value = value * 10U + static_cast<std::uint32_t>(*at - '0');
    return static_cast<std::int32_t>(isNegative ? 0U - value : value);
}

} // namespace vek
