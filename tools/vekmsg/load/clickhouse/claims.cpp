#include "tools/vekmsg/load/clickhouse/claims.hpp"

#include "tools/vekmsg/load/clickhouse/removal.hpp"
#include "tools/vekmsg/load/databaseError.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "vek/inspect/archive/rowBinary.hpp"
#include "vek/inspect/archive/sql.hpp"
#include "vek/inspect/words/words.hpp"

#include <chrono>
#include <random>

namespace vek::tool {

using inspect::archivedLog_t;

namespace {

constexpr std::string_view queryHead = "vekmsg-";

std::string unhexed(const std::string &hex) {
    std::string bytes;
    for (std::size_t at = 0; at + 1 < hex.size(); at += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(at, 2), nullptr, 16));
    return bytes;
}

// The claim that a query was sent under; 0 when it is none of a loader's.
std::uint64_t claimOf(std::string_view queryName) {
    return queryName.starts_with(queryHead) ? std::strtoull(queryName.data() + queryHead.size(), nullptr, 10) : 0;
}

} // namespace

std::string listed(std::span<const std::uint64_t> numbers) {
    std::string text;
    for (const std::uint64_t number : numbers)
        text.append(text.empty() ? "" : ", ").append(std::to_string(number));
    return text;
}

// The rows of a log agree with each other in all but how far they were when they were written. What stands in the place
// of one that was taken away is none.
std::vector<archivedLog_t> claims_t::find(const std::string &condition) {
    std::string columns;
    for (const inspect::sourceColumn_t &column : inspect::sourceColumns()) {
        const std::string name = sqlName(column.name);
        const std::string value = column.clickhouse == "String" ? "hex(" + name + ")" : "toString(" + name + ")";
        columns += column.name == "source_id" ? "toString(source_id)"
                                              : ", argMax(" + value + ", loaded_bytes + length(tail_bytes))";
    }
    std::vector<archivedLog_t> found;
    for (const auto &line : server_.table(inspect::joined(
             {"SELECT ", columns, " FROM sources WHERE source_id GLOBAL IN (SELECT source_id FROM sources WHERE ",
              condition, ") GROUP BY source_id ORDER BY source_id"}))) {
        if (const std::uint64_t number = std::stoull(line[0]); server_.isReplicated() && number == standInOf(number))
            continue;
        archivedLog_t &known = found.emplace_back();
        std::size_t at = 0;
        for (const inspect::sourceColumn_t &column : inspect::sourceColumns()) {
            const std::string &value = line[at++];
            if (column.set != nullptr)
                column.set(known, column.clickhouse == "String" ? unhexed(value) : value);
        }
    }
    return found;
}

void claims_t::insert(std::span<const archivedLog_t> logs, bool isSettled) {
    std::string rows;
    for (const archivedLog_t &log : logs) {
        inspect::appendRowBinary(rows, log);
        for (unsigned byte = 0; byte < 8; ++byte)
            rows += static_cast<char>(claim_ >> (8 * byte));
        rows += isSettled ? '\1' : '\0';
    }
    insert("sources", inspect::clickhouseSourceColumns(), rows);
}

void claims_t::saveMarks(std::string_view rows) {
    if (!rows.empty())
        insert("marks", inspect::clickhouseMarkColumns(), rows);
}

void claims_t::insert(const std::string &table, std::span<const inspect::sqlColumn_t> columns, std::string_view rows) {
    std::string names;
    for (const auto &[name, type] : columns)
        names.append(names.empty() ? "" : ", ").append(sqlName(name));
    server_.insert(inspect::joined({"INSERT INTO ", table, " (", names, ") FORMAT RowBinary"}), rows);
}

std::set<std::uint64_t> claims_t::claimsOf(std::span<const std::uint64_t> numbers) {
    std::set<std::uint64_t> claims;
    for (const auto &line :
         server_.table("SELECT DISTINCT claim FROM sources WHERE source_id IN (" + listed(numbers) + ")"))
        claims.insert(std::stoull(line[0]));
    return claims;
}

// By the clock, so that claims grow, and with a part by chance, so that no two loaders have the same.
void claims_t::raise(std::uint64_t above) {
    constexpr std::uint64_t chance = 1 << 12;
    const auto now = static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
            .count());
    claim_ = std::max({now * chance, above + 1, claim_ + 1}) + std::random_device()() % chance;
    own_.insert(claim_);
}

std::vector<std::uint64_t> claims_t::numbers() const {
    std::vector<std::uint64_t> numbers;
    for (const auto &[number, log] : logs_)
        numbers.push_back(number);
    return numbers;
}

std::set<std::uint64_t> claims_t::claim(std::span<const archivedLog_t> logs) {
    std::vector<std::uint64_t> numbers;
    for (const archivedLog_t &log : logs)
        numbers.push_back(log.number);
    const std::set<std::uint64_t> before = claimsOf(numbers);
    const std::uint64_t highest = before.empty() ? 0 : *before.rbegin();
    if (claim_ == 0 || highest >= claim_) {
        if (logs_.empty())
            raise(highest);
        else
            renew(highest);
    }
    insert(logs, false);
    const auto now = latest(numbers);
    std::erase_if(numbers, [&](std::uint64_t number) { return now.at(number) != claim_; });
    std::set<std::uint64_t> own(numbers.begin(), numbers.end());
    for (const archivedLog_t &log : logs)
        if (own.contains(log.number))
            logs_[log.number] = log;
    if (!own.empty())
        waitForOthers(claimsOf(numbers));
    return own;
}

void claims_t::claim(const archivedLog_t &log) {
    if (claim({&log, 1}).empty())
        refuse();
}

std::map<std::uint64_t, std::uint64_t> claims_t::latest(std::span<const std::uint64_t> numbers) {
    std::map<std::uint64_t, std::uint64_t> claims;
    for (const auto &line :
         server_.table(inspect::joined({"SELECT source_id, max(claim) FROM sources WHERE source_id IN (",
                                        listed(numbers), ") GROUP BY source_id"})))
        claims[std::stoull(line[0])] = std::stoull(line[1]);
    return claims;
}

void claims_t::renew(std::uint64_t above) {
    const std::vector<std::uint64_t> all = numbers();
    std::vector<archivedLog_t> logs;
    for (const auto &[number, log] : logs_)
        logs.push_back(log);
    const std::set<std::uint64_t> before = claimsOf(all);
    if (!before.empty() && !own_.contains(*before.rbegin()))
        refuse();
    raise(before.empty() ? above : std::max(above, *before.rbegin()));
    insert(logs, false);
    verify();
    waitForOthers(claimsOf(all));
}

void claims_t::verify() {
    if (logs_.empty())
        return;
    for (const auto &[number, claim] : latest(numbers()))
        if (!own_.contains(claim))
            refuse();
}

void claims_t::refuse() const {
    throw databaseError_t(server_.name() + ": another vekmsg has begun to load the same log; let it, or run this again "
                                           "when it has ended");
}

// A query that looked at the claims before the newest one was there shows among those that run.
void claims_t::waitForOthers(const std::set<std::uint64_t> &others) {
    constexpr unsigned pause = 50; // milliseconds
    for (bool isThere = others.size() > 1; isThere;) {
        isThere = false;
        for (const std::string &name : server_.running()) {
            const std::uint64_t claim = claimOf(name);
            isThere |= claim != claim_ && others.contains(claim);
        }
        if (isThere)
            sleepMilliseconds(pause);
    }
}

void claims_t::save(std::span<const archivedLog_t> logs, bool isSettled) {
    insert(logs, isSettled);
    for (const archivedLog_t &log : logs)
        logs_[log.number] = log;
}

std::string claims_t::condition(std::span<const std::uint64_t> numbers) const {
    return "source_id IN (SELECT source_id FROM sources WHERE source_id IN (" + listed(numbers) +
           ") GROUP BY source_id HAVING max(claim) = " + std::to_string(claim_) + ")";
}

std::string claims_t::nextQueryName() {
    return std::string(queryHead) + std::to_string(claim_) + "-" + std::to_string(++queries_);
}

} // namespace vek::tool
