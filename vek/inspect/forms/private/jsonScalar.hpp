// A single value as JSON: typed where the same text comes back from it.
#pragma once

#include "vek/inspect/forms/jsonAppender.hpp"
#include "vek/inspect/schema/schema.hpp"

#include <string_view>

namespace vek::inspect {

/// A value as it stands in a body: in a text with codes for separators.
void appendScalar(jsonAppender_t &json, fieldKind_t kind, std::string_view value);

} // namespace vek::inspect
