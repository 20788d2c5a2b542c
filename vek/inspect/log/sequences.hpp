// sequences_t: gaps in the sequence numbers of a log, in which several senders may speak at once.
//
// A number that follows one of the latest numbers continues that sender's sequence; one that is a little ahead of a
// sequence leaves a gap in it; any other begins a new sequence. One thread at a time.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vek::inspect {

class sequences_t {
public:
    /// Returns how many numbers are missing in front of this one.
    std::uint32_t take(std::int32_t number);
    /// The same of so many numbers, at least one, each one more than that before it.
    void takeRun(std::int32_t first, std::uint64_t count);

    std::uint64_t gaps() const { return gaps_; }
    std::uint64_t missing() const { return missing_; }
    /// The first gaps: "58, 77 to 80".
    std::string inWords() const;

private:
    static constexpr std::size_t senders = 4;
    static constexpr std::int64_t largestGap = 1000;
    static constexpr std::size_t shown = 8;
    struct gap_t {
        std::int64_t first, last;
    };

    std::array<std::int64_t, senders> latest_{};
    std::size_t known_ = 0, oldest_ = 0;
    std::uint64_t gaps_ = 0, missing_ = 0;
    std::vector<gap_t> first_;
};

} // namespace vek::inspect
