#include "vek/inspect/log/sequences.hpp"

#include <algorithm>

namespace vek::inspect {

std::uint32_t sequences_t::take(std::int32_t number) {
    std::size_t nearest = known_;
    std::int64_t distance = largestGap + 1;
    for (std::size_t i = 0; i < known_; ++i) {
        const std::int64_t ahead = number - latest_[i];
        if (ahead >= 0 && ahead < distance) {
            distance = ahead;
            nearest = i;
        }
    }
    if (nearest < known_) {
        latest_[nearest] = number;
        if (distance <= 1)
            return 0;
        ++gaps_;
        missing_ += static_cast<std::uint64_t>(distance - 1);
        if (first_.size() < shown)
            first_.push_back({number - distance + 1, number - 1});
        return static_cast<std::uint32_t>(distance - 1);
    }
    if (known_ < senders) {
        latest_[known_++] = number;
        return 0;
    }
    // More senders than are told apart: the new one takes the place of the one that was replaced longest ago.
    latest_[oldest_] = number;
    oldest_ = (oldest_ + 1) % senders;
    return 0;
}

// As long as no other sequence stands where the run goes, all of it continues one.
void sequences_t::takeRun(std::int32_t first, std::uint64_t count) {
    take(first);
    const std::int64_t last = first + static_cast<std::int64_t>(count) - 1;
    std::int64_t *const known = latest_.data(), *const end = known + known_;
    const auto isHere = [first, last](std::int64_t latest) { return latest >= first && latest <= last; };
    if (std::count_if(known, end, isHere) == 1) {
        *std::find_if(known, end, isHere) = last;
        return;
    }
    for (std::int64_t number = first + std::int64_t{1}; number <= last; ++number)
        take(static_cast<std::int32_t>(number));
}

std::string sequences_t::inWords() const {
    std::string words;
    for (const gap_t &gap : first_) {
        words += (words.empty() ? "" : ", ") + std::to_string(gap.first);
        if (gap.last > gap.first)
            words += " to " + std::to_string(gap.last);
    }
    return gaps_ > first_.size() ? words + ", ..." : words;
}

} // namespace vek::inspect
