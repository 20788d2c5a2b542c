// What the promises of texts and those of changes ask of a message alike.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <string>
#include <string_view>

namespace vek::test {

/// What check() calls an error, a line each.
std::string errorsOf(const inspect::tree_t &tree);

/// Whether a value that people give is the one that the library has read, by the C library's idea of numbers.
bool isValue(const inspect::tree_t &tree, const inspect::node_t &node, const std::string &given);

/// Whether a path is that of a group or of something in it.
bool isWithin(std::string_view path, std::string_view group);

} // namespace vek::test
