// What the page shows of one message beside its JSON form.
//
// Pure functions; what is appended to a string throws std::bad_alloc at most.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <string>

namespace vek::page {

/// The message's JSON with its nodes and problems, and in front of them
///   "envelope" the byte places of the envelope's parts
///   "more"     of each node, in the same order: its field's number, its depth, its value for people
///   "fields"   the fields that the nodes belong to: key, what it holds, words, names, member, type, list, default
void appendView(std::string &out, const inspect::tree_t &tree);

/// The keys that the record of a node may have and has not, as JSON: "addable", their paths, and "fields", as above and
/// in their order.
void appendAddable(std::string &out, const inspect::tree_t &tree, std::size_t node);

/// What messages there are as a JSON array: id, constant, name, about, and "keys", the paths of their values with what
/// stands there, and its names where it has some; [*] is any element of a list.
void appendKinds(std::string &out);

/// The differences of two messages as a JSON array: path, left, right; a side that is not there is left out.
void appendDifferences(std::string &out, const inspect::tree_t &left, const inspect::tree_t &right);

} // namespace vek::page
