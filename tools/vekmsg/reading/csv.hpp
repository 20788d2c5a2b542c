// A value in a table of text, as spreadsheets and plotters read it.
#pragma once

#include <string>
#include <string_view>

namespace vek::tool {

/// As RFC 4180 says: in quotes when there is something in it that would end it.
inline void appendCsvCell(std::string &out, std::string_view value) {
    if (value.find_first_of(",\"\r\n") == std::string_view::npos) {
        out += value;
        return;
    }
    out += '"';
    for (const char c : value)
        out.append(c == '"' ? 2 : 1, c);
    out += '"';
}

} // namespace vek::tool
