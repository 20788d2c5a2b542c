// days_t: where the messages of each day stand in their logs, on the way into the table `days`.
//
// Everything throws databaseError_t. One thread at a time.
#pragma once

#include "tools/vekmsg/load/sqlite/database.hpp"
#include "vek/inspect/archive/rows.hpp"

#include <cstdint>
#include <map>
#include <utility>

namespace vek::tool {

class days_t {
public:
    explicit days_t(database_t &database) : database_(&database) {}

    /// A message; one without a date is of no day.
    void add(const inspect::rowFront_t &message);
    void flush();
    /// Messages of a log were taken away, from an offset up to another one.
    void narrow(std::uint64_t source, std::int64_t first, std::int64_t end);

private:
    struct span_t {
        std::int64_t first, last;
    };
    using day_t = std::pair<std::uint64_t, std::int64_t>; // of a log, counted from 1970 on

    database_t *database_;
    std::map<day_t, span_t> spans_;
    std::map<day_t, span_t>::iterator latest_ = spans_.end();
};

} // namespace vek::tool
