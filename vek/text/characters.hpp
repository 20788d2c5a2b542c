// The characters with a meaning in a body, and the codes that stand for them inside a text value.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vek {

/// Ends a key, a keyed pair and an unkeyed value, in this order.
inline constexpr std::string_view separators = "=;,";
inline constexpr char openBrace = '{';
inline constexpr char closeBrace = '}';

/// A text value writes these characters as the control codes 1 to 5.
inline constexpr std::string_view escapedCharacters = "=;,{}";

namespace detail {

using characterMap_t = std::array<char, 256>;

consteval characterMap_t mapCharacters(bool toCodes) {
    characterMap_t map{};
    for (std::size_t i = 0; i < map.size(); ++i)
        map[i] = static_cast<char>(i);
    for (std::size_t i = 0; i < escapedCharacters.size(); ++i) {
        const auto code = static_cast<char>(i + 1);
        const char character = escapedCharacters[i];
        if (toCodes)
            map[static_cast<unsigned char>(character)] = code;
        else
            map[static_cast<unsigned char>(code)] = character;
    }
    return map;
}

inline constexpr characterMap_t escapeMap = mapCharacters(true);
inline constexpr characterMap_t unescapeMap = mapCharacters(false);

inline constexpr std::array<bool, 256> separatorSet = [] {
    std::array<bool, 256> set{};
    for (const char c : separators)
        set[static_cast<unsigned char>(c)] = true;
    return set;
}();

} // namespace detail

constexpr bool isSeparator(char c) {
    return detail::separatorSet[static_cast<unsigned char>(c)];
}

/// A character of a text value as it stands in a body, and back. Characters without a meaning map to themselves.
constexpr char escaped(char c) {
    return detail::escapeMap[static_cast<unsigned char>(c)];
}
constexpr char unescaped(char c) {
    return detail::unescapeMap[static_cast<unsigned char>(c)];
}

/// Whether `c` is one of the codes that unescaped() replaces.
constexpr bool isEscapeCode(char c) {
    return static_cast<unsigned char>(c - 1) < escapedCharacters.size();
}

} // namespace vek
