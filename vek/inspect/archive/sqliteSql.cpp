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

std::string sqliteInsert(const sqliteTable_t &table) {
    std::string names = "\"message_id\"", values = "?";
    const auto add = [&](std::string_view name) {
        names += ", " + quotedName(name);
        values += ", ?";
    };
    for (std::size_t i = 0; i < table.depth; ++i)
        add(elementColumn(i));
    if (table.hasFront)
        for (const frontColumn_t &column : frontColumns())
            if (column.sqlite.value != nullptr)
                add(column.name);
    if (table.list != nullptr)
        add("value");
    else
        for (const column_t &column : table.table->columns)
            if (!column.isList)
                add(column.name);
    return joined({"INSERT INTO ", quotedName(table.name), " (", names, ") VALUES (", values, ")"});
}

std::string sqliteType(const column_t &column) {
    return std::string(wordsOf(column.type).sqlite);
}

std::vector<sqlColumn_t> sqliteColumns(const sqliteTable_t &table) {
    std::vector<sqlColumn_t> columns;
    const auto add = [&](std::string_view name, std::string type) {
        columns.push_back({std::string(name), std::move(type)});
    };
    const frontColumn_t &key = frontColumns().front();
    const bool isOfMessages = table.table != &archiveTables().messages() && table.table != &archiveTables().fronts();
    add(key.name, joined({key.sqlite.type, table.depth == 0 ? " PRIMARY KEY" : " NOT NULL",
                          isOfMessages ? " REFERENCES \"messages\" ON DELETE CASCADE" : ""}));
    for (const frontColumn_t &column : frontColumns().subspan(1))
        if (column.isComputed())
            add(column.name, std::string(column.sqlite.type));
    for (std::size_t i = 0; i < table.depth; ++i)
        add(elementColumn(i), "INTEGER NOT NULL");
    if (table.hasFront)
        for (const frontColumn_t &column : frontColumns())
            if (column.sqlite.value != nullptr)
                add(column.name, std::string(column.sqlite.type));
    if (table.list != nullptr)
        add("value", sqliteType(*table.list) + " NOT NULL");
    else
        for (const column_t &column : table.table->columns)
            if (!column.isList)
                add(column.name, sqliteType(column) + (column.isAlwaysThere ? " NOT NULL" : ""));
    return columns;
}

// The rows of a message's lists lie side by side, in the order of the messages.
std::string sqliteCreate(const sqliteTable_t &table) {
    std::string text = created(table.name, sqliteColumns(table));
    if (table.depth == 0)
        return text + "\n)";
    text += ",\n    PRIMARY KEY (\"message_id\"";
    for (std::size_t i = 0; i < table.depth; ++i)
        text += ", " + quotedName(elementColumn(i));
    return text + ")\n) WITHOUT ROWID";
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

// By the key, in whose order a log's messages stand: so they need no index, and no sorting.
std::string sqliteCreateViews() {
    return R"(CREATE VIEW IF NOT EXISTS "latest_state" AS
SELECT sources.source_id, source, device, site, log_time, status, low_status, severity,
       (SELECT group_concat(value, '; ') FROM device_status_msgs AS said WHERE said.message_id = state.message_id) AS said
FROM sources JOIN device_status AS state ON state.message_id =
    (SELECT max(message_id) FROM device_status
     WHERE message_id BETWEEN sources.source_id << 40 AND (sources.source_id + 1 << 40) - 1);
CREATE VIEW IF NOT EXISTS "gaps" AS
SELECT source_id, source, device, site, log_time, message_id, previous + 1 AS first_missing, number - previous - 1 AS missing
FROM (SELECT message_id, log_time, sequence_number AS number, source_id AS log,
             (SELECT sequence_number FROM messages AS earlier WHERE earlier.message_id < messages.message_id AND
              earlier.message_id >= messages.source_id << 40 ORDER BY earlier.message_id DESC LIMIT 1) AS previous
      FROM messages LIMIT -1) JOIN sources ON source_id = log
WHERE number > previous + 1;
CREATE VIEW IF NOT EXISTS "findings" AS
SELECT source_id, source, device, site, log_time, line, record, message_id, code, severity, path, message, consequence,
       suggestion
FROM problems JOIN messages USING (message_id, source_id) JOIN sources USING (source_id);
)";
}

std::vector<sqlColumn_t> sqliteMarkColumns() {
    return {{"mark", "INTEGER PRIMARY KEY"}, {"source_id", "INTEGER NOT NULL"}};
}

std::string sqliteCreateMarks() {
    return created("marks", sqliteMarkColumns()) + "\n)";
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
    for (const table_t *table : tables)
        for (const sqliteTable_t &one : sqliteTablesOf(*table))
            append(sqliteCreate(one));
    if (tables.size() == archiveTables().all().size())
        out += sqliteCreateViews();
}

} // namespace vek::inspect
