// Lines and columns of what people read: how wide, broken, filled up.
#pragma once

#include "tools/vekmsg/terminal/platform.hpp"

#include <algorithm>
#include <string>
#include <string_view>

namespace vek::tool {

/// Columns that output for people may take.
inline std::size_t pageWidth() {
    return isTerminal(1) ? std::max<std::size_t>(terminalWidth(), 40) : 100;
}

/// The characters of UTF-8 in a text: the columns that they take, but for wide ones.
inline std::size_t columnsOf(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// A text with blanks behind it, or in front of it, up to a width.
inline std::string padded(std::string_view text, std::size_t width, bool isRight = false) {
    const std::string space(width - std::min(width, columnsOf(text)), ' ');
    return isRight ? space + std::string(text) : std::string(text) + space;
}

/// A line broken at blanks, as far as it has any, into lines that fit; those behind the first are indented.
inline std::string wrapped(std::string line, std::size_t width, std::size_t indent) {
    std::string out;
    for (std::size_t place;
         line.size() > width && (place = line.rfind(' ', width)) != std::string::npos && place > indent;) {
        out.append(line, 0, line.find_last_not_of(' ', place) + 1).append("\n");
        line.replace(0, place + 1, indent, ' ');
    }
    return out + line;
}

} // namespace vek::tool
