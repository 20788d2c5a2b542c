// Words for people: put together from pieces, and told from what stands around them.
#pragma once

#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <initializer_list>
#include <string>
#include <string_view>

namespace vek::inspect {

/// A letter, a digit or "_": keys are made of these.
constexpr bool isWordCharacter(char c) {
    return isAsciiLower(c) || isAsciiUpper(c) || isDigit(c) || c == '_';
}

inline std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts)
        text += part;
    return text;
}

} // namespace vek::inspect
