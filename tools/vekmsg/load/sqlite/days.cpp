#include "tools/vekmsg/load/sqlite/days.hpp"

#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <string>
#include <string_view>

namespace vek::tool {

namespace {

constexpr std::int64_t microsecondsOfDay = 86'400'000'000;

std::int64_t dayOf(const inspect::logTime_t &time) {
    return time.microseconds / microsecondsOfDay - (time.microseconds % microsecondsOfDay < 0 ? 1 : 0);
}

std::string dateOf(std::int64_t day) {
    std::string words;
    inspect::logTime_t{day * microsecondsOfDay}.appendTo(words, ' ', inspect::logTime_t::fraction_t::none);
    return words.substr(0, words.find(' '));
}

} // namespace

// Messages mostly are of the day of those before them.
void days_t::add(const inspect::rowFront_t &message) {
    if (!message.time || !message.time->hasDate)
        return;
    const day_t day{message.number, dayOf(*message.time)};
    const auto offset = static_cast<std::int64_t>(message.byteOffset);
    if (latest_ == spans_.end() || latest_->first != day)
        latest_ = spans_.try_emplace(day, span_t{offset, offset}).first;
    latest_->second.first = std::min(latest_->second.first, offset);
    latest_->second.last = std::max(latest_->second.last, offset);
}

void days_t::flush() {
    if (spans_.empty())
        return;
    statement_t insert(*database_,
                       "INSERT INTO days (source_id, log_date, first_offset, last_offset) VALUES (?, ?, ?, ?) "
                       "ON CONFLICT DO UPDATE SET first_offset = min(first_offset, excluded.first_offset), "
                       "last_offset = max(last_offset, excluded.last_offset)");
    for (const auto &[day, span] : spans_) {
        const std::string date = dateOf(day.second);
        insert.bind(1, static_cast<std::int64_t>(day.first));
        insert.bind(2, std::string_view(date));
        insert.bind(3, span.first);
        insert.bind(4, span.last);
        insert.run();
    }
    spans_.clear();
    latest_ = spans_.end();
}

// Those that lost messages go from the first to the last one that is left.
void days_t::narrow(std::uint64_t source, std::int64_t first, std::int64_t end) {
    constexpr std::string_view which = "source_id = ?1 AND last_offset >= ?2 AND first_offset < ?3";
    constexpr std::string_view left = "(SELECT byte_offset FROM messages WHERE messages.source_id = days.source_id AND "
                                      "byte_offset BETWEEN first_offset AND last_offset AND "
                                      "substr(log_time, 1, length(log_date)) = log_date ORDER BY byte_offset";
    for (const std::string &change :
         {inspect::joined({"DELETE FROM days WHERE ", which, " AND NOT EXISTS ", left, ")"}),
          inspect::joined({"UPDATE days SET first_offset = ", left, " LIMIT 1), last_offset = ", left,
                           " DESC LIMIT 1) WHERE ", which})}) {
        statement_t statement(*database_, change);
        statement.bind(1, static_cast<std::int64_t>(source));
        statement.bind(2, first);
        statement.bind(3, end);
        statement.run();
    }
}

} // namespace vek::tool
