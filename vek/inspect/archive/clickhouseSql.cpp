#include "vek/inspect/archive/sql.hpp"

#include "vek/inspect/words.hpp"

namespace vek::inspect {

namespace {

std::string_view typeName(columnType_t type) {
    switch (type) {
    case columnType_t::integer64:
        return "UInt64";
    case columnType_t::integer32:
        return "Int32";
    case columnType_t::integer16:
        return "Int16";
    case columnType_t::real64:
        return "Float64";
    case columnType_t::real32:
        return "Float32";
    case columnType_t::boolean:
        return "UInt8";
    case columnType_t::text:
        return "String";
    }
    return {};
}

void appendTable(std::string &out, const table_t &table) {
    std::string key = "\"source\", \"byte_offset\"";
    out += joined({"CREATE TABLE IF NOT EXISTS ", quotedName(table.name), R"( (
    "source" String,
    "byte_offset" UInt64,
    "log_time" Nullable(DateTime('UTC')),
    "log_microsecond" UInt32,
    "echo_tag" Nullable(Int32),
    "sequence_number" Nullable(Int32),
    "damaged" UInt8)"});
    for (std::size_t i = 0; i < table.depth; ++i) {
        out += joined({",\n    ", quotedName(elementColumn(i)), " UInt32"});
        key += ", " + quotedName(elementColumn(i));
    }
    for (const column_t &column : table.columns)
        out += joined({",\n    ", quotedName(column.name), " ", clickhouseType(column)});
    out += joined({"\n) ENGINE = ReplacingMergeTree() ORDER BY (", key, ");\n"});
}

} // namespace

std::string clickhouseType(const column_t &column) {
    const std::string_view type = typeName(column.type);
    if (column.isList)
        return joined({"Array(", type, ")"});
    return column.isAlwaysThere ? std::string(type) : joined({"Nullable(", type, ")"});
}

void appendClickhouseSchema(std::string &out, std::span<const table_t *const> tables) {
    for (const table_t *table : tables)
        appendTable(out, *table);
}

} // namespace vek::inspect
