// The difference of two messages, field by field, whatever the order of their keys.
//
// Pure functions; results own their words.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// One value of a message, as the reader uses it.
struct leaf_t {
    std::string path;
    std::string_view value; ///< as it stands in the text
    const node_t *node;
};

/// Every value that the reader uses and every one that it ignores, in text order. Views into the tree's text.
std::vector<leaf_t> leaves(const tree_t &tree);

struct difference_t {
    std::string path; ///< "@id" and "@echo" for the envelope
    std::string left; ///< for people; empty when it is not there
    std::string right;
    bool hasLeft = false, hasRight = false;
};

struct diffOptions_t {
    double tolerance = 0.0; ///< numbers that differ by no more are the same
    /// Paths that don't count, with all below them; "[]" stands for any element, a key alone for that key anywhere.
    std::vector<std::string> ignored;
    bool comparesHeader = false; ///< echo tags and sequence numbers count too
};

/// In order of the left message, then what only the right one has.
std::vector<difference_t> differences(const tree_t &left, const tree_t &right, const diffOptions_t &options = {});

} // namespace vek::inspect
