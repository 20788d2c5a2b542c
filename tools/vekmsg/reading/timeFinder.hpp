// timeFinder_t: the time of a log's line, in the usual spellings or by a regular expression of the user's.
//
// Never changes once made; may be used from several threads.
#pragma once

#include "tools/vekmsg/reading/zone.hpp"
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
/// "yesterday". Without a zone it is one of that zone's clock.
std::optional<givenTime_t> timeOfArgument(std::string_view text, const zone_t &zone = zone_t());

/// The microseconds of "2h", "1d12h", "90s"; nothing when it is something else.
std::optional<std::int64_t> durationOf(std::string_view text);

class timeFinder_t {
public:
    /// With an expression: its first group (or all of it) is a time in a usual spelling; with six groups and more they
    /// are year, month, day, hour, minute, second and fraction. `zone` is that of times that say none. Throws
    /// usageError_t when one of the two is none.
    explicit timeFinder_t(const std::string &expression = {}, const std::string &zone = {});

    /// The time in the first bytes of a line.
    std::optional<logTime_t> in(std::string_view lineHead) const;
    const zone_t &zone() const { return zone_; }

private:
    std::optional<logTime_t> asWritten(std::string_view lineHead) const;

    zone_t zone_;
    std::optional<std::regex> expression_;
};

} // namespace vek::tool
