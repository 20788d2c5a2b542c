// Pieces of words for people.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace vek::inspect {

inline std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts)
        text += part;
    return text;
}

} // namespace vek::inspect
