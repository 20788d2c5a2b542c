// What stands at a path of a message, for people.
//
// Pure functions.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace vek::inspect {

/// The header number that a path means: @id, @length, @echo or @seq; null when it means none.
const envelopeNumber_t *headerNumberAt(const envelopeParts_t &envelope, std::string_view path);

/// The value of a node: of a text its characters, of a group what stands there.
std::string valueOf(const tree_t &tree, const node_t &node);

/// A value for people: texts with their separators and braces as such, 16-bit texts as UTF-8, groups as they stand.
/// Nothing when the message has no such path.
std::optional<std::string> valueAt(const tree_t &tree, std::string_view path);

} // namespace vek::inspect
