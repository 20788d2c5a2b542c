// White space, digits and letters of 7-bit text, by value: the one place of the library that tells them.
//
// The same under every locale, which the C library's are not: other bytes have no case and are no space. Letters say
// "ascii" in their names, since string_t has operations with the short ones. Pure functions, safe for concurrent use.
#pragma once

#include "vek/vek_std/std_sys/vek_cpp20.hpp"

namespace vek {

constexpr bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool isDigit(char c) {
    return static_cast<unsigned char>(c - '0') < 10;
}
constexpr bool isAsciiLower(char c) {
    return c >= 'a' && c <= 'z';
}
constexpr bool isAsciiUpper(char c) {
    return c >= 'A' && c <= 'Z';
}
constexpr char asciiToUpper(char c) {
    return isAsciiLower(c) ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char asciiToLower(char c) {
    return isAsciiUpper(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace vek
