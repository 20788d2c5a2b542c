// timeFinder_t: the time of a log's line, in the usual spellings or by a regular expression of the user's.
//
// Never changes once made; may be used from several threads.
#pragma once

#include "vek/inspect/log/logTime.hpp"

#include <optional>
#include <regex>
#include <string>
#include <string_view>

namespace vek::tool {

using inspect::logTime_t;

/// What a person gives for --since: a time in one of the usual spellings, or a date alone.
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
