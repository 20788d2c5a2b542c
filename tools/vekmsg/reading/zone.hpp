// zone_t: the clock of a place, for logs whose times don't say their zone.
//
// Never changes once made; may be used from several threads.
#pragma once

#include "vek/inspect/log/logTime.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vek::tool {

class zone_t {
public:
    /// "+01:00", "UTC", "Europe/Berlin" as the system knows it, "local" for that of this machine; empty: none, which
    /// changes nothing. Throws usageError_t.
    explicit zone_t(const std::string &name = {});

    bool isNone() const { return steps_.empty(); }
    /// A time on this clock at UTC. Of an hour that comes twice it is the first, and in one that is left out the clock
    /// goes on as before; a time of day alone stays as it is, and so does one that has a zone.
    inspect::logTime_t atUtc(inspect::logTime_t time) const;
    /// What this clock shows at a time that has a zone.
    inspect::logTime_t onClock(inspect::logTime_t time) const;

private:
    struct step_t {
        std::int64_t begin, ahead; // microseconds at UTC, and by how many the clock is ahead from then on
    };
    void addSteps();

    std::vector<step_t> steps_;
};

} // namespace vek::tool
