#pragma once

// Letters and white space of 7-bit text, by value. The same under every locale, which the C library's are not: other
// bytes have no case and are no space.

namespace vek {

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
constexpr bool isAsciiSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace vek
