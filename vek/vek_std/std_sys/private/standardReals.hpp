// Reals as the standard library reads and writes them, and as others do where it can't yet.
//
// Pure functions, safe for concurrent use.
#pragma once

#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <system_error>

#if !defined(__cpp_lib_to_chars)
#    include <cstdio>
#    include <fast_float/fast_float.h>
#endif

// What the C++ library's own file writes, the memory sanitizer can't see.
#if defined(__has_feature)
#    if __has_feature(memory_sanitizer)
#        include <sanitizer/msan_interface.h>
#        define VEK_SHOW_WRITTEN(from, to) __msan_unpoison(from, static_cast<std::size_t>((to) - (from)))
#    endif
#endif
#ifndef VEK_SHOW_WRITTEN
#    define VEK_SHOW_WRITTEN(from, to) static_cast<void>(0)
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
    const auto format = isFixed ? std::chars_format::fixed : std::chars_format::general;
    char *const behind = std::to_chars(to, end, value, format, 6).ptr;
    VEK_SHOW_WRITTEN(to, behind);
    return behind;
#else
    // Such a library has no locale but C's.
    return to + std::snprintf(to, static_cast<std::size_t>(end - to), isFixed ? "%.6f" : "%.6g", value);
#endif
}

} // namespace vek
