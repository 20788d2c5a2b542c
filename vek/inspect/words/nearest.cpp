#include "vek/inspect/words/nearest.hpp"

#include "vek/inspect/words/words.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <algorithm>
#include <array>
#include <numeric>

namespace vek::inspect {

namespace {

// Longer words are never compared: what a hostile text may cost stays small.
constexpr std::size_t longest = 63;

using distances_t = std::array<std::size_t, longest + 1>;

// How many letters must be changed, put in, left out or exchanged with their neighbour.
std::size_t distance(std::string_view one, std::string_view other) {
    distances_t beforeLast{}, last{}, row{};
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= one.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= other.size(); ++j) {
            const bool isSame = asciiToLower(one[i - 1]) == asciiToLower(other[j - 1]);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (isSame ? 0 : 1)});
            if (i > 1 && j > 1 && asciiToLower(one[i - 1]) == asciiToLower(other[j - 2]) &&
                asciiToLower(one[i - 2]) == asciiToLower(other[j - 1]))
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        beforeLast = last;
        last = row;
    }
    return last[other.size()];
}

} // namespace

std::string_view nearest(std::string_view word, std::span<const std::string_view> candidates) {
    std::string_view best;
    if (word.empty() || word.size() > longest)
        return best;
    std::size_t bestDistance = SIZE_MAX;
    for (const std::string_view candidate : candidates) {
        const std::size_t most = std::max<std::size_t>(1, std::max(word.size(), candidate.size()) / 3);
        const std::size_t difference =
            std::max(word.size(), candidate.size()) - std::min(word.size(), candidate.size());
        if (candidate.size() > longest || difference > most)
            continue;
        const std::size_t found = distance(word, candidate);
        if (found <= most && found < bestDistance) {
            best = candidate;
            bestDistance = found;
        }
    }
    return best;
}

bool isPlainly(std::string_view word, std::string_view meant, std::span<const std::string_view> candidates) {
    if (word.empty() || word.size() > longest || meant.empty() || meant.size() > longest)
        return false;
    const std::size_t found = distance(word, meant);
    constexpr std::size_t most = 2, lettersForOne = 4;
    return found == 0 || (found <= most && found * lettersForOne <= meant.size() &&
                          std::all_of(candidates.begin(), candidates.end(), [&](std::string_view other) {
                              return other == meant || other.size() > longest || distance(word, other) >= found + 2;
                          }));
}

std::string didYouMean(std::string_view meant) {
    return meant.empty() ? std::string() : joined({"did you mean ", meant, "?"});
}

std::string didYouMean(std::string_view word, std::span<const std::string_view> candidates,
                       std::string_view otherwise) {
    const std::string_view meant = nearest(word, candidates);
    return meant.empty() ? std::string(otherwise) : didYouMean(meant);
}

std::string withSuggestion(std::string_view words, std::string_view meant) {
    return joined({words, meant.empty() ? "" : "; ", didYouMean(meant)});
}

} // namespace vek::inspect
