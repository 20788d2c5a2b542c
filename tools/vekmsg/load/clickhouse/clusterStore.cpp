#include "tools/vekmsg/load/clickhouse/clusterStore.hpp"

#include "tools/vekmsg/load/clickhouse/migration.hpp"
#include "vek/inspect/archive/rowBinary.hpp"
#include "vek/inspect/archive/sql.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::tool {

using inspect::archivedLog_t;

namespace {

std::string conditionOf(const std::map<std::uint64_t, std::uint64_t> &offsets) {
    std::string condition;
    for (const auto &[log, offset] : offsets)
        condition.append(condition.empty() ? "(" : " OR (")
            .append("source_id = " + std::to_string(log) + " AND byte_offset >= " + std::to_string(offset) + ")");
    return condition;
}

} // namespace

std::unique_ptr<archive_t> openCluster(const std::string &url, bool isPatient) {
    return std::make_unique<clusterStore_t>(url, isPatient);
}

void rowBatch_t::begin(std::uint64_t log, std::uint64_t offset) {
    if (pieces_.empty() || pieces_.back().log != log || pieces_.back().offset != offset)
        pieces_.push_back({log, offset, bytes_.size()});
}

std::map<std::uint64_t, std::uint64_t> rowBatch_t::logs() const {
    std::map<std::uint64_t, std::uint64_t> logs;
    for (const piece_t &piece : pieces_)
        logs.try_emplace(piece.log, piece.offset);
    return logs;
}

void rowBatch_t::dropBelow(const std::map<std::uint64_t, std::uint64_t> &offsets) {
    rowBatch_t kept;
    for (std::size_t at = 0; at < pieces_.size(); ++at) {
        const piece_t &piece = pieces_[at];
        if (const auto wanted = offsets.find(piece.log); wanted != offsets.end() && piece.offset < wanted->second)
            continue;
        kept.begin(piece.log, piece.offset);
        const std::size_t end = at + 1 < pieces_.size() ? pieces_[at + 1].begin : bytes_.size();
        kept.bytes_.append(bytes_, piece.begin, end - piece.begin);
    }
    *this = std::move(kept);
}

clusterStore_t::clusterStore_t(const std::string &url, bool isPatient) : server_(url, isPatient) {
    for (const inspect::table_t &table : inspect::archiveTables().all()) {
        table_t &own = tables_.emplace_back();
        own.declared = &table;
        for (const auto &[name, type] : inspect::clickhouseColumns(table)) {
            own.names.append(own.names.empty() ? "" : ", ").append(sqlName(name));
            own.structure.append(own.structure.empty() ? "" : ", ").append(name).append(" ").append(type);
        }
    }
    makeTables();
}

void clusterStore_t::makeTables() {
    const std::string where = " WHERE database = " + sqlText(server_.database());
    for (const auto &line : server_.table("SELECT name, engine FROM system.tables" + where))
        engines_[line[0]] = line[1];
    for (const auto &line : server_.table("SELECT table, name FROM system.columns" + where))
        columns_[line[0]] += "," + line[1] + ",";
    const std::string local = server_.cluster().empty() ? "" : "_local";
    makeTable("sources", inspect::clickhouseCreateSources("sources" + local), local,
              inspect::clickhouseSourceColumns());
    for (const std::string &name : migrateFromNames(server_, columns_))
        engines_[name].clear();
    makeTable("marks", inspect::clickhouseCreateMarks("marks" + local), local, inspect::clickhouseMarkColumns());
    for (const table_t &table : tables_)
        makeTable(table.declared->name, inspect::clickhouseCreate(*table.declared, table.declared->name + local), local,
                  inspect::clickhouseColumns(*table.declared));
}

// All rows of a log are on one server. What others made or changed is taken as it is, and columns that are new are
// added.
void clusterStore_t::makeTable(const std::string &name, const std::string &create, const std::string &local,
                               const std::vector<inspect::sqlColumn_t> &columns) {
    const auto there = engines_.find(name);
    if (there != engines_.end() && !local.empty() && there->second != "Distributed")
        throw databaseError_t(server_.name() + ": the tables there belong to this server alone; for the cluster " +
                              server_.cluster() + " load into another database");
    std::vector<std::string> tables = {name + local};
    if (!local.empty())
        tables.push_back(name);
    for (const std::string &table : tables) {
        if (!engines_.contains(table)) {
            const std::string distributed = "CREATE TABLE IF NOT EXISTS " + sqlName(name) + " AS " +
                                            sqlName(name + local) + " ENGINE = Distributed(" +
                                            sqlName(server_.cluster()) + ", " + sqlName(server_.database()) + ", " +
                                            sqlName(name + local) + ", source_id)";
            server_.ask(table == name && !local.empty() ? distributed : create);
            engines_[table] = "";
            continue;
        }
        for (const auto &[column, type] : columns) {
            if (columns_[table].find("," + column + ",") != std::string::npos || engines_[table].empty())
                continue;
            server_.ask("ALTER TABLE " + sqlName(table) + " ADD COLUMN " + sqlName(column) + " " + type);
        }
    }
}

std::vector<archivedLog_t> clusterStore_t::find(const archivedLog_t &log) {
    const std::string first = std::to_string(log.firstHash()), head = std::to_string(log.headHash());
    const std::string named = "source = " + sqlText(log.name);
    std::vector<archivedLog_t> found;
    for (claims_t::known_t &known :
         claims_.find(inspect::joined({"first_hash = ", first, " OR (head_hash = ", head, " AND ", head,
                                       " != 0 AND length(first_bytes) < 4096) OR ", named}))) {
        if (known.log.first.empty() && hasMessagesOf(known.log.number, log.first))
            known.log.first = log.first;
        found.push_back(known.log);
        entered_[known.log.number] = {std::move(known.log), true, known.isSettled};
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

// The number follows from what is known of the log and stays when it grows, so that two loaders give the same log the
// same.
void clusterStore_t::enter(archivedLog_t &log, bool isNew) {
    if (log.number != 0)
        return;
    constexpr unsigned bits = 52; // which every language's numbers hold
    std::string text(log.head());
    for (const std::string &part : {log.device, log.site, log.host, log.name})
        text.append(1, '\0').append(part);
    log.number = inspect::hashOf(text) >> (64 - bits) | 1;
    while (true) {
        const std::vector<claims_t::known_t> known = claims_.find("source_id = " + std::to_string(log.number));
        if (known.empty() && !entered_.contains(log.number))
            break;
        if (!isNew && !known.empty() && known.front().log.head() == log.head() &&
            (known.front().log.first.starts_with(log.first) || log.first.starts_with(known.front().log.first)))
            throw usageError_t("another vekmsg has begun to load " + log.name + " into " + name() + "; let it");
        log.number += 2;
    }
    claim(entered_[log.number] = {log, false, true});
}

// Its rows may be there behind what the table of sources says, when a loader was interrupted.
void clusterStore_t::claim(entered_t &entered) {
    claims_.claim(entered.log);
    const std::vector<claims_t::known_t> now = claims_.find("source_id = " + std::to_string(entered.log.number));
    if (now.empty() || now.front().log.position.offset != entered.log.position.offset)
        throw usageError_t("another vekmsg loads " + entered.log.name + " into " + name() +
                           " at the same time; let it");
    if (entered.isKnown && !entered.isSettled)
        askWanted(tables_, entered.log);
    entered.isKnown = true;
}

void clusterStore_t::askWanted(std::span<table_t> tables, const archivedLog_t &log) {
    std::string statement;
    for (std::size_t at = 0; at < tables.size(); ++at)
        statement.append(at == 0 ? "" : " UNION ALL ")
            .append("SELECT " + std::to_string(at) + ", count(), max(byte_offset) FROM ")
            .append(sqlName(tables[at].declared->name))
            .append(" WHERE " + conditionOf({{log.number, log.position.offset}}));
    for (const auto &line : server_.table(statement))
        if (line[1] != "0")
            tables[std::stoul(line[0])].wanted[log.number] = std::stoull(line[2]) + 1;
}

// Of many marks the first ones tell as much.
archive_t::overlap_t clusterStore_t::overlap(const archivedLog_t &log, std::span<const std::int64_t> marks) {
    constexpr std::size_t enough = 1000;
    std::string some;
    for (const std::int64_t mark : marks.first(std::min(enough, marks.size())))
        some.append(some.empty() ? "" : ", ").append(std::to_string(mark));
    overlap_t most;
    if (some.empty())
        return most;
    for (const auto &line : server_.table("SELECT source_id, uniqExact(mark) AS count FROM marks WHERE mark IN (" +
                                          some + ") AND source_id != " + std::to_string(log.number) +
                                          " GROUP BY source_id ORDER BY count DESC LIMIT 1")) {
        most.count = std::stoul(line[1]);
        for (claims_t::known_t &known : claims_.find("source_id = " + line[0]))
            most.log = std::move(known.log);
    }
    return most;
}

archive_t::overlap_t clusterStore_t::mark(const archivedLog_t &log, std::span<const std::int64_t> marks) {
    if (claims_.holds(log.number))
        for (const std::int64_t mark : marks)
            inspect::appendMark(marks_, mark, log.number);
    return overlap(log, marks);
}

void clusterStore_t::row(const inspect::row_t &row) {
    const std::uint64_t number = row.front.number;
    if (!claims_.holds(number))
        claim(entered_.at(number));
    table_t &table = tables_[row.table.number];
    if (const auto wanted = table.wanted.find(number);
        wanted != table.wanted.end() && row.front.byteOffset < wanted->second)
        return;
    if (row.table.number == 0) {
        ++counts_.messages;
        counts_.damaged += row.isDamaged ? 1 : 0;
    }
    table.batch.begin(number, row.front.byteOffset);
    std::string &bytes = table.batch.bytes();
    const std::size_t before = bytes.size();
    inspect::appendRowBinary(bytes, row);
    size_ += bytes.size() - before;
}

// Bytes of all tables: large batches are what such a server likes, and the memory is bounded.
bool clusterStore_t::isFull() const {
    constexpr std::size_t batchSize = std::size_t{16} << 20;
    return size_ >= batchSize;
}

void clusterStore_t::save(const archivedLog_t &log) {
    if (claims_.holds(log.number))
        saved_.push_back(log);
}

// A claim that counts behind all the batches has counted for each of them.
void clusterStore_t::commit(bool isLast) {
    hasBegun_ = false;
    for (table_t &table : tables_)
        send(table);
    size_ = 0;
    if (saved_.empty())
        return;
    claims_.verify();
    claims_.saveMarks(marks_);
    marks_.clear();
    claims_.save(saved_, isLast);
    for (const archivedLog_t &log : saved_)
        entered_[log.number] = {log, true, isLast};
    saved_.clear();
    if (isLast)
        claims_.clear();
}

std::int64_t clusterStore_t::all() {
    return std::stoll(server_.ask("SELECT count() FROM messages"));
}

void clusterStore_t::send(table_t &table) {
    const std::string name = sqlName(table.declared->name);
    while (!table.batch.isEmpty()) {
        const offsets_t logs = table.batch.logs();
        std::vector<std::uint64_t> numbers;
        for (const auto &[log, offset] : logs)
            numbers.push_back(log);
        const std::string statement = inspect::joined(
            {"INSERT INTO ", name, " (", table.names, ") SELECT ", table.names, " FROM _data WHERE ",
             claims_.condition(numbers), " AND (source_id, byte_offset) NOT IN (SELECT source_id, byte_offset FROM ",
             name, " WHERE ", conditionOf(logs), ")"});
        if (server_.insert(statement, table.structure, table.batch.bytes(), claims_.nextQueryName()))
            break;
        claims_.renew();
        for (const auto &[log, offset] : logs)
            askWanted({&table, 1}, entered_.at(log).log);
        table.batch.dropBelow(table.wanted);
    }
    table.batch = {};
}

} // namespace vek::tool
