#include "tools/vekmsg/load/clickhouse/removal.hpp"

#include "tools/vekmsg/load/databaseError.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

namespace vek::tool {

using inspect::joined;

bool wasRemoved(clusterServer_t &server, std::uint64_t number) {
    return server.isReplicated() &&
           server.ask("SELECT count() FROM sources WHERE source_id = " + std::to_string(standInOf(number))) != "0\n";
}

removal_t::removal_t(clusterServer_t &server, const std::vector<std::string> &tables)
    : server_(server), tables_(tables), all_(server.all()) {}

std::string removal_t::stored(const std::string &table) const {
    return table + (server_.cluster().empty() ? "" : "_local");
}

// The tables that have such rows, and how many: on a server, or on those that it distributes them to.
std::string removal_t::counting(const std::string &condition, bool isOfAll) const {
    std::string counts;
    for (const std::string &table : tables_)
        counts.append(counts.empty() ? "" : " UNION ALL ")
            .append(joined({"SELECT '", table, "', count() AS rows FROM ", sqlName(isOfAll ? table : stored(table)),
                            " WHERE ", condition, " HAVING rows > 0"}));
    return counts;
}

// Of a table that is replicated with a quorum, a server changes all parts but the newest one of a month, and without
// that one it answers no more. So a row without anything comes behind those that go; when another one follows, it goes
// itself. That of a log in `sources` stays.
void removal_t::order(clusterServer_t &server, const std::string &table, const std::string &condition) const {
    const std::string name = sqlName(stored(table));
    std::string all = condition;
    if (server.isReplicated()) {
        const std::string place = table == "sources" ? "claim"
                                  : table == "marks" ? "mark"
                                                     : "byte_offset",
                          day = place == "byte_offset" ? "log_date" : "", comma = day.empty() ? "" : ", ",
                          now = std::to_string(std::chrono::duration_cast<std::chrono::microseconds>(
                                                   std::chrono::system_clock::now().time_since_epoch())
                                                   .count());
        const std::string groups = table == "sources" ? " GROUP BY source_id"
                                   : day.empty()      ? " HAVING count() > 0"
                                                      : " GROUP BY toYYYYMM(log_date)";
        server.ask(joined({"INSERT INTO ", name, " (source_id, ", place, comma, day,
                           ") SELECT intDiv(any(source_id), 2) * 2, ", now, day.empty() ? "" : ", any(log_date)",
                           " FROM ", name, " WHERE ", condition, groups}));
        if (table != "sources")
            all = joined({condition, " OR source_id % 2 = 0 AND ", place, " < ", now});
    }
    server.ask(joined({"ALTER TABLE ", name, " DELETE WHERE ", all}));
}

// What matters is that nobody has the rows any more: a server may go on with further parts.
void removal_t::await(const std::string &condition) const {
    constexpr std::uint64_t patience = 300'000; // milliseconds
    std::int64_t before = 0;
    for (std::uint64_t since = milliseconds(); milliseconds() - since < patience; sleepMilliseconds(100)) {
        std::int64_t left = 0;
        for (const auto &server : all_)
            for (const auto &line : server->table(counting(condition, false)))
                left += std::stoll(line[1]);
        if (left == 0) // who was asked may not have been the cluster
            for (const auto &line : server_.table(counting(condition, true)))
                left += std::stoll(line[1]);
        if (left == 0)
            return;
        if (std::exchange(before, left) != left)
            since = milliseconds();
    }
    throw databaseError_t(joined({server_.name(), ": of the rows that are to go ", std::to_string(before),
                                  " are still there after five minutes; see system.mutations, and run it again"}));
}

// Servers of one shard have one copy.
std::string removal_t::copyOf(clusterServer_t &server) const {
    return server.isReplicated()
               ? server.ask("SELECT zookeeper_path FROM system.replicas WHERE database = " +
                            sqlText(server.database()) + " AND table = " + sqlText(stored(tables_.front())))
               : server.name();
}

std::int64_t removal_t::remove(const std::string &condition) {
    const std::string count =
        server_.ask(joined({"SELECT count() FROM ", sqlName(tables_.front()), " WHERE ", condition}));
    std::set<std::string> ordered; // tables of the copies
    for (const auto &server : all_)
        for (const auto &line : server->table(counting(condition, false)))
            if (ordered.insert(copyOf(*server) + line[0]).second)
                order(*server, line[0], condition);
    await(condition);
    return std::stoll(count);
}

std::int64_t removal_t::removeOlder(const std::string &moment) {
    const std::string condition = "log_time < " + moment;
    std::int64_t messages = 0;
    if (!server_.isReplicated())
        for (const auto &server : all_)
            messages += dropMonths(*server, moment, condition);
    return messages + remove(condition);
}

// Where all rows of a month are as old as its day says. Gives the number of messages. What comes meanwhile is as old;
// rows without a time are those of the first month of all.
std::int64_t removal_t::dropMonths(clusterServer_t &server, const std::string &moment,
                                   const std::string &condition) const {
    std::string months;
    for (const auto &line :
         server.table("SELECT name FROM system.tables WHERE partition_key = 'toYYYYMM(log_date)' AND database = " +
                      sqlText(server.database())))
        if (const auto own =
                std::ranges::find(tables_, line[0], [&](const std::string &table) { return stored(table); });
            own != tables_.end())
            months.append(months.empty() ? "" : " UNION ALL ")
                .append(joined({"SELECT '", *own, "', toYYYYMM(log_date) AS month, count() AS rows FROM ",
                                sqlName(line[0]), " WHERE month > 197001 AND month < toYYYYMM(", moment,
                                ") GROUP BY month HAVING rows = sum(", condition, ")"}));
    std::int64_t messages = 0;
    if (!months.empty())
        for (const auto &line : server.table(months)) {
            messages += line[0] == tables_.front() ? std::stoll(line[2]) : 0;
            server.ask(joined({"ALTER TABLE ", sqlName(stored(line[0])), " DROP PARTITION ", line[1]}));
        }
    return messages;
}

} // namespace vek::tool
