#include "tools/vekmsg/load/sqlite/migration.hpp"

#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <utility>

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

// All but the old key, what was computed from it, and what the new one has, as they are.
std::vector<sqlColumn_t> otherColumns(database_t &database, const std::string &table,
                                      const std::vector<sqlColumn_t> &key) {
    std::vector<sqlColumn_t> columns;
    statement_t rows(database, "SELECT name, type || CASE WHEN \"notnull\" THEN ' NOT NULL' ELSE '' END || "
                               "coalesce(' DEFAULT ' || dflt_value, '') FROM pragma_table_xinfo(?) "
                               "WHERE hidden = 0 AND name <> 'message_id'");
    rows.bind(1, std::string_view(table));
    while (rows.next())
        if (std::string name = rows.text(0);
            std::none_of(key.begin(), key.end(), [&name](const sqlColumn_t &column) { return column.name == name; }))
            columns.push_back({std::move(name), rows.text(1)});
    return columns;
}

void splitKey(database_t &database, const sqliteTable_t &table) {
    const std::string name = quotedName(table.name), old = quotedName(table.name + " of version 4");
    const std::string added = "FROM sqlite_schema WHERE type IN ('index', 'trigger') AND tbl_name = ? AND sql ";
    const std::vector<std::string> kept =
        texts(database, joined({"SELECT sql ", added, "NOT LIKE '%message_id%'"}), table.name);
    for (const std::string &gone :
         texts(database, joined({"SELECT type || ' ' || name ", added, "LIKE '%message_id%'"}), table.name))
        complain(joined({"the ", gone, " is gone: it names message_id, in whose place source_id and byte_offset are"}));
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
    for (sqlColumn_t &column : otherColumns(database, table.name, columns)) {
        take(column.name, quotedName(column.name));
        columns.push_back(std::move(column));
    }
    database.run(joined({"ALTER TABLE ", name, " RENAME TO ", old}));
    database.run(sqliteCreate(table, columns));
    database.run(
        joined({"INSERT INTO ", name, " (", names, ") SELECT ", values, " FROM ", old, " ORDER BY message_id"}));
    database.run("DROP TABLE " + old);
    for (const std::string &one : kept)
        database.run(one);
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
