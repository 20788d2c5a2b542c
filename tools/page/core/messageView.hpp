// What the page shows of one message beside its JSON form.
//
// Pure functions; what is appended to a string throws std::bad_alloc at most.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <string>

namespace vek::page {

/// The message's JSON with its nodes and problems, and in front of them
///   "form"     "message"
///   "envelope" the byte places of the envelope's parts
///   "fields"   the fields that the nodes belong to: key, words, kind, names, member, type, list, default
///   "more"     of each node, in the same order: its field's number, its depth, its value for people
///   "addable"  the keys that records of the message have and the message has not: path, field's number
void appendView(std::string &out, const inspect::tree_t &tree);

/// The differences of two messages as a JSON array: path, left, right; a side that is not there is left out.
void appendDifferences(std::string &out, const inspect::tree_t &left, const inspect::tree_t &right);

} // namespace vek::page
