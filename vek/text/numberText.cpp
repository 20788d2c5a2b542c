#include "vek/text/numberText.hpp"

#include "vek/vek_std/std_sys/private/standardReals.hpp"

#include <cmath>
#include <limits>

namespace vek {

namespace {

constexpr std::uint64_t largestExactInteger = std::uint64_t{1} << 53;

// Every power of ten that a double holds exactly.
constexpr std::array<double, 23> exactPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Most numbers are short.
template <class Unsigned>
[[gnu::always_inline]] inline char *writeUnsigned(Unsigned value, char *to) {
    if (value < 10000)
        return writeUpToFourDigits(static_cast<std::uint32_t>(value), to);
    if (value >= 100000000)
        return std::to_chars(to, to + std::numeric_limits<Unsigned>::digits10 + 1, value).ptr;
    const auto digits = static_cast<std::uint32_t>(value);
    to = writeUpToFourDigits(digits / 10000, to);
    to = writeDigitPair(digits % 10000 / 100, to);
    return writeDigitPair(digits % 100, to);
}

// Decimals keep their zeros, unlike whole numbers.
char *writeSixDigits(std::uint32_t value, char *to) {
    to = writeDigitPair(value / 10000, to);
    to = writeDigitPair(value / 100 % 100, to);
    return writeDigitPair(value % 100, to);
}

// A number below 2^44: its whole part, and the rest in millionths, rounded, ties to even.
struct fixed_t {
    std::uint64_t whole = 0;
    std::uint32_t millionths = 0;
};

// significand / 2^shift. The significand has at most 53 bits and the shift is 9 to 63, so what is behind the point fits
// one word, and its product with 10^6 has the millionths above that word and what is to be rounded in it.
fixed_t toFixed(std::uint64_t significand, int shift) {
    const std::uint64_t fraction = significand << (64 - shift);
#ifdef __SIZEOF_INT128__
    __extension__ using twoWords_t = unsigned __int128;
    const auto product = static_cast<twoWords_t>(fraction) * 1000000U;
    const auto quotient = static_cast<std::uint64_t>(product >> 64);
    const auto remainder = static_cast<std::uint64_t>(product);
#else // of a 32-bit target
    const std::uint64_t lower = (fraction & UINT32_MAX) * 1000000U;
    const std::uint64_t upper = (fraction >> 32) * 1000000U + (lower >> 32);
    const std::uint64_t quotient = upper >> 32;
    const std::uint64_t remainder = upper << 32 | (lower & UINT32_MAX);
#endif
    // Above one half, or one half behind an odd digit. (The remainder is even: the sum doesn't wrap.)
    constexpr std::uint64_t half = std::uint64_t{1} << 63;
    const std::uint64_t millionths = quotient + (remainder + (quotient & 1) > half ? 1 : 0);
    const bool isCarried = millionths == 1000000U;
    return {(significand >> shift) + (isCarried ? 1 : 0), isCarried ? 0 : static_cast<std::uint32_t>(millionths)};
}

// A decimal number taken apart: its value is digits * 10^exponent when `isShort`.
struct decimal_t {
    std::uint64_t digits = 0;
    std::int64_t exponent = 0;
    bool isShort = false;
    bool hasDigits = false;
};

// The exponent's digits behind "e", saturated far beyond what a double can hold; 0 when there are none.
std::int64_t readExponent(const char *at, const char *end) {
    if (at == end || (*at != 'e' && *at != 'E'))
        return 0;
    ++at;
    bool isNegative = false;
    if (at != end && (*at == '-' || *at == '+'))
        isNegative = *at++ == '-';
    std::int64_t value = 0;
    for (; at != end && isDigit(*at); ++at)
        if (value < (std::int64_t{1} << 56) / 10)
            value = value * 10 + (*at - '0');
    return isNegative ? -value : value;
}

// The general way: any number of digits. Zeros in front and at the end don't make a number long.
decimal_t readAnyDecimal(const char *at, const char *end) {
    decimal_t number;
    std::int64_t significant = 0;   // digits since the first that is not zero
    std::int64_t trailingZeros = 0; // of these, zeros not yet followed by another digit
    std::int64_t decimals = 0;
    bool behindPoint = false;
    for (; at != end && (isDigit(*at) || (*at == '.' && !behindPoint)); ++at) {
        if (*at == '.') {
            behindPoint = true;
            continue;
        }
        number.hasDigits = true;
        decimals += behindPoint ? 1 : 0;
        if (*at == '0') {
            trailingZeros += significant > 0 ? 1 : 0;
            significant += significant > 0 ? 1 : 0;
            continue;
        }
        for (++significant; trailingZeros > 0 && significant <= 19; --trailingZeros)
            number.digits *= 10;
        trailingZeros = 0;
        if (significant > 19) { // long, whatever follows: the rest is counted alone, which takes a fraction of the time
            const char *const first = at;
            while (at + 1 != end && isDigit(at[1]))
                ++at;
            significant += at - first;
            decimals += behindPoint ? at - first : 0;
        } else {
            number.digits = number.digits * 10 + static_cast<std::uint64_t>(*at - '0');
        }
    }
    number.exponent = number.hasDigits ? readExponent(at, end) - decimals + trailingZeros : 0;
    number.isShort = significant - trailingZeros <= 19;
    if (!number.isShort)
        number.exponent += significant - trailingZeros - 1; // the magnitude: that of the leading digit
    return number;
}

// Both the digits and the power of ten are doubles without rounding.
bool isExactlyComputable(std::uint64_t digits, std::int64_t exponent) {
    return digits <= largestExactInteger && exponent >= -22 && exponent <= 22;
}

// Both operands are exact, so the one operation rounds once, correctly. (Unsigned integers would go through the x87
// unit on 32-bit targets, whose precision is the host's to set.)
double compute(std::uint64_t digits, std::int64_t exponent) {
    const auto significand = static_cast<double>(static_cast<std::int64_t>(digits));
    return exponent < 0 ? significand / exactPowersOfTen[static_cast<std::size_t>(-exponent)]
                        : significand * exactPowersOfTen[static_cast<std::size_t>(exponent)];
}

// The slow way, for long numbers and those with an exponent: what one operation can't do exactly is left to from_chars.
// That one stores nothing when the number is out of range, so the magnitude says to which side.
double readUnsignedReal(const char *at, const char *end) {
    decimal_t number = readAnyDecimal(at, end);
    if (!number.hasDigits || number.digits == 0)
        return 0.0;
    // Every significand up to 2^53 with a power of ten up to 22 is computed here, also one that ends in zeros: some
    // ready-made from_chars, compiled for the x87 unit, rounds these twice.
    for (; number.isShort && number.exponent > 22 && number.digits <= largestExactInteger / 10; --number.exponent)
        number.digits *= 10;
    if (number.isShort && isExactlyComputable(number.digits, number.exponent))
        return compute(number.digits, number.exponent);
    double value = 0.0;
    if (readStandardReal(at, end, value) == std::errc::result_out_of_range)
        value = number.exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return value;
}

} // namespace

const char *detail::readNegativeSixDecimals(const char *at, const char *end, double &value) {
    if (at[1] == '-')
        return nullptr;
    const char *const behind = readSixDecimals(at + 1, end, value);
    value = -value;
    return behind;
}

char *writeInteger(std::int32_t value, char *to) {
    *to = '-';
    to += value < 0 ? 1 : 0;
    const auto bits = static_cast<std::uint32_t>(value);
    return writeUnsigned(value < 0 ? 0U - bits : bits, to);
}

// A double is significand / 2^shift with 53 bits above, so six decimals are an integer division with a remainder that
// tells exactly whether to round up. Nothing here goes through floating point, whose rounding the host may have set,
// and to_chars is several times as slow.
char *writeReal(double value, char *to) {
    const auto bits = bitsOf(value);
    const auto exponent = static_cast<int>(bits >> 52 & 0x7FF);
    const std::uint64_t implicitBit = std::uint64_t{1} << 52;
    const int shift = 1075 - exponent;
    // The sign is taken from the bits, so that -0.0 and what rounds to it keep theirs, as "%lf" does.
    // From 2^-11 to 2^44 the millionths are exact in 64 bits; what is smaller or larger is rare.
    *to = '-';
    char *const digits = to + (bits >> 63);
    if (bits << 1 == 0) { // many are
        constexpr std::string_view zero = "0.000000";
        return digits + zero.copy(digits, zero.size());
    }
    if (shift < 9 || shift > 63) [[unlikely]]
        return writeStandardReal(value, realForm_t::sixDecimals, to, to + realRoom);
    const fixed_t number = toFixed((bits & (implicitBit - 1)) | implicitBit, shift);
    to = writeUnsigned(number.whole, digits);
    *to++ = '.';
    return writeSixDigits(number.millionths, to);
}

std::size_t numberEnd(std::string_view text, bool isReal, std::size_t &digits) {
    const char *const end = text.data() + text.size();
    const char *at = skipToDigits(text.data(), end).at;
    const auto skipDigits = [&] {
        const char *const start = at;
        while (at != end && isDigit(*at))
            ++at;
        return static_cast<std::size_t>(at - start);
    };
    digits = skipDigits();
    if (isReal && at != end && *at == '.') {
        ++at;
        digits += skipDigits();
    }
    if (isReal && digits > 0 && at != end && (*at == 'e' || *at == 'E')) {
        const char *const exponent = at++;
        at += at != end && (*at == '-' || *at == '+') ? 1 : 0;
        if (skipDigits() == 0)
            at = exponent;
    }
    return static_cast<std::size_t>(at - text.data());
}

bool isInteger32(std::string_view text) {
    std::size_t digits = 0;
    const bool isWhole = numberEnd(text, false, digits) == text.size() && digits > 0;
    const double value = readReal(text);
    return isWhole && value >= INT32_MIN && value <= INT32_MAX;
}

bool isReal(std::string_view text) {
    std::size_t digits = 0;
    return numberEnd(text, true, digits) == text.size() && digits > 0 && std::isfinite(readReal(text));
}

// The usual number, digits with a point, is read in one go: its digits as an integer, which may wrap unseen when there
// are more than 19, and one exact division. Anything else starts over in readUnsignedReal. The sign comes last, so that
// "-0" is read as -0.0.
double readReal(std::string_view text) {
    const char *const end = text.data() + text.size();
    const auto [start, isNegative] = skipToDigits(text.data(), end);
    constexpr std::ptrdiff_t mostUsual = 21; // 19 digits, a point and one more, which shows that there are too many
    const char *const usualEnd = end - start > mostUsual ? start + mostUsual : end;
    const char *at = start;
    std::uint64_t digits = 0;
    for (; at != usualEnd && isDigit(*at); ++at)
        digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
    std::ptrdiff_t length = at - start;
    std::ptrdiff_t decimals = 0;
    if (at != usualEnd && *at == '.') {
        const char *const point = at++;
        for (; at != usualEnd && isDigit(*at); ++at)
            digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
        decimals = at - point - 1;
        length += decimals;
    }
    const bool hasExponent = at != end && (*at == 'e' || *at == 'E');
    if (length == 0) // also of "-": no digits are no number, and no negative zero
        return 0.0;
    const double value = !hasExponent && length <= 19 && isExactlyComputable(digits, -decimals)
                             ? compute(digits, -decimals)
                             : readUnsignedReal(start, end);
    return isNegative ? -value : value;
}

} // namespace vek
