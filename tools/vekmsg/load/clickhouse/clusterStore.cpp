#include "tools/vekmsg/load/clickhouse/clusterStore.hpp"

#include "tools/vekmsg/load/databaseError.hpp"
#include "vek/inspect/archive/rowJson.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

// Bytes that are sent at once, of all tables: large batches are what such a server likes, and the memory is bounded.
constexpr std::size_t batchSize = std::size_t{16} << 20;

} // namespace

void rowBatch_t::begin(std::size_t source, std::uint64_t offset) {
    if (pieces_.empty() || pieces_.back().source != source || pieces_.back().offset != offset)
        pieces_.push_back({source, offset, lines_.size()});
}

void rowBatch_t::dropBelow(const std::vector<std::uint64_t> &offsets) {
    rowBatch_t kept;
    for (std::size_t at = 0; at < pieces_.size(); ++at) {
        const piece_t &piece = pieces_[at];
        if (piece.offset < offsets[piece.source])
            continue;
        kept.begin(piece.source, piece.offset);
        const std::size_t end = at + 1 < pieces_.size() ? pieces_[at + 1].begin : lines_.size();
        kept.lines_.append(lines_, piece.begin, end - piece.begin);
    }
    *this = std::move(kept);
}

void rowBatch_t::moveBehind(std::vector<std::uint64_t> &offsets) const {
    for (const piece_t &piece : pieces_)
        offsets[piece.source] = std::max(offsets[piece.source], piece.offset + 1);
}

void rowBatch_t::clear() {
    lines_.clear();
    pieces_.clear();
}

clusterStore_t::clusterStore_t(const std::string &url) : server_(url) {
    for (const inspect::table_t &table : inspect::archiveTables().all())
        tables_.push_back({&table, {}, {}});
    makeTables();
    compareColumns();
}

void clusterStore_t::makeTables() {
    std::unordered_map<std::string, std::string> engines;
    for (const auto &line :
         server_.table("SELECT name, engine FROM system.tables WHERE database = " + sqlText(server_.database())))
        engines[line[0]] = line[1];
    for (const table_t &table : tables_) {
        const std::string &name = table.declared->name, local = name + "_local";
        if (const auto there = engines.find(name); there != engines.end()) {
            if (!server_.cluster().empty() && there->second != "Distributed")
                throw databaseError_t(server_.name() +
                                      ": the tables there belong to this server alone; for the cluster " +
                                      server_.cluster() + " load into another database");
            continue;
        }
        if (server_.cluster().empty()) {
            makeTable(*table.declared, name, "");
            continue;
        }
        makeTable(*table.declared, local, "");
        // All rows of a log are on one server, where a second copy of one would be found.
        makeTable(*table.declared, name,
                  "Distributed(" + sqlName(server_.cluster()) + ", " + sqlName(server_.database()) + ", " +
                      sqlName(local) + ", cityHash64(source))");
    }
}

void clusterStore_t::makeTable(const inspect::table_t &table, const std::string &name, const std::string &engine) {
    server_.ask(inspect::clickhouseCreate(table, name, engine));
}

void clusterStore_t::compareColumns() {
    std::unordered_map<std::string, std::string> there;
    // Quotation marks in types would come escaped.
    for (const auto &line : server_.table("SELECT table, name, replaceAll(type, " + sqlText("'") +
                                          ", '') FROM system.columns WHERE database = " + sqlText(server_.database())))
        there[line[0]].append(line[1]).append(" ").append(line[2]).append("\n");
    for (const table_t &table : tables_) {
        std::string wanted;
        for (const auto &[name, type] : inspect::clickhouseColumns(*table.declared))
            wanted.append(name).append(" ").append(type).append("\n");
        std::erase(wanted, '\'');
        if (there[table.declared->name] != wanted)
            throw databaseError_t(server_.name() + ": the table " + table.declared->name +
                                  " has other columns than this vekmsg's; load into another database");
    }
}

void clusterStore_t::expect(std::span<const std::string> logs) {
    const std::vector<std::string> there = logs_.expect(logs);
    for (const std::string &source : there)
        sourceNumber(source);
    askWanted(tables_, there);
}

std::string clusterStore_t::sourceOf(const std::string &log, const inspect::row_t &first) {
    const clusterLogs_t::found_t found = logs_.find(log, logBeginning_t(first));
    if (!found.isNew)
        commit(); // what is wanted of it counts what has been sent
    if (!found.isNew && !sourceNumbers_.contains(found.source)) {
        sourceNumber(found.source);
        askWanted(tables_, {&found.source, 1});
    }
    return found.source;
}

std::size_t clusterStore_t::sourceNumber(std::string_view name) {
    if (lastSource_ < sources_.size() && sources_[lastSource_] == name)
        return lastSource_;
    const auto [place, isNew] = sourceNumbers_.try_emplace(std::string(name), sources_.size());
    if (isNew) {
        sources_.emplace_back(name);
        for (table_t &table : tables_)
            table.wanted.push_back(0);
    }
    return lastSource_ = place->second;
}

void clusterStore_t::askWanted(std::span<table_t> tables, std::span<const std::string> sources) {
    server_.inPieces(sources, tables.size(), [&](std::span<const std::string> some, const std::string &constants) {
        std::string statement;
        for (std::size_t at = 0; at < tables.size(); ++at)
            statement.append(at == 0 ? "" : " UNION ALL ")
                .append("SELECT " + std::to_string(at) + ", hex(source), max(byte_offset) FROM ")
                .append(sqlName(tables[at].declared->name))
                .append(" WHERE source IN (" + constants + ") GROUP BY source");
        std::unordered_map<std::string, std::size_t> byHex;
        for (const std::string &source : some)
            byHex[sqlHex(source)] = sourceNumber(source);
        for (const auto &line : server_.table(statement))
            tables[std::stoul(line[0])].wanted[byHex.at(line[1])] = std::stoull(line[2]) + 1;
    });
}

void clusterStore_t::row(const inspect::row_t &row) {
    const std::size_t source = sourceNumber(row.front.source);
    table_t &table = tables_[row.table.number];
    if (row.front.byteOffset < table.wanted[source])
        return;
    if (row.table.number == 0) {
        ++messages_;
        damaged_ += row.isDamaged ? 1 : 0;
    }
    table.batch.begin(source, row.front.byteOffset);
    std::string &lines = table.batch.lines();
    const std::size_t before = lines.size();
    inspect::appendRowJson(lines, row, false);
    lines += '\n';
    size_ += lines.size() - before;
}

void clusterStore_t::endMessage() {
    if (size_ >= batchSize)
        commit();
}

// `messages` goes first: a source of which any table has rows is then known by its first message.
void clusterStore_t::commit() {
    for (table_t &table : tables_)
        send(table);
    size_ = 0;
}

std::int64_t clusterStore_t::all() {
    return std::stoll(server_.ask("SELECT count() FROM messages"));
}

void clusterStore_t::send(table_t &table) {
    while (!table.batch.isEmpty() && !server_.insert(table.declared->name, table.batch.lines())) {
        askWanted({&table, 1}, sources_);
        table.batch.dropBelow(table.wanted);
    }
    table.batch.moveBehind(table.wanted);
    table.batch.clear();
}

} // namespace vek::tool
