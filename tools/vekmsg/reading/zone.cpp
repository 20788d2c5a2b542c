// What the system says of a zone is asked once, for all years of logs, so that a time costs a search in a short list.
#include "tools/vekmsg/reading/zone.hpp"

#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <optional>

namespace vek::tool {

namespace {

constexpr std::int64_t perSecond = 1'000'000; // microseconds

// Microseconds of "+01:00", "+0100", "-03".
std::optional<std::int64_t> offsetOf(std::string_view text) {
    std::string digits;
    for (const char c : text.substr(std::min<std::size_t>(text.size(), 1)))
        if (isDigit(c))
            digits += c;
        else if (c != ':' || digits.size() != 2)
            return std::nullopt;
    const bool isSigned = text.starts_with('+') || text.starts_with('-');
    if (!isSigned || (digits.size() != 2 && digits.size() != 4) || text.ends_with(':'))
        return std::nullopt;
    const int hours = readInteger(digits.substr(0, 2)), minutes = readInteger(digits.substr(2));
    if (hours > 15 || minutes > 59)
        return std::nullopt;
    return (text.front() == '-' ? -perSecond : perSecond) * (hours * 60 + minutes) * 60;
}

} // namespace

zone_t::zone_t(const std::string &name) {
    if (name.empty())
        return;
    if (name == "UTC" || name == "Z")
        steps_ = {{INT64_MIN, 0}};
    else if (const std::optional<std::int64_t> ahead = offsetOf(name))
        steps_ = {{INT64_MIN, *ahead}};
    else if (!inZone(name == "local" ? std::string() : name, [this] { addSteps(); }))
        throw usageError_t(
            "--zone " + name +
            ": this system knows no such zone; write +01:00, UTC, local, or a name such as Europe/Berlin");
}

// Clocks are put forward or back at most once a week.
void zone_t::addSteps() {
    constexpr std::int64_t week = 604'800, last = std::int64_t{1} << 32;
    const auto aheadAt = [](std::int64_t time) { return localSeconds(time) - time; };
    std::int64_t ahead = aheadAt(0);
    steps_ = {{INT64_MIN, ahead * perSecond}};
    for (std::int64_t time = 0; time < last; time += week) {
        if (aheadAt(time + week) == ahead)
            continue;
        std::int64_t before = time, behind = time + week;
        while (behind - before > 1) {
            const std::int64_t middle = before + (behind - before) / 2;
            (aheadAt(middle) == ahead ? before : behind) = middle;
        }
        ahead = aheadAt(behind);
        steps_.push_back({behind * perSecond, ahead * perSecond});
    }
}

inspect::logTime_t zone_t::atUtc(inspect::logTime_t time) const {
    if (isNone() || time.hasZone || !time.hasDate)
        return time;
    constexpr std::int64_t most = perSecond * 16 * 3600; // that a clock is ahead
    auto step = std::upper_bound(steps_.begin() + 1, steps_.end(), time.microseconds - most,
                                 [](std::int64_t at, const step_t &one) { return at < one.begin; }) -
                1;
    const auto isBehind = [&](std::int64_t ahead) { return time.microseconds - ahead >= step[1].begin; };
    while (step + 1 != steps_.end() && isBehind(step->ahead) && isBehind(step[1].ahead))
        ++step;
    time.microseconds -= step->ahead;
    time.hasZone = true;
    return time;
}

inspect::logTime_t zone_t::onClock(inspect::logTime_t time) const {
    if (isNone() || !time.hasZone)
        return time;
    const auto step = std::upper_bound(steps_.begin() + 1, steps_.end(), time.microseconds,
                                       [](std::int64_t at, const step_t &one) { return at < one.begin; }) -
                      1;
    time.microseconds += step->ahead;
    time.hasZone = false;
    return time;
}

} // namespace vek::tool
