// What a message says, in a line of a list: the values that matter of any kind, chosen by the declarations.
//
// Pure functions; what is appended to a string throws std::bad_alloc at most.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <string>
#include <string_view>

namespace vek::page {

/// Appends as JSON
///   "severity" that the device itself gives: 0 none, 1 or 2; left out when the kind has none
///   "parts"    of what a host reads, texts first, then what is not as it always is: "value", and "key" unless it is a
///   text "values"   what stands at each of `paths`, one a line; null where nothing does
void appendDigest(std::string &out, const inspect::tree_t &tree, std::string_view paths);

} // namespace vek::page
