#include "tools/vekmsg/load/clickhouse/migration.hpp"

#include "tools/vekmsg/load/databaseError.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/archive/sql.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <random>

namespace vek::tool {

using inspect::joined;

namespace {

constexpr std::string_view numberOfLog = "bitOr(bitAnd(cityHash64(source), 4503599627370495), 1)"; // of 52 bits

// The columns that both versions have, each with what gives its value.
std::pair<std::string, std::string> columnsOf(const inspect::table_t &table, const std::string &there) {
    std::pair<std::string, std::string> columns;
    for (const auto &[name, type] : inspect::clickhouseColumns(table)) {
        const std::string before = name == "start" || name == "end" ? name + "_byte" : name;
        const bool isNumber = name == "source_id", isThere = there.find("," + before + ",") != std::string::npos;
        if (!isNumber && !isThere)
            continue;
        const std::string between = columns.first.empty() ? "" : ", ";
        columns.first += between + sqlName(name);
        columns.second += between + (isNumber ? std::string(numberOfLog) : sqlName(before));
    }
    return columns;
}

void migrate(clusterServer_t &server, const std::string &aside, const inspect::table_t &table,
             const std::string &there) {
    const std::string name = sqlName(server.database()) + "." + sqlName(table.name);
    const std::string copy = table.name + "_" + std::to_string(std::random_device()()), place = aside + "." + copy;
    std::string create = inspect::clickhouseCreate(table, copy);
    server.ask(create.insert(create.find('"'), aside + "."));
    const auto [names, values] = columnsOf(table, there);
    server.ask(joined({"INSERT INTO ", place, " (", names, ") SELECT ", values, " FROM ", name, " FINAL"}));
    const auto counted =
        server.table(joined({"SELECT (SELECT count() FROM ", place, ") = (SELECT count() FROM ", name, " FINAL)"}));
    if (counted.front().front() != "1")
        throw databaseError_t(server.name() + ": the server was interrupted while it took over the table " +
                              table.name + " of version 1; nothing is lost, run this again");
    server.ask(joined({"RENAME TABLE ", name, " TO ", aside, ".", sqlName(table.name), ", ", place, " TO ", name}));
}

} // namespace

std::vector<std::string> migrateFromNames(clusterServer_t &server, const std::map<std::string, std::string> &columns) {
    std::vector<const inspect::table_t *> old;
    for (const inspect::table_t &table : inspect::archiveTables().all()) {
        const auto there = columns.find(table.name);
        const auto has = [&](std::string_view column) { return there->second.find(column) != std::string::npos; };
        if (there == columns.end() || has(",source_id,"))
            continue;
        if (!has(",source,") || !has(",byte_offset,"))
            throw databaseError_t(joined({server.name(), ": the table ", table.name,
                                          " is none of an archive, as it has no source_id; rename it, or load into "
                                          "another database"}));
        old.push_back(&table);
    }
    if (old.empty())
        return {};
    std::reverse(old.begin(), old.end()); // messages at the end: until then the logs are in it
    const std::string database = server.database() + "_version1", aside = sqlName(database);
    if (!server.cluster().empty())
        throw databaseError_t(server.name() +
                              ": the tables there are of version 1, which told logs apart by their names. "
                              "Those of a cluster are not taken over: make another database on each "
                              "server, and load the logs into it");
    complain(server.name() + " is of version 1; its tables are taken over, as they were they stay in the database " +
             database + ", which may be dropped then");
    server.ask("CREATE DATABASE IF NOT EXISTS " + aside);
    if (old.back()->number == 0)
        server.ask(joined({"INSERT INTO sources (source_id, source, next_line, claim) SELECT DISTINCT ", numberOfLog,
                           ", source, 1, 1 FROM messages"}));
    std::vector<std::string> names;
    for (const inspect::table_t *table : old) {
        migrate(server, aside, *table, columns.at(table->name));
        names.push_back(table->name);
    }
    return names;
}

} // namespace vek::tool
