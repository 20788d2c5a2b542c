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

/// The size of the sequence of a terminal that stands at a place, such as a colour; 0 when none does.
inline std::size_t sequenceAt(std::string_view text, std::size_t at) {
    return text.substr(at).starts_with("\x1b[") ? std::min(text.find('m', at), text.size() - 1) + 1 - at : 0;
}

/// Where a text's first columns end, of which a character of UTF-8 takes one (wide ones take two in truth), and a
/// sequence none.
inline std::size_t endOfColumns(std::string_view text, std::size_t columns) {
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        if (const std::size_t sequence = sequenceAt(text, at); sequence > 0)
            at += sequence - 1;
        else if ((static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80U && columns-- == 0)
            break;
    }
    return at;
}

/// The columns that a text takes.
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
    for (std::size_t end, place; (end = endOfColumns(line, width)) < line.size() &&
                                 (place = line.rfind(' ', end)) != std::string::npos && place > indent;) {
        out.append(line, 0, line.find_last_not_of(' ', place) + 1).append("\n");
        line.replace(0, place + 1, indent, ' ');
    }
    return out + line;
}

} // namespace vek::tool
