#include "tools/vekmsg/load/clickhouse/expectedLogs.hpp"

#include "tools/vekmsg/load/clickhouse/removal.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::tool {

using inspect::archivedLog_t;
using inspect::joined;
using coming_t = archive_t::coming_t;

namespace {

// Whether the archive's log is this one beyond doubt, of the same name and beginning.
bool isPlainly(const archivedLog_t &known, const archivedLog_t &log) {
    const auto parts = {&archivedLog_t::device, &archivedLog_t::site, &archivedLog_t::host};
    return known.name == log.name && !known.first.empty() && log.first.starts_with(known.first) &&
           std::all_of(parts.begin(), parts.end(),
                       [&](const auto part) { return (log.*part).empty() || log.*part == known.*part; });
}

} // namespace

std::uint64_t newNumberOf(const archivedLog_t &log) {
    constexpr unsigned bits = 52; // which every language's numbers hold
    std::string text(log.head());
    for (const std::string &part : {log.device, log.site, log.host, log.name})
        text.append(1, '\0').append(part);
    return inspect::hashOf(text) >> (64 - bits) | 1;
}

std::string expectedLogs_t::keyOf(const archivedLog_t &log) {
    return log.name + '\0' + std::string(log.head());
}

void expectedLogs_t::expect(std::span<const coming_t> logs) {
    constexpr std::size_t atOnce = 200; // names and beginnings that a statement has room for
    expected_.clear();
    while (logs.size() > 1) {
        const std::size_t count = std::min(logs.size(), atOnce);
        expectSome(logs.first(count));
        logs = logs.subspan(count);
    }
}

// Of logs that begin alike the first one may be claimed before the next one asks.
void expectedLogs_t::expectSome(std::span<const coming_t> logs) {
    std::vector<const coming_t *> simple, going, fresh;
    std::vector<archivedLog_t> asked, claimed;
    std::set<std::string_view> heads;
    for (const coming_t &one : logs)
        if (heads.insert(one.log.head()).second) {
            simple.push_back(&one);
            asked.push_back(one.log);
        }
    const knownLogs_t before(claims_.find(knownLogs_t::condition(asked)));
    for (const coming_t *one : simple) {
        std::vector<archivedLog_t> found = before.like(one->log);
        if (found.empty() || one->isNew)
            fresh.push_back(one);
        else if (found.size() > 1 || !isPlainly(found.front(), one->log))
            continue;
        else if (found.front().position.offset + found.front().tail.size() < one->size) {
            going.push_back(one);
            claimed.push_back(std::move(found.front()));
        } else
            expected_[keyOf(one->log)].found.push_back(std::move(found));
    }
    const std::set<std::uint64_t> others = doubtful(fresh);
    std::erase_if(fresh, [&](const coming_t *one) { return others.contains(newNumberOf(one->log)); });
    for (const coming_t *one : fresh) {
        claimed.push_back(one->log);
        claimed.back().number = newNumberOf(one->log);
    }
    if (claimed.empty())
        return;
    const std::set<std::uint64_t> own = claims_.claim(claimed);
    const knownLogs_t after(claims_.find(knownLogs_t::condition(claimed)));
    for (std::size_t at = 0; at < claimed.size(); ++at)
        if (own.contains(claimed[at].number))
            keep(at < going.size() ? *going[at] : *fresh[at - going.size()], at < going.size() ? 0 : claimed[at].number,
                 after);
}

// A new log is looked for once more when it is claimed.
void expectedLogs_t::keep(const coming_t &one, std::uint64_t newNumber, const knownLogs_t &known) {
    expected_t &expected = expected_[keyOf(one.log)];
    expected.newNumber = newNumber;
    if (newNumber != 0)
        expected.found.emplace_back();
    expected.found.push_back(known.like(one.log));
}

// The new numbers that another log has already, or had once, or of whose messages another log has some.
std::set<std::uint64_t> expectedLogs_t::doubtful(std::span<const coming_t *const> logs) {
    std::vector<std::uint64_t> numbers, standIns;
    std::multimap<std::int64_t, std::uint64_t> marks;
    for (const coming_t *one : logs) {
        numbers.push_back(newNumberOf(one->log));
        standIns.push_back(standInOf(numbers.back()));
        for (const std::int64_t mark : one->marks)
            marks.emplace(mark, numbers.back());
    }
    std::set<std::uint64_t> others;
    if (!numbers.empty())
        for (const auto &line : server_.table(joined({"SELECT DISTINCT source_id FROM sources WHERE source_id IN (",
                                                      listed(numbers), ", ", listed(standIns), ")"})))
            others.insert(std::stoull(line[0]) | 1);
    constexpr std::size_t atOnce = 5000;
    for (auto at = marks.begin(); at != marks.end();) {
        std::string some;
        for (std::size_t count = 0; count < atOnce && at != marks.end(); ++count, ++at)
            some.append(some.empty() ? "" : ", ").append(std::to_string(at->first));
        for (const auto &line : server_.table("SELECT DISTINCT mark FROM marks WHERE mark IN (" + some + ")"))
            for (auto [one, end] = marks.equal_range(std::stoll(line[0])); one != end; ++one)
                others.insert(one->second);
    }
    return others;
}

std::optional<std::vector<archivedLog_t>> expectedLogs_t::find(const archivedLog_t &log) {
    const auto expected = expected_.find(keyOf(log));
    if (expected == expected_.end() || expected->second.found.empty())
        return std::nullopt;
    std::vector<archivedLog_t> found = std::move(expected->second.found.front());
    expected->second.found.pop_front();
    return found;
}

bool expectedLogs_t::isClaimed(const archivedLog_t &log, std::uint64_t number) const {
    const auto expected = expected_.find(keyOf(log));
    return expected != expected_.end() && expected->second.newNumber == number && claims_.holds(number);
}

} // namespace vek::tool
