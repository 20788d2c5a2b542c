// Statements are put together from the lists of columns. SQLite has no arrays: a column of lists becomes a table.
#include "vek/inspect/archive/sql.hpp"

#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/archive/sources.hpp"
#include "vek/inspect/words/words.hpp"

namespace vek::inspect {

namespace {

std::string created(std::string_view name, const std::vector<sqlColumn_t> &columns) {
    std::string text = joined({"CREATE TABLE ", quotedName(name), " ("});
    for (const sqlColumn_t &column : columns)
        text += joined({&column == columns.data() ? "" : ",", "\n    ", quotedName(column.name), " ", column.type});
    return text;
}

} // namespace

std::string quotedName(std::string_view name) {
    std::string quoted = "\"";
    for (const char c : name)
        quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

std::vector<sqliteTable_t> sqliteTablesOf(const table_t &table) {
    std::vector<sqliteTable_t> tables{{table.name, &table, nullptr, table.depth, table.depth == 0}};
    for (const column_t &column : table.columns)
        if (column.isList)
            tables.push_back({joined({table.name, "_", column.name}), &table, &column, table.depth + 1, false});
    return tables;
}

std::string sqliteInsert(const sqliteTable_t &table, std::size_t rows) {
    std::string names, values;
    for (const sqlColumn_t &column : sqliteColumns(table)) {
        names.append(names.empty() ? "" : ", ").append(quotedName(column.name));
        values += values.empty() ? "(?" : ", ?";
    }
    values += ")";
    std::string text = joined({"INSERT OR ROLLBACK INTO ", quotedName(table.name), " (", names, ") VALUES ", values});
    for (std::size_t i = 1; i < rows; ++i)
        text += ", " + values;
    return text;
}

std::string sqliteType(const column_t &column) {
    return std::string(wordsOf(column.type).sqlite);
}

std::vector<sqlColumn_t> sqliteColumns(const sqliteTable_t &table) {
    std::vector<sqlColumn_t> columns;
    const auto add = [&](std::string_view name, std::string type) {
        columns.push_back({std::string(name), std::move(type)});
    };
    for (const frontColumn_t &column : frontColumns())
        if (column.isOfKey || (table.hasFront && column.sqlite.value != nullptr))
            add(column.name, std::string(column.sqlite.type));
    for (std::size_t i = 0; i < table.depth; ++i)
        add(elementColumn(i), "INTEGER NOT NULL");
    if (table.list != nullptr)
        add("value", sqliteType(*table.list) + " NOT NULL");
    else
        for (const column_t &column : table.table->columns)
            if (!column.isList)
                add(column.name, sqliteType(column) + (column.isAlwaysThere ? " NOT NULL" : ""));
    return columns;
}

std::size_t sqliteKeySize(const sqliteTable_t &table) {
    return 2 + table.depth;
}

// By the key a log's rows lie side by side, in the order of the messages, and need no further index.
std::string sqliteCreate(const sqliteTable_t &table, const std::vector<sqlColumn_t> &columns) {
    const bool isOfMessages = table.table != &archiveTables().messages() && table.table != &archiveTables().fronts();
    std::string key;
    for (std::size_t i = 0; i < sqliteKeySize(table); ++i)
        key += (i == 0 ? "" : ", ") + quotedName(columns[i].name);
    return joined({created(table.name, columns), ",\n    PRIMARY KEY (", key, ")",
                   isOfMessages ? ",\n    FOREIGN KEY (\"source_id\", \"byte_offset\") REFERENCES \"messages\" "
                                  "ON DELETE CASCADE"
                                : "",
                   "\n) WITHOUT ROWID"});
}

std::string sqliteCreate(const sqliteTable_t &table) {
    return sqliteCreate(table, sqliteColumns(table));
}

std::vector<sqlColumn_t> sqliteSourceColumns() {
    std::vector<sqlColumn_t> columns;
    for (const sourceColumn_t &column : sourceColumns())
        columns.push_back({std::string(column.name), std::string(column.sqlite)});
    return columns;
}

std::string sqliteCreateSources() {
    return created("sources", sqliteSourceColumns()) + "\n)";
}

// Logs that are whole are known by more than their heads: of these the index is for the others.
std::string sqliteCreateSourceIndexes() {
    return R"(CREATE INDEX IF NOT EXISTS "sources_by_name" ON "sources" ("source");
CREATE INDEX IF NOT EXISTS "sources_by_beginning" ON "sources" ("first_hash");
CREATE INDEX IF NOT EXISTS "sources_by_head" ON "sources" ("head_hash") WHERE length("first_bytes") < 4096;
CREATE INDEX IF NOT EXISTS "sources_by_start" ON "sources" (substr("first_bytes", 1, 256));
)";
}

// By the key, in whose order a log's messages stand: so they need no sorting.
std::string sqliteCreateViews() {
    return R"(CREATE VIEW IF NOT EXISTS "latest_state" AS
SELECT sources.source_id, source, device, site, log_time, status, low_status, severity,
       (SELECT group_concat(value, '; ') FROM device_status_msgs AS said
        WHERE said.source_id = state.source_id AND said.byte_offset = state.byte_offset) AS said
FROM sources JOIN device_status AS state ON state.source_id = sources.source_id AND state.byte_offset =
    (SELECT max(byte_offset) FROM device_status AS each WHERE each.source_id = sources.source_id);
CREATE VIEW IF NOT EXISTS "gaps" AS
SELECT source_id, source, device, site, log_time, byte_offset, previous + 1 AS first_missing, number - previous - 1 AS missing
FROM (SELECT source_id, byte_offset, log_time, sequence_number AS number,
             (SELECT sequence_number FROM messages AS earlier WHERE earlier.source_id = messages.source_id AND
              earlier.byte_offset < messages.byte_offset ORDER BY earlier.byte_offset DESC LIMIT 1) AS previous
      FROM messages) JOIN sources USING (source_id)
WHERE number > previous + 1;
CREATE VIEW IF NOT EXISTS "findings" AS
SELECT source_id, source, device, site, log_time, line, record, byte_offset, code, severity, path, message, consequence,
       suggestion
FROM problems JOIN messages USING (source_id, byte_offset) JOIN sources USING (source_id);
)";
}

std::vector<sqlColumn_t> sqliteMarkColumns() {
    return {{"mark", "INTEGER PRIMARY KEY"}, {"source_id", "INTEGER NOT NULL"}};
}

std::string sqliteCreateMarks() {
    return created("marks", sqliteMarkColumns()) + "\n)";
}

std::vector<sqlColumn_t> sqliteDayColumns() {
    return {{"source_id", "INTEGER NOT NULL"},
            {"log_date", "TEXT NOT NULL"},
            {"first_offset", "INTEGER NOT NULL"},
            {"last_offset", "INTEGER NOT NULL"}};
}

std::string sqliteCreateDays() {
    return created("days", sqliteDayColumns()) + ",\n    PRIMARY KEY (\"source_id\", \"log_date\")\n) WITHOUT ROWID";
}

std::string sqliteCreateDayIndexes() {
    return "CREATE INDEX IF NOT EXISTS \"days_by_date\" ON \"days\" (\"log_date\");\n";
}

std::string sqliteFillDays() {
    return "INSERT INTO days (source_id, log_date, first_offset, last_offset) "
           "SELECT source_id, substr(log_time, 1, 10), min(byte_offset), max(byte_offset) FROM messages "
           "WHERE log_time LIKE '____-__-__%' GROUP BY 1, 2";
}

void appendSqliteSchema(std::string &out, std::span<const table_t *const> tables) {
    const auto append = [&out](std::string text) {
        constexpr std::string_view create = "CREATE TABLE ";
        out += text.insert(create.size(), "IF NOT EXISTS ") + ";\n";
    };
    out += joined({"PRAGMA application_id = ", std::to_string(sqliteApplication),
                   ";\nPRAGMA user_version = ", std::to_string(sqliteVersion), ";\n"});
    append(sqliteCreateSources());
    out += sqliteCreateSourceIndexes();
    append(sqliteCreateMarks());
    append(sqliteCreateDays());
    out += sqliteCreateDayIndexes();
    for (const table_t *table : tables)
        for (const sqliteTable_t &one : sqliteTablesOf(*table))
            append(sqliteCreate(one));
    if (tables.size() == archiveTables().all().size())
        out += sqliteCreateViews();
}

} // namespace vek::inspect
