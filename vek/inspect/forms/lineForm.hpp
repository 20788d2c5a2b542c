// What the readable and the flat form have in common: how values stand in a line, and how lines are read.
#pragma once

#include "vek/inspect/forms/private/formText.hpp"
#include "vek/inspect/message/tree.hpp"

#include <string>
#include <string_view>

namespace vek::inspect {

/// The word for a message without a record, or without an id.
inline constexpr std::string_view unknownName = "unknown";

/// Appends a value: as it is when nothing in it could be mistaken, else in quotes.
void appendLineValue(std::string &out, std::string_view text, bool isInList = false);

/// Appends a 16-bit text, u"...".
void appendWideValue(std::string &out, std::string_view text);

/// Appends the value of a pair that is no group.
void appendScalar(std::string &out, const tree_t &tree, const node_t &node, bool isInList = false);

/// Reads lines of either form.
formText_t readLines(std::string_view form);

} // namespace vek::inspect
