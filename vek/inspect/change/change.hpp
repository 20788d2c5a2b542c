// Single values of a message: got by path, and set so that every other byte stays.
//
// Paths are those of tree_t::path(), and "@id", "@echo", "@seq" and "@length" for the envelope. Pure functions.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vek::inspect {

/// A value for people: texts with their separators and braces as such, 16-bit texts as UTF-8, groups as they stand.
/// Nothing when the message has no such path.
std::optional<std::string> valueAt(const tree_t &tree, std::string_view path);

struct change_t {
    std::string text;     ///< the changed and sealed message; empty when there is an error
    std::string error;    ///< why not, for people, with what to do; empty when done
    std::string oldValue; ///< for people; empty when the key was not there
    std::string newValue;
    std::size_t oldLength = 0, newLength = 0; ///< what the length field said and says

    bool isDone() const { return error.empty(); }
};

/// Puts a value, as people write it, to a path: checked by its kind, written with the library's spelling for the kind
/// (3.5 becomes 3.500000), added where the record has it when the key is not there. All bytes but the value's and the
/// length's stay.
change_t changed(const tree_t &tree, std::string_view path, std::string_view value);

/// A value as people write it, as it stands in a body; nothing, and why, when the field can't hold it.
std::optional<std::string> spelt(const fieldSchema_t &field, std::string_view value, bool isElement,
                                 std::string &error);

} // namespace vek::inspect
