#include "vek/inspect/archive/marks.hpp"

#include <algorithm>
#include <cstring>

namespace vek::inspect {

namespace {

constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15U;

// By words, as it is made of many messages.
std::uint64_t mixed(std::uint64_t hash, std::string_view text) {
    for (; !text.empty(); text.remove_prefix(std::min(text.size(), sizeof hash))) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data(), std::min(text.size(), sizeof word));
        hash = (hash ^ word) * multiplier;
        hash ^= hash >> 32;
    }
    return hash;
}

} // namespace

// The second stands in front, so that those of one log lie side by side, and what is in the message behind it.
void markMaker_t::add(std::string_view text, const std::optional<logTime_t> &time) {
    constexpr std::int64_t second = 1'000'000;
    constexpr unsigned bits = 31;
    const std::size_t number = count_++;
    if (!time || !time->hasDate || time->microseconds < 0 || time->microseconds / second >> 32 != 0)
        return;
    const std::uint64_t choice = (static_cast<std::uint64_t>(time->microseconds) + text.size()) * multiplier;
    const bool isChosen = choice >> 61 == 0;
    if (number >= first && !isChosen)
        return;
    chosen += isChosen ? 1 : 0;
    marks.push_back(time->microseconds / second << bits |
                    static_cast<std::int64_t>(mixed(choice, text) * multiplier >> (64 - bits)));
}

} // namespace vek::inspect
