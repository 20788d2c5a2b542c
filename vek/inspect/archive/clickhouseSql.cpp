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

std::string clickhouseCreate(const table_t &table, std::string_view name, std::string_view engine) {
    std::vector<std::string> key = {quotedName("source_id"), quotedName("source"), quotedName("byte_offset")};
    for (std::size_t i = 0; i < table.depth; ++i)
        key.push_back(quotedName(elementColumn(i)));
    const std::string usual = joined({"ReplacingMergeTree() ORDER BY (", listed(key, ", "), ")"});
    return created(name, clickhouseColumns(table), engine.empty() ? std::string_view(usual) : engine);
}

std::vector<sqlColumn_t> clickhouseSourceColumns() {
    std::vector<sqlColumn_t> columns;
    for (const sourceColumn_t &column : sourceColumns())
        columns.push_back({std::string(column.name), std::string(column.clickhouse)});
    columns.push_back({"claim", "UInt64"});
    columns.push_back({"is_settled", "UInt8"});
    return columns;
}

std::string clickhouseCreateSources(std::string_view name, std::string_view engine) {
    return created(name, clickhouseSourceColumns(),
                   engine.empty() ? "ReplacingMergeTree(\"loaded_bytes\") ORDER BY (\"source_id\", \"claim\") "
                                    "SETTINGS index_granularity = 64" // one log is looked for
                                  : engine);
}

std::vector<sqlColumn_t> clickhouseMarkColumns() {
    return {{"mark", "Int64"}, {"source_id", "UInt64"}};
}

std::string clickhouseCreateMarks(std::string_view name) {
    return created(name, clickhouseMarkColumns(), "ReplacingMergeTree() ORDER BY (\"mark\", \"source_id\")");
}

void appendClickhouseSchema(std::string &out, std::span<const table_t *const> tables) {
    out += joined({clickhouseCreateSources("sources"), ";\n", clickhouseCreateMarks("marks"), ";\n"});
    for (const table_t *table : tables)
        out += joined({clickhouseCreate(*table, table->name), ";\n"});
}

} // namespace vek::inspect
