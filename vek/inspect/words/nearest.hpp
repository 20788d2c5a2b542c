// "Did you mean": the one known word that a person may have meant.
//
// Pure functions.
#pragma once

#include <span>
#include <string_view>

namespace vek::inspect {

/// The word of `candidates` that is nearest to `word`, for "did you mean": at most a third of its letters differ (an
/// exchange of two neighbours counts once, letter case nothing). Empty when none is near.
std::string_view nearest(std::string_view word, std::span<const std::string_view> candidates);

} // namespace vek::inspect
