// grouping_t: what messages are put together by: a slice of time, their kind, or a value.
//
// Never changes once made; may be used from several threads.
#pragma once

#include "tools/vekmsg/reading/task.hpp"
#include "tools/vekmsg/reading/timeFinder.hpp"

#include <compare>
#include <cstdint>
#include <string>

namespace vek::tool {

struct group_t {
    double order = 0; ///< among the groups: of numbers themselves; texts follow
    std::string name;

    auto operator<=>(const group_t &) const = default;
};

class grouping_t {
public:
    /// By "minute", "hour", "day", "week" or a duration such as "10m", by "kind", or by a column. Throws usageError_t.
    explicit grouping_t(const std::string &by);

    /// The group of a message; all are in one when nothing was said.
    group_t of(const item_t &item, const timeFinder_t &times) const;

private:
    group_t sliceOf(const logTime_t &time) const;

    std::string column_;
    std::int64_t slice_ = 0; ///< microseconds; 0: no slices
};

} // namespace vek::tool
