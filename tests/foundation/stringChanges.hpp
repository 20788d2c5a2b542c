#pragma once

// What can be done to a string_t, and the same said to its model: one list for the random walk and for the tests
// without memory.

#include "stringModel.hpp"
#include "vek/vek_std/std_sys/vek_stringStream.hpp"

#include <cctype>
#include <sstream>
#include <string>

namespace changes {

using real_t = vek::string_t;
using model_t = model::string_t;

inline char upper(char c) {
    return static_cast<char>(std::toupper(c));
}
inline char lower(char c) {
    return static_cast<char>(std::tolower(c));
}

/// What a change is made with.
struct with_t {
    std::string text;
    std::size_t position, removed; ///< may lie beyond the string's end
    std::size_t start, extent;     ///< a part of the string
    std::istringstream input{};    ///< of the text; read away by the change
};

struct change_t {
    const char *name;
    /// Asks for no memory but the strings' own. `other` may be the string itself.
    void (*real)(real_t &one, const real_t &other, with_t &with);
    void (*expected)(model_t &one, const model_t &other, const with_t &with);
};

inline constexpr change_t all[] = {
    {"text", [](real_t &one, const real_t &, with_t &with) { one = real_t(with.text.data(), with.text.size()); },
     [](model_t &one, const model_t &, const with_t &with) { one = with.text; }},
    {"count and character", [](real_t &one, const real_t &, with_t &with) { one = real_t(with.removed, 'x'); },
     [](model_t &one, const model_t &, const with_t &with) { one = std::string(with.removed, 'x'); }},
    {"sharing", [](real_t &one, const real_t &other, with_t &) { one = other; },
     [](model_t &one, const model_t &other, const with_t &) { one = other; }},
    {"deep copy", [](real_t &one, const real_t &other, with_t &) { one = other.deepCopy(); },
     [](model_t &one, const model_t &other, const with_t &) { one = other.text(); }},
    {"concatenation", [](real_t &one, const real_t &other, with_t &with) { one = other + with.text.c_str(); },
     [](model_t &one, const model_t &other, const with_t &with) { one = other.text() + with.text; }},
    {"append", [](real_t &one, const real_t &, with_t &with) { one.append(with.text.c_str()); },
     [](model_t &one, const model_t &, const with_t &with) { one.replace(one.text().size(), 0, with.text); }},
    {"blanks", [](real_t &one, const real_t &, with_t &with) { one.prepend(nullptr, with.text.size()); },
     [](model_t &one, const model_t &, const with_t &with) { one.replace(0, 0, std::string(with.text.size(), ' ')); }},
    {"case", [](real_t &one, const real_t &, with_t &) { one.toLower(); },
     [](model_t &one, const model_t &, const with_t &) { one.transform(0, one.text().size(), lower); }},
    {"replacement",
     [](real_t &one, const real_t &, with_t &with) {
         one.replace(with.position, with.removed, with.text.data(), with.text.size());
     },
     [](model_t &one, const model_t &, const with_t &with) { one.replace(with.position, with.removed, with.text); }},
    {"own text",
     [](real_t &one, const real_t &, with_t &with) {
         one.replace(with.position, with.removed, one.c_str() + with.start, with.extent);
     },
     [](model_t &one, const model_t &, const with_t &with) {
         one.replace(with.position, with.removed, one.text().substr(with.start, with.extent), true);
     }},
    {"view copied",
     [](real_t &one, const real_t &, with_t &with) {
         one = real_t(one(static_cast<std::ptrdiff_t>(with.start), with.extent));
     },
     [](model_t &one, const model_t &, const with_t &with) { one = one.text().substr(with.start, with.extent); }},
    {"view assigned",
     [](real_t &one, const real_t &, with_t &with) {
         vek::subString_t view = one(static_cast<std::ptrdiff_t>(with.start), with.extent);
         view = with.text.c_str();
         view.toUpper();
     },
     [](model_t &one, const model_t &, const with_t &with) {
         one.replace(with.start, with.extent, with.text);
         one.transform(with.start, with.text.size(), upper);
     }},
    {"character",
     [](real_t &one, const real_t &, with_t &with) {
         if (with.extent > 0)
             one[static_cast<std::int32_t>(with.start)] = '#';
     },
     [](model_t &one, const model_t &, const with_t &with) {
         one.transform(with.start, with.extent > 0, [](char) { return '#'; });
     }},
    {"reading", [](real_t &one, const real_t &, with_t &with) { readToDelim(with.input, one, '\n'); },
     [](model_t &one, const model_t &, const with_t &with) { one.read(with.text.substr(0, with.text.find('\n'))); }},
};

} // namespace changes
