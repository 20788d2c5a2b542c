// 16-bit texts as they stand in a body; of a tree's nodes, see tree.hpp.
//
// Pure functions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vek::inspect {

/// A list of codes, "{72,105,0,}", as UTF-8; nothing when these are not exactly what the library writes for that text
/// with its terminating 0.
std::optional<std::string> wideText(std::string_view group);

} // namespace vek::inspect
