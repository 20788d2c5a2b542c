// Reals as the standard library reads and writes them, and as others do where it can't yet.
//
// Pure functions, safe for concurrent use.
#pragma once

#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <system_error>

#if !defined(__cpp_lib_to_chars)
#    include <cstdio>
#    include <fast_float/fast_float.h>
#endif

namespace vek {

inline std::uint64_t bitsOf(double value) {
#if defined(__cpp_lib_bit_cast)
    return std::bit_cast<std::uint64_t>(value);
#else
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
#endif
}

/// As std::from_chars: the error is result_out_of_range for what no double holds.
inline std::errc readStandardReal(const char *at, const char *end, double &value) {
#if defined(__cpp_lib_to_chars)
    return std::from_chars(at, end, value).ec;
#else
    return fast_float::from_chars(at, end, value).ec;
#endif
}

/// How std::to_chars writes a number: with six decimals, or six significant digits.
enum class realForm_t { sixDecimals, sixDigits };

/// Returns the end of what was written; `end` leaves room for a NUL behind it.
inline char *writeStandardReal(double value, realForm_t form, char *to, char *end) {
    const bool isFixed = form == realForm_t::sixDecimals;
#if defined(__cpp_lib_to_chars)
    return std::to_chars(to, end, value, isFixed ? std::chars_format::fixed : std::chars_format::general, 6).ptr;
#else
    // Such a library has no locale but C's.
    return to + std::snprintf(to, static_cast<std::size_t>(end - to), isFixed ? "%.6f" : "%.6g", value);
#endif
}

} // namespace vek
