// Timing on a machine that does other things too: the fastest of many short runs counts, and what is compared takes
// turns.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <functional>
#include <limits>
#include <vector>

namespace bench {

/// Runs `batch(count)` once and returns the nanoseconds that one of the `count` took.
template <class Batch>
double timeOnce(std::size_t count, Batch batch) {
    using clock_t = std::chrono::steady_clock;
    const auto start = clock_t::now();
    batch(count);
    return std::chrono::duration<double, std::nano>(clock_t::now() - start).count() / static_cast<double>(count);
}

/// Times several in turn, `rounds` times, each run as long as some milliseconds, and returns the nanoseconds that one
/// conversion of each took at best.
inline std::vector<double> timeInTurn(const std::vector<std::function<void(std::size_t)>> &batches, int rounds = 25) {
    constexpr double nanosecondsOfRun = 2e6;
    std::vector<double> best;
    std::vector<std::size_t> counts;
    for (const auto &batch : batches) {
        batch(1);
        best.push_back(std::min(timeOnce(1, batch), timeOnce(20, batch)));
        counts.push_back(static_cast<std::size_t>(std::max(1.0, nanosecondsOfRun / best.back())));
    }
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < batches.size(); ++i)
            best[i] = std::min(best[i], timeOnce(counts[i], batches[i]));
    return best;
}

} // namespace bench
