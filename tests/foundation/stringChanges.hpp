#pragma once

// What can be done to a string_t and, in the same words, to its model: one list for the random walk and for the tests
// without memory.

#include "tests/foundation/stringModel.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <sstream>
#include <string>
#include <string_view>

namespace changes {

/// What a change is made with.
struct with_t {
    std::string text;
    std::size_t position, removed; ///< may lie beyond the string's end
    std::size_t start, extent;     ///< a part of the string
    std::istringstream input{};    ///< of the text; read away by the change
};

/// Changes `one`; asks for no memory but the strings' own. `other` may be the same string.
struct change_t {
    template <class Change>
    constexpr change_t(const char *text, Change change) : name(text), real(change), expected(change) {}

    const char *name;
    void (*real)(vek::string_t &one, const vek::string_t &other, with_t &with);
    void (*expected)(model::string_t &one, const model::string_t &other, with_t &with);
};

template <class String>
using same_t = std::remove_reference_t<String>;

inline constexpr change_t all[] = {
    {"text", [](auto &one, auto &, with_t &with) { one = same_t<decltype(one)>(with.text.data(), with.text.size()); }},
    {"character", [](auto &one, auto &, with_t &with) { one = same_t<decltype(one)>(with.removed, 'x'); }},
    {"sharing", [](auto &one, auto &other, with_t &) { one = other; }},
    {"deep copy", [](auto &one, auto &other, with_t &) { one = other.deepCopy(); }},
    {"concatenation", [](auto &one, auto &other, with_t &with) { one = other + with.text.c_str(); }},
    {"append", [](auto &one, auto &, with_t &with) { one.append(with.text.c_str()); }},
    {"blanks", [](auto &one, auto &, with_t &with) { one.prepend(nullptr, with.text.size()); }},
    {"case", [](auto &one, auto &, with_t &) { one.toLower(); }},
    {"replacement", [](auto &one, auto &,
                       with_t &with) { one.replace(with.position, with.removed, with.text.data(), with.text.size()); }},
    {"own text", [](auto &one, auto &,
                    with_t &with) { one.replace(with.position, with.removed, one.c_str() + with.start, with.extent); }},
    {"view copied",
     [](auto &one, auto &, with_t &with) {
         one = same_t<decltype(one)>(one(static_cast<std::ptrdiff_t>(with.start), with.extent));
     }},
    {"view assigned",
     [](auto &one, auto &, with_t &with) {
         auto view = one(static_cast<std::ptrdiff_t>(with.start), with.extent);
         view = with.text.c_str();
         view.toUpper();
     }},
    {"view of a view",
     [](auto &one, auto &, with_t &with) {
         const std::size_t half = with.start / 2;
         one(static_cast<std::ptrdiff_t>(with.start), with.extent) = one(static_cast<std::ptrdiff_t>(half), half);
     }},
    {"view in lower case",
     [](auto &one, auto &, with_t &with) { one(static_cast<std::ptrdiff_t>(with.start), with.extent).toLower(); }},
    {"standard text", [](auto &one, auto &, with_t &with) { one = std::string_view(with.text); }},
    {"own standard text",
     [](auto &one, auto &, with_t &with) { one = std::string_view(one).substr(with.start, with.extent); }},
    {"own text appended",
     [](auto &one, auto &, with_t &with) { one.append(std::string_view(one).substr(with.start, with.extent)); }},
    {"own end appended", [](auto &one, auto &, with_t &with) { one.append(one.c_str() + with.start); }},
    {"one character",
     [](auto &one, auto &, with_t &with) {
         if (with.extent > 0)
             one[static_cast<std::int32_t>(with.start)] = '#';
     }},
    {"reading", [](auto &one, auto &, with_t &with) { one.readToDelim(with.input, '\n'); }},
};

} // namespace changes
