// Single values of a message: got by path, and set or removed so that every other byte stays.
//
// Paths are those of tree_t::path(), and "@id", "@echo", "@seq" and "@length" for the envelope. Every change is
// verified: afterwards the value stands at its path, check() finds no new error, and nothing else moved, or it is
// refused. Pure functions.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vek::inspect {

struct change_t {
    std::string text;                         ///< the changed and sealed message; empty when there is an error
    std::string error;                        ///< why not, for people, with what to do; empty when done
    std::string oldValue;                     ///< for people; empty when the key was not there
    std::string newValue;                     ///< empty when it was removed
    std::size_t oldLength = 0, newLength = 0; ///< what the length field said and says

    bool isDone() const { return error.empty(); }
};

/// Puts a value, as people write it, to a path: checked by its kind, written with the library's spelling for the kind
/// (3.5 becomes 3.500000). What is not there is added where the record has it, with the groups around it, or as the
/// next element of a list. No value removes it. The count of a list goes with it. All other bytes but the length's
/// stay. `isForced`: written as it is, whatever a host will read.
change_t changed(const tree_t &tree, std::string_view path, std::string_view value, bool isForced = false);

/// Takes a pair or an element away, also one that a host ignores.
change_t removed(const tree_t &tree, std::string_view path, bool isForced = false);

} // namespace vek::inspect
