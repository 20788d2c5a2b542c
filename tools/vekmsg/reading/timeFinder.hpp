// timeFinder_t: the time of a log's line, in the usual spellings or by a regular expression of the user's.
//
// Never changes once made; may be used from several threads.
#pragma once

#include "vek/inspect/log/logTime.hpp"

#include <cstdint>
#include <optional>
#include <regex>
#include <string>
#include <string_view>

namespace vek::tool {

using inspect::logTime_t;

/// A time that a person gives. One that counts from now differs between logs that say their zone and others, which have
/// the time of the place.
struct givenTime_t {
    logTime_t local, zoned;

    /// To be compared with a time of a log.
    const logTime_t &as(const logTime_t &time) const { return time.hasZone ? zoned : local; }
};

/// What a person gives for --since: a time in one of the usual spellings, a date alone, "-2h", "now", "today" or
/// "yesterday".
std::optional<givenTime_t> timeOfArgument(std::string_view text);

/// The microseconds of "2h", "1d12h", "90s"; nothing when it is something else.
std::optional<std::int64_t> durationOf(std::string_view text);

class timeFinder_t {
public:
    /// With an expression: its first group (or all of it) is a time in a usual spelling; with six groups and more they
    /// are year, month, day, hour, minute, second and fraction. Throws usageError_t when it is no expression.
    explicit timeFinder_t(const std::string &expression = {});

    /// The time in the first bytes of a line.
    std::optional<logTime_t> in(std::string_view lineHead) const;

private:
    std::optional<std::regex> expression_;
};

} // namespace vek::tool
