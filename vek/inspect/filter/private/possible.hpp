// Whether a condition can ever hold, by the schema.
#pragma once

#include "vek/inspect/filter/expression.hpp"

namespace vek::inspect {

/// Why no message of these ids (none: of any) can pass a condition; nothing when one may.
std::optional<expressionError_t> whyImpossible(const expression_t::condition_t &condition,
                                               std::span<const std::int32_t> ids);

} // namespace vek::inspect
