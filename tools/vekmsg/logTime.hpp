// The time that stands on a log's line: found in the usual spellings, or by a regular expression of the user's.
//
// Pure values; a finder may be used from several threads.
#pragma once

#include <cstdint>
#include <optional>
#include <regex>
#include <string>
#include <string_view>

namespace vek::tool {

struct logTime_t {
    std::int64_t microseconds = 0; ///< since 1970 on the log's own clock, or at UTC when it says its zone
    bool hasDate = true;           ///< false: a time of day alone
    bool hasZone = false;

    /// Whether this is earlier; where one of the two has no date, by the time of day.
    bool isBefore(const logTime_t &other) const;
    /// "2026-03-01T12:00:00.250", with "Z" when the zone is known; without the date when there is none.
    std::string inWords() const;
};

/// A time that begins at the start of a text, in one of the usual spellings; `size` receives how much it takes.
/// ISO 8601 (also with a blank, slashes or a comma), 01.03.2026 12:00:00, 01/Mar/2026:12:00:00 +0100,
/// Mar  1 12:00:00 (of this year), seconds since 1970 in ten digits, 12:00:00.
std::optional<logTime_t> readTime(std::string_view text, std::size_t &size);

/// What a person gives for --since: as readTime, or a date alone.
std::optional<logTime_t> timeOfArgument(std::string_view text);

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
