// "Did you mean": the one known word that a person may have meant.
//
// Pure functions.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace vek::inspect {

/// The word of `candidates` that is nearest to `word`, for "did you mean": at most a third of its letters differ (an
/// exchange of two neighbours counts once, letter case nothing). Empty when none is near.
std::string_view nearest(std::string_view word, std::span<const std::string_view> candidates);

/// Whether a careful reader would take a word for `meant` and for no other of the candidates: at most two of its
/// letters differ, and from every other one at least two more.
bool isPlainly(std::string_view word, std::string_view meant, std::span<const std::string_view> candidates);

/// "did you mean X?"; nothing for an empty word.
std::string didYouMean(std::string_view meant);

/// The same of the nearest word; when none is near, what helps otherwise.
std::string didYouMean(std::string_view word, std::span<const std::string_view> candidates, std::string_view otherwise);

/// Words with what was meant behind them, when that is known.
std::string withSuggestion(std::string_view words, std::string_view meant);

} // namespace vek::inspect
