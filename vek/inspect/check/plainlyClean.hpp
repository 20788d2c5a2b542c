// A message with nothing wrong with it, for who goes on with it and needs no tree.
#pragma once

#include "vek/inspect/message/written.hpp"

#include <optional>
#include <string_view>

namespace vek::inspect {

/// A message of which isPlainlyClean() is true. Throws std::bad_alloc.
std::optional<writtenMessage_t> plainlyClean(std::string_view text);

} // namespace vek::inspect
