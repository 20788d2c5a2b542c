// knownLogs_t: logs as a server has them, and which of these may be a given one.
//
// Not safe for concurrent use.
#pragma once

#include "vek/inspect/archive/sources.hpp"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vek::tool {

class knownLogs_t {
public:
    explicit knownLogs_t(std::vector<inspect::archivedLog_t> logs);

    /// A condition on the table of sources, true for all that may be one of these.
    static std::string condition(std::span<const inspect::archivedLog_t> logs);

    /// Those that may be this one: that begin alike, and the ones of its name.
    std::vector<inspect::archivedLog_t> like(const inspect::archivedLog_t &log) const;

private:
    struct known_t {
        inspect::archivedLog_t log;
        std::int64_t firstHash, headHash;
    };
    std::vector<known_t> known_;
};

} // namespace vek::tool
