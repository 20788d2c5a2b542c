// What the page does about findings, and what it says it will do.
//
// Pure functions; what is appended to a string throws std::bad_alloc at most.
#pragma once

#include "vek/inspect/check/check.hpp"

#include <span>
#include <string>
#include <string_view>

namespace vek::page {

/// Appends as a JSON array the remedies of findings: "problem", the finding's number, "words", and "certain".
void appendRemedies(std::string &out, const inspect::tree_t &tree, std::span<const inspect::finding_t> findings);

/// The message with the remedy of its finding of that number; as it is when it has none.
std::string mendedAt(const inspect::tree_t &tree, std::size_t number);

/// The message with all remedies of findings of a kind that are certain; as it is when there is none.
std::string mendedOf(const inspect::tree_t &tree, inspect::findingCode_t code);

} // namespace vek::page
