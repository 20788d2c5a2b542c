// The characters with a meaning in a body, and the codes that stand for them inside a text value.
#pragma once

#include "vek/vek_std/std_sys/vek_shortRuns.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

namespace vek {

inline constexpr char equalsSign = '='; ///< ends a key
inline constexpr char semicolon = ';';  ///< ends a pair with a key
inline constexpr char comma = ',';      ///< ends a value without one
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
    for (const char c : {equalsSign, semicolon, comma})
        set[static_cast<unsigned char>(c)] = true;
    return set;
}();

} // namespace detail

constexpr bool isSeparator(char c) {
    return detail::separatorSet[static_cast<unsigned char>(c)];
}

/// Whether `key` and a "=" stand at `at`.
inline bool isKeyAt(const char *at, const char *end, std::string_view key) {
    return static_cast<std::size_t>(end - at) > key.size() && at[key.size()] == equalsSign &&
           areSame(at, key.data(), key.size());
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

/// Whether a text has one of these codes, or a NUL. By words, of which the last may overlap.
inline bool hasCodes(std::string_view text) {
    const auto codesAt = [text]<class Word>(Word word, std::size_t at) {
        constexpr Word ones = std::numeric_limits<Word>::max() / UINT8_MAX;
        std::memcpy(&word, text.data() + at, sizeof word);
        return (word - ones * (escapedCharacters.size() + 1)) & ~word & ones * 0x80;
    };
    if (text.size() >= 8) {
        std::uint64_t found = codesAt(std::uint64_t(), text.size() - 8);
        for (std::size_t at = 0; at + 8 < text.size(); at += 8)
            found |= codesAt(std::uint64_t(), at);
        return found != 0;
    }
    if (text.size() >= 4)
        return (codesAt(std::uint32_t(), 0) | codesAt(std::uint32_t(), text.size() - 4)) != 0;
    return std::any_of(text.begin(), text.end(), [](char c) { return c == '\0' || isEscapeCode(c); });
}

} // namespace vek
