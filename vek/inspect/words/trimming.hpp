// What may stand around a text and is none of it: white space, and the byte order mark that editors put in front.
#pragma once

#include <string_view>

namespace vek::inspect {

inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
inline constexpr std::string_view whiteSpace = " \t\n\v\f\r";

constexpr std::string_view withoutByteOrderMark(std::string_view text) {
    return text.substr(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
}

/// Without these characters at both ends.
constexpr std::string_view trimmed(std::string_view text, std::string_view characters = whiteSpace) {
    const std::size_t start = text.find_first_not_of(characters);
    return start == std::string_view::npos ? std::string_view()
                                           : text.substr(start, text.find_last_not_of(characters) + 1 - start);
}

} // namespace vek::inspect
