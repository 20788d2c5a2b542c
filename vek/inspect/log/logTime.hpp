// The time that stands on a log's line, in the usual spellings.
//
// Pure values; the calls may run at the same time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vek::inspect {

struct logTime_t {
    std::int64_t microseconds = 0; ///< since 1970 on the log's own clock, or at UTC when it says its zone
    bool hasDate = true;           ///< false: a time of day alone
    bool hasZone = false;

    /// Whether this is earlier; where one of the two has no date, by the time of day.
    bool isBefore(const logTime_t &other) const;
    /// "2026-03-01T12:00:00.250", with "Z" when the zone is known; without the date when there is none.
    std::string inWords() const;

    enum class fraction_t : std::uint8_t { none, whenThere, always };
    /// Appends the date, `between` and the time of day, without a zone. A fraction has three digits, or six.
    void appendTo(std::string &out, char between, fraction_t fraction) const;
    /// The fraction of the second, 0 to 999999.
    std::uint32_t microsecond() const;
};

/// A time that begins at the start of a text, in one of the usual spellings; `size` receives how much it takes.
/// ISO 8601 (also with a blank, slashes or a comma), 01.03.2026 12:00:00, 01/Mar/2026:12:00:00 +0100,
/// 20260301T120000Z, Mar  1 12:00:00 (the latest one that is not to come), seconds since 1970 in ten digits, milli-,
/// micro- and nanoseconds in more, 12:00:00.
std::optional<logTime_t> readTime(std::string_view text, std::size_t &size);

/// The first time in the first bytes of a line.
std::optional<logTime_t> timeIn(std::string_view lineHead);

} // namespace vek::inspect
