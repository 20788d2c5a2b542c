#include "tools/vekmsg/load/sqlite/migration.hpp"

#include "vek/inspect/words/words.hpp"

#include <optional>

namespace vek::tool {

using namespace inspect;

namespace {

bool hasColumn(database_t &database, std::string_view table, std::string_view column) {
    statement_t rows(database, "SELECT 1 FROM pragma_table_xinfo(?) WHERE name = ?");
    rows.bind(1, table);
    rows.bind(2, column);
    return rows.next();
}

// What stood in the first column of the rows, in their order.
std::vector<std::string> texts(database_t &database, const std::string &query, std::string_view parameter) {
    std::vector<std::string> found;
    statement_t rows(database, query);
    rows.bind(1, parameter);
    while (rows.next())
        found.push_back(rows.text(0));
    return found;
}

// All but the old key and what was computed from it, as they are.
std::vector<sqlColumn_t> otherColumns(database_t &database, const std::string &table) {
    std::vector<sqlColumn_t> columns;
    statement_t rows(database, "SELECT name, type || CASE WHEN \"notnull\" THEN ' NOT NULL' ELSE '' END || "
                               "coalesce(' DEFAULT ' || dflt_value, '') FROM pragma_table_xinfo(?) "
                               "WHERE hidden = 0 AND name <> 'message_id' AND name NOT LIKE 'element%'");
    rows.bind(1, std::string_view(table));
    while (rows.next())
        columns.push_back({rows.text(0), rows.text(1)});
    return columns;
}

void splitKey(database_t &database, const sqliteTable_t &table) {
    const std::string name = quotedName(table.name), old = quotedName(table.name + " of version 4");
    const std::vector<std::string> indexes = texts(
        database, "SELECT sql FROM sqlite_schema WHERE type = 'index' AND sql NOT LIKE '%message_id%' AND tbl_name = ?",
        table.name);
    std::vector<sqlColumn_t> columns = sqliteColumns(table);
    columns.resize(sqliteKeySize(table));
    std::string names, values;
    const auto take = [&](const std::string &column, std::string_view value) {
        names.append(names.empty() ? "" : ", ").append(quotedName(column));
        values.append(values.empty() ? "" : ", ").append(value);
    };
    for (std::size_t i = 0; i < columns.size(); ++i)
        take(columns[i].name, i == 0   ? std::string(sqliteOldLog)
                              : i == 1 ? std::string(sqliteOldOffset)
                                       : quotedName(columns[i].name));
    for (sqlColumn_t &column : otherColumns(database, table.name)) {
        take(column.name, quotedName(column.name));
        columns.push_back(std::move(column));
    }
    database.run(joined({"ALTER TABLE ", name, " RENAME TO ", old}));
    database.run(sqliteCreate(table, columns));
    database.run(
        joined({"INSERT INTO ", name, " (", names, ") SELECT ", values, " FROM ", old, " ORDER BY message_id"}));
    database.run("DROP TABLE " + old);
    for (const std::string &index : indexes)
        database.run(index);
}

} // namespace

void renameColumns(database_t &database) {
    for (const std::string name : {"start", "end"})
        if (hasColumn(database, "problems", name + "_byte"))
            database.run("ALTER TABLE \"problems\" RENAME COLUMN \"" + name + "_byte\" TO " + quotedName(name));
}

void splitKeys(database_t &database, const std::vector<sqliteTable_t> &tables) {
    database.run("PRAGMA legacy_alter_table = ON"); // which leaves what refers to a table as it is
    for (const std::string &view :
         texts(database,
               "SELECT name FROM sqlite_schema WHERE type = 'view' AND sql LIKE '%message_id%' AND "
               "name IN ('latest_state', 'gaps', 'findings') AND ? = ''",
               ""))
        database.run("DROP VIEW " + quotedName(view));
    for (const sqliteTable_t &table : tables)
        if (hasColumn(database, table.name, "message_id"))
            splitKey(database, table);
    database.run("PRAGMA legacy_alter_table = OFF");
}

} // namespace vek::tool
