// Scalars: their text for people, and how it stands in a body.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <string>
#include <string_view>

namespace vek::inspect {

/// Whether a value is a group in braces with nothing in it, but perhaps separators.
bool isEmptyGroup(const tree_t &tree, const node_t &node);

/// Whether a node's value is a text that stands in the body with codes for its separators.
bool isText(const node_t &node);

/// A text value with the characters that its codes stand for, and back.
std::string unescapedText(std::string_view value);
std::string escapedText(std::string_view text);

/// Whether an integer of 32 bits stands there as the library would write it; not of those with the most digits.
bool isUsualInteger(std::string_view value);

/// A real as the library writes it in a body.
std::string realText(double value);

/// Whether a real stands there with six decimals and so few digits that every double has them: then it is as the
/// library would write it, which need not be computed.
bool isUsualReal(std::string_view value);

/// A scalar for people: of a text its characters, else what stands there.
std::string scalarText(const tree_t &tree, const node_t &node);

} // namespace vek::inspect
