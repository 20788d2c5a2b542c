#include "tools/vekmsg/load/clickhouse/clusterStore.hpp"

#include "tools/vekmsg/load/clickhouse/migration.hpp"
#include "tools/vekmsg/load/clickhouse/removal.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "vek/inspect/archive/marks.hpp"
#include "vek/inspect/archive/rowBinary.hpp"
#include "vek/inspect/archive/sql.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <set>

namespace vek::tool {

using inspect::archivedLog_t;

std::unique_ptr<archive_t> openCluster(const std::string &url, bool isPatient) {
    return std::make_unique<clusterStore_t>(url, isPatient);
}

clusterStore_t::clusterStore_t(const std::string &url, bool isPatient) : server_(url, isPatient) {
    for (const inspect::table_t &table : inspect::archiveTables().all()) {
        table_t &own = tables_.emplace_back();
        own.declared = &table;
        for (const auto &[name, type] : inspect::clickhouseColumns(table)) {
            own.names.append(own.names.empty() ? "" : ", ").append(sqlName(name));
            own.structure.append(own.structure.empty() ? "" : ", ").append(name).append(" ").append(type);
        }
        own.key = "toUInt64(source_id), toUInt64(byte_offset)";
        for (std::size_t at = 0; at < table.depth; ++at)
            own.key.append(", toUInt32(" + sqlName(inspect::elementColumn(at)) + ")");
    }
    makeTables();
}

// Somebody else's table may be of another kind.
void clusterStore_t::askAbout(const std::string &table, const std::function<void()> &ask) {
    try {
        ask();
    } catch (const stillAway_t &) {
        throw;
    } catch (const databaseError_t &error) {
        throw databaseError_t(inspect::joined({error.what(), "; that was about the table ", table,
                                               ", which may be changed, or renamed, as then it is made anew"}));
    }
}

void clusterStore_t::makeTables() {
    const std::string where = " WHERE database = " + sqlText(server_.database());
    for (const auto &line : server_.table("SELECT name, engine FROM system.tables" + where))
        engines_[line[0]] = line[1];
    for (const auto &line : server_.table("SELECT table, name FROM system.columns" + where))
        columns_[line[0]] += "," + line[1] + ",";
    checkCluster();
    refuseNarrowKeys(where);
    makeTable("sources", inspect::clickhouseCreateSources, inspect::clickhouseSourceColumns());
    for (const std::string &name : migrateFromNames(server_, columns_))
        engines_[name].clear();
    makeTable("marks", inspect::clickhouseCreateMarks, inspect::clickhouseMarkColumns());
    for (const table_t &table : tables_) {
        std::vector<inspect::sqlColumn_t> columns = inspect::clickhouseColumns(*table.declared);
        columns.push_back(inspect::clickhouseDayColumn());
        const auto create = [&](std::string_view name, const inspect::clickhouseServer_t &server) {
            return inspect::clickhouseCreate(*table.declared, name, server);
        };
        makeTable(table.declared->name, create, columns);
    }
    takeFinerTimes(where);
}

// Before anything is made, as tables are taken as they are ever after.
void clusterStore_t::checkCluster() {
    if (server_.cluster().empty())
        return;
    std::map<std::string, unsigned long> copies;
    for (const auto &line : server_.table("SELECT cluster, max(replica_num) FROM system.clusters GROUP BY cluster"))
        if (line.size() > 1)
            copies[line[0]] = std::stoul(line[1]);
    std::vector<std::string_view> names;
    names.reserve(copies.size());
    for (const auto &[name, count] : copies)
        names.push_back(name);
    const auto cluster = copies.find(server_.cluster());
    if (cluster == copies.end())
        throw databaseError_t(
            inspect::joined({server_.name(), ": there is no cluster ", server_.cluster(), "; ",
                             inspect::didYouMean(server_.cluster(), names,
                                                 "remote_servers in the configuration says which there are")}));
    if (cluster->second > 1 && !server_.isReplicated() && !engines_.contains("sources"))
        throw databaseError_t(inspect::joined({server_.name(), ": shards of the cluster ", server_.cluster(),
                                               " have several servers; write &replicated=yes behind the address, so "
                                               "that these have the same rows"}));
    makesAll_ = server_.isReplicated() && std::ranges::any_of(tables_, [this](const table_t &table) {
                    return !engines_.contains(table.declared->name);
                });
}

// Of tables of several kinds each would have other rows, and nobody would be told.
void clusterStore_t::refuseOtherKind(const std::string &name, const std::string &local) const {
    const auto engine = [this](const std::string &table) {
        const auto there = engines_.find(table);
        return there == engines_.end() ? std::string_view() : std::string_view(there->second);
    };
    const bool isDistributed = !server_.cluster().empty(),
               isCopied = engine(local).starts_with("Replicated") || engine(local).starts_with("Shared");
    std::string why;
    if (isDistributed && engines_.contains(name) && engine(name) != "Distributed")
        why = inspect::joined({"the tables there belong to this server alone; for the cluster ", server_.cluster(),
                               " load into another database"});
    else if (!isDistributed && engine(name) == "Distributed")
        why = "the tables there belong to a cluster; write ?cluster=NAME behind the address";
    else if (isDistributed && isCopied && !server_.isReplicated())
        why = "the tables there are replicated; write &replicated=yes behind the address";
    else if (server_.isReplicated() && !isCopied && engine(local).ends_with("MergeTree"))
        why = inspect::joined({"the table ", local,
                               " there is not replicated; load into another database, or drop it, "
                               "when nothing is in it, and it is made anew"});
    if (!why.empty())
        throw databaseError_t(server_.name() + ": " + why);
}

// What tells rows apart must hold it all, whoever made the table; what else its columns can't hold is their maker's
// wish.
void clusterStore_t::refuseNarrowKeys(const std::string &where) {
    const std::string narrow = " AND type NOT LIKE '%Int64%' AND (name IN ('source_id', 'byte_offset') OR "
                               "(name LIKE 'element%' AND type != 'UInt32'))";
    const std::string remedy = ", too little for what rows are told apart by; make it UInt64, or rename the table, and "
                               "it is made anew";
    for (const auto &line :
         server_.table(inspect::joined({"SELECT table, name, type FROM system.columns", where, narrow})))
        if (const auto own = std::ranges::find(tables_, line[0].substr(0, line[0].find("_local")),
                                               [](const table_t &table) { return table.declared->name; });
            own != tables_.end())
            throw databaseError_t(inspect::joined(
                {server_.name(), ": the column ", line[1], " of the table ", line[0], " is ", line[2], remedy}));
}

// Where a time has its fraction in it.
void clusterStore_t::takeFinerTimes(const std::string &where) {
    std::set<std::string> finer;
    for (const auto &line : server_.table("SELECT table FROM system.columns" + where +
                                          " AND name = 'log_time' AND type LIKE '%DateTime64%'"))
        finer.insert(line[0]);
    const std::string name = sqlName("log_time");
    for (table_t &table : tables_) {
        table.values = table.names;
        if (finer.contains(table.declared->name))
            table.values.replace(table.values.find(name), name.size(),
                                 "addMicroseconds(toDateTime64(log_time, 6, 'UTC'), log_microsecond)");
    }
}

// All rows of a log are on one server, or on those of its shard. What others made or changed is taken as it is, and
// columns that are new are added.
void clusterStore_t::makeTable(const std::string &name, const create_t &create,
                               const std::vector<inspect::sqlColumn_t> &columns) {
    const bool isDistributed = !server_.cluster().empty();
    const std::string local = name + (isDistributed ? "_local" : "");
    refuseOtherKind(name, local);
    const std::string everywhere = server_.isReplicated() ? " ON CLUSTER " + sqlName(server_.cluster()) : "";
    const std::string database = sqlName(server_.database()) + ".";
    const std::string path = "/clickhouse/tables/{shard}/" + server_.database() + "/" + local;
    for (const std::string &table : isDistributed ? std::vector{local, name} : std::vector{name}) {
        const bool isThere = engines_.contains(table);
        if (!isThere || makesAll_) {
            std::string statement =
                table == local
                    ? create(local, {server_.isCurrent(), server_.isReplicated() ? path : ""})
                    : inspect::joined({"CREATE TABLE IF NOT EXISTS ", sqlName(name), " AS ", database, sqlName(local),
                                       " ENGINE = Distributed(", sqlName(server_.cluster()), ", ",
                                       sqlName(server_.database()), ", ", sqlName(local), ", intDiv(source_id, 2))"});
            const std::size_t at = statement.find(table); // between its quotes
            server_.ask(statement.insert(at + table.size() + 1, everywhere).insert(at - 1, database));
        }
        if (!isThere) {
            engines_[table] = "";
            continue;
        }
        for (const inspect::sqlColumn_t &column : columns) {
            if (columns_[table].find("," + column.name + ",") != std::string::npos || engines_[table].empty())
                continue;
            askAbout(table, [&] {
                server_.ask(inspect::joined({"ALTER TABLE ", database, sqlName(table), everywhere, " ADD COLUMN ",
                                             sqlName(column.name), " ", column.type}));
            });
        }
    }
}

std::vector<archivedLog_t> clusterStore_t::find(const archivedLog_t &log) {
    std::optional<std::vector<archivedLog_t>> expected = expected_.find(log);
    std::vector<archivedLog_t> found =
        expected ? std::move(*expected) : claims_.find(knownLogs_t::condition({&log, 1}));
    for (archivedLog_t &known : found) {
        if (const auto saved = saved_.find(known.number); saved != saved_.end())
            known = saved->second;
        if (known.first.empty() && hasMessagesOf(known.number, log.first))
            known.first = log.first;
        entered_[known.number] = known;
    }
    std::stable_sort(found.begin(), found.end(), [&](const archivedLog_t &one, const archivedLog_t &other) {
        return one.loadedAt > other.loadedAt;
    });
    std::stable_partition(found.begin(), found.end(), [&](const archivedLog_t &one) { return one.name == log.name; });
    return found;
}

// Of an archive of version 1 a log is known by where its first messages stand, and their numbers.
bool clusterStore_t::hasMessagesOf(std::uint64_t number, std::string_view first) {
    struct ahead_t final : inspect::messageSink_t {
        void message(const inspect::foundMessage_t &found) override {
            const inspect::envelopeParts_t envelope = inspect::takeEnvelopeApart(found.text);
            if (count++ < 64)
                tuples.append(tuples.empty() ? "(" : ", (")
                    .append(std::to_string(found.offset) + ", " + std::to_string(found.line) + ", " +
                            std::to_string(envelope.id.value) + ", " + std::to_string(envelope.sequenceNumber.value) +
                            ")");
            last = count <= 64 ? found.offset : last;
        }
        std::string tuples;
        std::uint64_t last = 0;
        std::size_t count = 0;
    } ahead;
    inspect::logScanner_t().feed(first, ahead);
    if (ahead.count == 0)
        return false;
    const auto counts = server_.table(inspect::joined(
        {"SELECT count(), sum((byte_offset, line, toInt64(ifNull(id, 0)), toInt64(ifNull(sequence_number, 0))) IN (",
         ahead.tuples, ")) FROM messages WHERE source_id = ", std::to_string(number),
         " AND byte_offset <= ", std::to_string(ahead.last)}));
    return counts.front().at(0) != "0" && counts.front().at(0) == counts.front().at(1);
}

void clusterStore_t::enter(archivedLog_t &log, bool isNew) {
    if (log.number != 0)
        return;
    log.number = newNumberOf(log);
    if (expected_.isClaimed(log, log.number)) {
        entered_[log.number] = log;
        return;
    }
    while (true) {
        const std::vector<archivedLog_t> known = claims_.find("source_id = " + std::to_string(log.number));
        if (known.empty() && !entered_.contains(log.number) && !wasRemoved(server_, log.number))
            break;
        if (!isNew && !known.empty() && known.front().head() == log.head() &&
            (known.front().first.starts_with(log.first) || log.first.starts_with(known.front().first)))
            throw usageError_t("another vekmsg has begun to load " + log.name + " into " + name() + "; let it");
        log.number += 2;
    }
    claim(entered_[log.number] = log);
}

// In the order of their numbers, so that of two loaders that do so one gives way to the other.
std::size_t clusterStore_t::takeOver(std::span<const archivedLog_t> logs) {
    std::map<std::uint64_t, std::size_t> places;
    for (std::size_t at = 0; at < logs.size(); ++at)
        places[logs[at].number] = at;
    std::vector<std::uint64_t> numbers;
    for (const auto &[number, at] : places) {
        if (!claims_.holds(number))
            claim(logs[at]);
        numbers.push_back(number);
    }
    const auto begun =
        server_.table("SELECT DISTINCT source_id FROM messages WHERE source_id IN (" + listed(numbers) + ")");
    return places.at(begun.empty() ? numbers.front() : std::stoull(begun.front().front()));
}

archivedLog_t &clusterStore_t::entered(std::uint64_t number) {
    const auto [entered, isNew] = entered_.try_emplace(number);
    if (isNew) // it was left under another of its names
        for (archivedLog_t &known : claims_.find("source_id = " + std::to_string(number)))
            entered->second = std::move(known);
    return entered->second;
}

void clusterStore_t::claim(const archivedLog_t &log) {
    claims_.claim(log);
    const std::vector<archivedLog_t> now = claims_.find("source_id = " + std::to_string(log.number));
    if (now.empty() || now.front().position.offset != log.position.offset)
        throw usageError_t("another vekmsg loads " + log.name + " into " + name() + " at the same time; let it");
}

// Of many marks the first ones tell as much. Some wait here, to go out with the messages.
archive_t::overlap_t clusterStore_t::overlap(const archivedLog_t &log, std::span<const std::int64_t> marks) {
    constexpr std::size_t enough = 1000;
    const std::set<std::int64_t> some(marks.begin(),
                                      marks.begin() + static_cast<std::ptrdiff_t>(std::min(enough, marks.size())));
    if (some.empty())
        return {};
    std::map<std::uint64_t, std::size_t> counts;
    for (const auto &[mark, number] : marks_)
        counts[number] += number != log.number && some.contains(mark) ? 1 : 0;
    std::string listed;
    for (const std::int64_t mark : some)
        listed.append(listed.empty() ? "" : ", ").append(std::to_string(mark));
    if (log.number != 0 || !expected_.isClaimed(log, newNumberOf(log))) // for which they were looked for
        for (const auto &line :
             server_.table(inspect::joined({"SELECT source_id, uniqExact(mark) AS count FROM marks WHERE mark IN (",
                                            listed, ") AND source_id != ", std::to_string(log.number),
                                            " GROUP BY source_id ORDER BY count DESC LIMIT 1"})))
            counts[std::stoull(line[0])] += std::stoul(line[1]);
    overlap_t most;
    for (const auto &[number, count] : counts)
        if (count > most.count) {
            most.log.number = number;
            most.count = count;
        }
    if (most.count > 0)
        for (archivedLog_t &known : claims_.find("source_id = " + std::to_string(most.log.number)))
            most.log = std::move(known);
    return most;
}

// Of logs that are followed some are looked for at once: a few come with every round.
archive_t::overlap_t clusterStore_t::mark(const archivedLog_t &log, std::span<const std::int64_t> marks) {
    const std::size_t enough = server_.isPatient() ? inspect::markMaker_t::first : 1;
    std::vector<std::int64_t> &news = news_[log.number];
    for (const std::int64_t mark : marks) {
        news.push_back(mark);
        marks_.emplace_back(mark, log.number);
    }
    return news.size() < enough ? overlap_t{} : overlap(log, std::exchange(news, {}));
}

void clusterStore_t::row(const inspect::row_t &row) {
    const std::uint64_t number = row.front.number;
    if (!claims_.holds(number))
        claim(entered(number));
    table_t &table = tables_[row.table.number];
    if (row.table.number == 0) {
        ++counts_.messages;
        counts_.damaged += row.isDamaged ? 1 : 0;
    }
    table.logs.try_emplace(number, row.front.byteOffset);
    ++table.count;
    const std::size_t before = table.rows.size();
    table.rows.add([&](std::string &out) { inspect::appendRowBinary(out, row); });
    size_ += table.rows.size() - before;
}

// Bytes of all tables: large batches are what such a server likes, and the memory is bounded.
bool clusterStore_t::isFull() const {
    constexpr std::size_t batchSize = std::size_t{64} << 20;
    return size_ >= batchSize;
}

// Also words without messages are more of a log.
void clusterStore_t::save(const archivedLog_t &log) {
    const auto size = [](const archivedLog_t &one) { return one.position.offset + one.tail.size(); };
    if (const archivedLog_t &known = entered(log.number); !claims_.holds(log.number) && size(log) != size(known))
        claim(known);
    if (claims_.holds(log.number))
        saved_[log.number] = log;
}

// A claim that counts behind all the batches has counted for each of them. What is not said of them is found when it is
// needed: rows that are there are not taken again. Between two times of saying it the tables with few rows wait for
// more, as each batch of a table is files of its own for the server.
void clusterStore_t::commit(bool isLast) {
    constexpr std::uint64_t pause = 60'000; // milliseconds
    hasBegun_ = false;
    const bool isSettling = isLast || !left_.empty() || milliseconds() - savedAt_ >= pause;
    const std::size_t least = isSettling || !isFull() ? 0 : size_ / tables_.size();
    for (table_t &table : tables_)
        if (table.rows.size() >= least)
            send(table);
    if (!saved_.empty()) {
        claims_.verify();
        if (isSettling)
            settle(isLast);
    }
    if (isLast && !forgotten_.empty()) {
        std::vector<std::string> tables = tableNames();
        tables.insert(tables.end(), {"marks", "sources"});
        removal_t(server_, tables).remove("source_id IN (" + listed(forgotten_) + ")");
        forgotten_.clear();
    }
}

// All rows that came are there.
void clusterStore_t::settle(bool isLast) {
    savedAt_ = milliseconds();
    std::string marks;
    for (const auto &[mark, number] : marks_)
        inspect::appendMark(marks, mark, number);
    claims_.saveMarks(marks);
    marks_.clear();
    std::vector<archivedLog_t> logs;
    for (const auto &[number, log] : saved_)
        logs.push_back(entered_[number] = log);
    claims_.save(logs, isLast);
    saved_.clear();
    if (isLast && !server_.isPatient()) // else most go on
        for (const archivedLog_t &log : logs)
            claims_.release(log.number);
    for (const std::uint64_t number : std::exchange(left_, {})) {
        claims_.release(number);
        entered_.erase(number);
        news_.erase(number);
    }
}

std::int64_t clusterStore_t::all() {
    if (counts_.messages == 0)
        server_.expectNoTables();
    return std::stoll(server_.ask("SELECT count() FROM messages" +
                                  std::string(server_.isReplicated() ? " WHERE source_id % 2 = 1" : "")));
}

// Where rows of a batch may be there already: behind a place in each log, or, of many logs, exactly where these are.
std::string clusterStore_t::placesOf(const table_t &table) {
    constexpr std::size_t few = 4;
    if (table.logs.size() > few)
        return "(source_id, byte_offset) GLOBAL IN (SELECT source_id, byte_offset FROM " +
               clusterServer_t::sentRows(table.count) + ")";
    std::string places;
    for (const auto &[log, offset] : table.logs)
        places += inspect::joined({places.empty() ? "(" : " OR (", "source_id = ", std::to_string(log),
                                   " AND byte_offset >= ", std::to_string(offset), ")"});
    return places;
}

void clusterStore_t::send(table_t &table) {
    const std::string name = sqlName(table.declared->name);
    std::vector<std::uint64_t> numbers;
    for (const auto &[log, offset] : table.logs)
        numbers.push_back(log);
    while (table.count > 0) {
        const std::string statement = inspect::joined(
            {"INSERT INTO ", name, " (", table.names, ") SELECT ", table.values, " FROM ",
             clusterServer_t::sentRows(table.count), " WHERE ", claims_.condition(numbers), " AND (", table.key,
             ") NOT IN (SELECT ", table.key, " FROM ", name, " WHERE ", placesOf(table), ")"});
        bool isDone = false;
        askAbout(table.declared->name,
                 [&] { isDone = server_.insert(statement, table.structure, table.rows, claims_.nextQueryName()); });
        if (isDone)
            break;
        claims_.renew();
    }
    size_ -= table.rows.size();
    table.rows.clear();
    table.count = 0;
    table.logs.clear();
}

std::vector<archivedLog_t> clusterStore_t::logs() {
    return claims_.find("1");
}

std::vector<std::string> clusterStore_t::tableNames() const {
    std::vector<std::string> names;
    for (const table_t &table : tables_)
        names.push_back(table.declared->name);
    return names;
}

void clusterStore_t::forget(const archivedLog_t &log) {
    forgotten_.push_back(log.number);
}

std::int64_t clusterStore_t::removeOlder(const inspect::logTime_t &time) {
    std::string words;
    time.appendTo(words, ' ', inspect::logTime_t::fraction_t::none);
    try {
        return removal_t(server_, tableNames()).removeOlder("toDateTime('" + words + "', 'UTC')");
    } catch (const databaseError_t &error) {
        if (!server_.isPatient())
            throw;
        complain(error.what() + std::string("; nothing more is taken away for an hour"));
        return 0;
    }
}

} // namespace vek::tool
