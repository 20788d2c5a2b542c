// Pieces of Markdown.
#pragma once

#include "vek/inspect/words/words.hpp"

#include <string>
#include <string_view>

namespace vek {

using inspect::joined;

/// Nothing for no text.
inline std::string code(std::string_view text) {
    return text.empty() ? std::string() : joined({"`", text, "`"});
}

inline std::string link(std::string_view text, std::string_view target) {
    return joined({"[", text, "](", target, ")"});
}

/// The anchor that viewers give a heading, with its #.
inline std::string anchorOf(std::string_view heading) {
    std::string anchor = "#";
    for (const char c : heading)
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-')
            anchor += c;
        else if (c >= 'A' && c <= 'Z')
            anchor += static_cast<char>(c - 'A' + 'a');
        else if (c == ' ')
            anchor += '-';
    return anchor;
}

} // namespace vek
