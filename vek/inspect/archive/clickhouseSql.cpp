// Statements are put together from the lists of columns; a row that is loaded twice is one for ReplacingMergeTree.
#include "vek/inspect/archive/sql.hpp"

#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/archive/sources.hpp"
#include "vek/inspect/words/words.hpp"

namespace vek::inspect {

namespace {

std::string listed(const std::vector<std::string> &words, std::string_view between) {
    std::string out;
    for (const std::string &word : words)
        out.append(out.empty() ? "" : between).append(word);
    return out;
}

std::string created(std::string_view name, const std::vector<sqlColumn_t> &columns, std::string_view engine) {
    std::vector<std::string> lines;
    lines.reserve(columns.size());
    for (const sqlColumn_t &column : columns)
        lines.push_back(quotedName(column.name) + " " + column.type);
    return joined({"CREATE TABLE IF NOT EXISTS ", quotedName(name), " (\n    ", listed(lines, ",\n    "),
                   "\n) ENGINE = ", engine});
}

// The newest of rows with equal keys stays, by a column when one is given.
std::string engineOf(const clickhouseServer_t &server, std::string_view version) {
    if (server.replicated.empty())
        return joined({"ReplacingMergeTree(", version, ")"});
    return joined({"ReplicatedReplacingMergeTree('", server.replicated, "', '{replica}'", version.empty() ? "" : ", ",
                   version, ")"});
}

// The table's own column that stands so far from the end; null when that is one of those in front.
const column_t *columnOf(const table_t &table, std::size_t fromEnd) {
    return fromEnd <= table.columns.size() ? &table.columns[table.columns.size() - fromEnd] : nullptr;
}

// What a server of today keeps in less room: few different texts as numbers, numbers that grow as their steps.
std::string currentType(const sqlColumn_t &column, const column_t *own) {
    if (column.name == "log_time")
        return "Nullable(DateTime64(6, 'UTC'))";
    if (column.name == "source")
        return "LowCardinality(String)";
    if (column.name == "byte_offset" || column.name == "line")
        return column.type + " CODEC(Delta, ZSTD)";
    if (own != nullptr && own->field != nullptr && own->field->kind == fieldKind_t::enumeration && !own->isList)
        return joined({"LowCardinality(", column.type, ")"});
    return column.type + " CODEC(ZSTD)";
}

} // namespace

std::string clickhouseType(const column_t &column) {
    const std::string_view type = wordsOf(column.type).clickhouse;
    if (column.isList)
        return joined({"Array(", type, ")"});
    return column.isAlwaysThere ? std::string(type) : joined({"Nullable(", type, ")"});
}

std::vector<sqlColumn_t> clickhouseColumns(const table_t &table) {
    std::vector<sqlColumn_t> columns;
    for (const frontColumn_t &column : frontColumns())
        if (!column.clickhouse.type.empty())
            columns.push_back({std::string(column.name), std::string(column.clickhouse.type)});
    for (std::size_t i = 0; i < table.depth; ++i)
        columns.push_back({elementColumn(i), "UInt32"});
    for (const column_t &column : table.columns)
        columns.push_back({column.name, clickhouseType(column)});
    return columns;
}

sqlColumn_t clickhouseDayColumn() {
    return {std::string(clickhouseDay), "Date DEFAULT toDate(intDiv(ifNull(toUInt32(log_time), 0), 86400))"};
}

std::string clickhouseCreate(const table_t &table, std::string_view name, const clickhouseServer_t &server) {
    std::vector<std::string> key = {quotedName("source_id"), quotedName("source"), quotedName("byte_offset")};
    for (std::size_t i = 0; i < table.depth; ++i)
        key.push_back(quotedName(elementColumn(i)));
    std::vector<sqlColumn_t> columns = clickhouseColumns(table);
    if (server.isCurrent)
        for (std::size_t at = 0; at < columns.size(); ++at)
            columns[at].type = currentType(columns[at], columnOf(table, columns.size() - at));
    columns.push_back(clickhouseDayColumn());
    return created(name, columns,
                   joined({engineOf(server, ""), " PARTITION BY toYYYYMM(", quotedName(clickhouseDay), ") ORDER BY (",
                           listed(key, ", "), ")"}));
}

std::vector<sqlColumn_t> clickhouseSourceColumns() {
    std::vector<sqlColumn_t> columns;
    for (const sourceColumn_t &column : sourceColumns())
        columns.push_back({std::string(column.name), std::string(column.clickhouse)});
    columns.push_back({"claim", "UInt64"});
    columns.push_back({"is_settled", "UInt8"});
    return columns;
}

std::string clickhouseCreateSources(std::string_view name, const clickhouseServer_t &server) {
    return created(name, clickhouseSourceColumns(),
                   joined({engineOf(server, "\"loaded_bytes\""), " ORDER BY (\"source_id\", \"claim\") ",
                           "SETTINGS index_granularity = 64"})); // one log is looked for
}

std::vector<sqlColumn_t> clickhouseMarkColumns() {
    return {{"mark", "Int64"}, {"source_id", "UInt64"}};
}

std::string clickhouseCreateMarks(std::string_view name, const clickhouseServer_t &server) {
    return created(name, clickhouseMarkColumns(),
                   joined({engineOf(server, ""), " ORDER BY (\"mark\", \"source_id\")"}));
}

void appendClickhouseSchema(std::string &out, std::span<const table_t *const> tables) {
    out += joined({clickhouseCreateSources("sources"), ";\n", clickhouseCreateMarks("marks"), ";\n"});
    for (const table_t *table : tables)
        out += joined({clickhouseCreate(*table, table->name), ";\n"});
}

} // namespace vek::inspect
