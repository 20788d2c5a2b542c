#include "tools/vekmsg/figures/grouping.hpp"

#include "tools/vekmsg/reading/columns.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/api/envelope.hpp"
#include "vek/inspect/filter/expression.hpp"
#include "vek/inspect/words/trimming.hpp"

#include <algorithm>
#include <limits>
#include <utility>

namespace vek::tool {

namespace {

constexpr double lastOfAll = std::numeric_limits<double>::infinity();

// Without the time, which stands in front of most lines.
std::string_view withoutTime(std::string_view before) {
    std::size_t size = 0;
    if (inspect::readTime(before, size))
        before.remove_prefix(size);
    return inspect::trimmed(before);
}

} // namespace

grouping_t::grouping_t(const std::string &by) : column_(by) {
    constexpr std::pair<std::string_view, std::string_view> units[] = {
        {"minute", "1m"}, {"hour", "1h"}, {"day", "1d"}, {"week", "1w"}};
    const auto unit = std::ranges::find(units, by, [](const auto &known) { return known.first; });
    if (by.empty())
        return;
    if (const std::optional<std::int64_t> slice = durationOf(unit != std::end(units) ? unit->second : by)) {
        if (*slice == 0)
            throw usageError_t("--by " + by + ": a slice of time has some length, such as 10m, hour or day");
        slice_ = *slice;
    } else if (by != "kind") {
        checkColumn("--by", by);
    }
}

// Slices are counted from a Monday, as weeks are.
group_t grouping_t::sliceOf(const logTime_t &time) const {
    constexpr std::int64_t minute = 60'000'000, day = 1440 * minute, monday = 4 * day;
    const std::int64_t since = time.microseconds - monday;
    const std::int64_t into = ((since % slice_) + slice_) % slice_;
    logTime_t start = time;
    start.microseconds -= into;
    std::string name;
    start.appendTo(name, 'T', logTime_t::fraction_t::whenThere);
    constexpr std::string_view clock = "T00:00:00", seconds = ":00";
    if (slice_ % day == 0 && name.size() > clock.size())
        name.resize(name.size() - clock.size());
    else if (slice_ % minute == 0)
        name.resize(name.size() - seconds.size());
    return {static_cast<double>(start.microseconds), start.hasZone ? name + "Z" : name};
}

group_t grouping_t::of(const item_t &item, const timeFinder_t &times) const {
    if (column_.empty())
        return {};
    if (slice_ > 0) {
        const std::optional<logTime_t> time = times.in(item.lineHead);
        return time ? sliceOf(*time) : group_t{-lastOfAll, "(no time)"};
    }
    const bool isKind = column_ == "kind";
    const std::optional<std::string> value = columnOf(item, times, isKind ? "name" : column_);
    if (isKind) {
        const std::int32_t id = item.head.id.valueOr(-1);
        return {static_cast<double>(id), value->empty() ? std::to_string(id) : *value};
    }
    constexpr std::size_t longest = 200;
    const std::string_view text = !value                ? std::string_view("(none)")
                                  : column_ == "before" ? withoutTime(*value)
                                                        : std::string_view(*value);
    return {inspect::asNumber(text).value_or(lastOfAll),
            std::string(text.empty() ? "(empty)" : text.substr(0, longest))};
}

} // namespace vek::tool
