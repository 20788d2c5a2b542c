#include "tools/vekmsg/load/sqlite/archiveFile.hpp"

#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/forms/forms.hpp"

namespace vek::tool {

using namespace inspect;

namespace {

std::vector<sqliteTable_t> allTables() {
    std::vector<sqliteTable_t> tables;
    for (const table_t &table : archiveTables().all())
        for (sqliteTable_t &one : sqliteTablesOf(table))
            tables.push_back(std::move(one));
    return tables;
}

constexpr const char *startAnew = "; load the logs into a new file: vekmsg load --into NEW.sqlite LOG...";

} // namespace

archiveFile_t::archiveFile_t(const std::string &file) : database_(file), writers_(archiveTables().all().size()) {
    prepareFile();
    transaction_t transaction(database_);
    if (database_.number("SELECT count(*) FROM sqlite_schema") == 0)
        makeTables();
    else
        compareTables();
    transaction.commit();
}

// Others may read while a transaction is written; what is committed outlives this process at any moment.
void archiveFile_t::prepareFile() {
    const std::int64_t application = database_.number("PRAGMA application_id");
    if (application != sqliteApplication && database_.number("SELECT count(*) FROM sqlite_schema") > 0)
        throw usageError_t(database_.file() + " is a database of something else; name a new file");
    database_.run("PRAGMA page_size = 8192; PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL;"
                  "PRAGMA cache_size = -12288; PRAGMA wal_autocheckpoint = 2000;");
}

void archiveFile_t::makeTables() {
    database_.run(sqliteCreateSources());
    for (const sqliteTable_t &table : allTables())
        database_.run(sqliteCreate(table));
    database_.run("PRAGMA user_version = " + std::to_string(sqliteVersion));
    database_.run("PRAGMA application_id = " + std::to_string(sqliteApplication));
}

// SQLite keeps the words that a table was made with.
void archiveFile_t::compareTables() {
    if (database_.number("PRAGMA user_version") == 1) // which had other names for the places of problems
        database_.run("ALTER TABLE \"problems\" RENAME COLUMN \"start_byte\" TO \"start\";"
                      "ALTER TABLE \"problems\" RENAME COLUMN \"end_byte\" TO \"end\"; PRAGMA user_version = 2;");
    const std::int64_t version = database_.number("PRAGMA user_version");
    if (version != sqliteVersion)
        throw usageError_t(database_.file() + " has tables of version " + std::to_string(version) +
                           ", and this vekmsg writes version " + std::to_string(sqliteVersion) + startAnew);
    const auto compare = [&](const std::string &name, const std::string &wanted) {
        statement_t found(database_, "SELECT sql FROM sqlite_schema WHERE type = 'table' AND name = ?");
        found.bind(1, std::string_view(name));
        if (!found.next())
            database_.run(wanted); // of a message that is new
        else if (found.text(0) != wanted)
            throw usageError_t(database_.file() + ": the table " + name +
                               " has other columns than this version of vekmsg writes" + startAnew);
    };
    compare("sources", sqliteCreateSources());
    for (const sqliteTable_t &table : allTables())
        compare(table.name, sqliteCreate(table));
}

archiveFile_t::writer_t &archiveFile_t::writerOf(const table_t &table) {
    writer_t &writer = writers_[table.number];
    if (!writer.insert)
        for (const sqliteTable_t &one : sqliteTablesOf(table)) {
            if (one.list == nullptr)
                writer.insert.emplace(database_, sqliteInsert(one));
            else
                writer.lists.emplace_back(database_, sqliteInsert(one));
        }
    return writer;
}

void archiveFile_t::row(const row_t &row) {
    if (row.front.byteOffset >> sqliteOffsetBits != 0)
        throw usageError_t(std::string(row.front.source) + " has more than a terabyte; split it, and load the pieces");
    roomCount_ = 0;
    messageId_ = messageId(source_, row.front.byteOffset);
    if (&row.table == &archiveTables().messages()) {
        ++counts_.messages;
        counts_.damaged += row.isDamaged ? 1 : 0;
    }
    writer_t &writer = writerOf(row.table);
    insertRow(*writer.insert, row);
    std::size_t lists = 0;
    for (std::size_t i = 0; i < row.cells.size() && lists < writer.lists.size(); ++i)
        if (row.table.columns[i].isList)
            insertList(writer.lists[lists++], row, row.cells[i]);
}

void archiveFile_t::insertRow(statement_t &insert, const row_t &row) {
    int parameter = bindFront(insert, row);
    for (std::size_t i = 0; i < row.cells.size(); ++i)
        if (!row.table.columns[i].isList)
            bindCell(insert, ++parameter, row.cells[i]);
    insert.run();
}

void archiveFile_t::insertList(statement_t &insert, const row_t &row, const cell_t &list) {
    if (list.kind != cell_t::kind_t::list)
        return;
    int parameter = 0;
    insert.bind(++parameter, messageId_);
    for (const std::uint32_t element : row.elements)
        insert.bind(++parameter, std::int64_t{element});
    std::int64_t index = 0;
    for (const cell_t &element : row.list(list)) {
        insert.bind(parameter + 1, index++);
        bindCell(insert, parameter + 2, element);
        insert.run();
    }
}

// Returns the last parameter that was bound.
int archiveFile_t::bindFront(statement_t &insert, const row_t &row) {
    int parameter = 0;
    insert.bind(++parameter, messageId_);
    for (const std::uint32_t element : row.elements)
        insert.bind(++parameter, std::int64_t{element});
    if (row.table.depth > 0)
        return parameter;
    frontRooms_.resize(frontColumns().size());
    auto room = frontRooms_.begin();
    for (const frontColumn_t &column : frontColumns())
        if (column.sqlite.value != nullptr)
            bindCell(insert, ++parameter, column.sqlite.value(row, *room++));
    return parameter;
}

void archiveFile_t::bindCell(statement_t &insert, int parameter, const cell_t &cell) {
    switch (cell.kind) {
    case cell_t::kind_t::integer:
        return insert.bind(parameter, cell.integer);
    case cell_t::kind_t::real:
        return insert.bind(parameter, cell.real);
    case cell_t::kind_t::text:
        if (roomCount_ == rooms_.size())
            rooms_.emplace_back();
        if (const std::string_view text = wellFormed(cell.text, rooms_[roomCount_]); text.data() != cell.text.data()) {
            ++roomCount_;
            return insert.bind(parameter, text);
        }
        return insert.bind(parameter, cell.text);
    default:
        insert.bindNull(parameter);
    }
}

void archiveFile_t::removeFrom(std::int64_t source, std::uint64_t offset) {
    constexpr const char *where = " WHERE \"message_id\" >= ? AND \"message_id\" < ?";
    const auto bound = [&](const std::string &sql) {
        statement_t statement(database_, sql + where);
        statement.bind(1, messageId(source, offset));
        statement.bind(2, messageId(source + 1, 0));
        return statement;
    };
    statement_t count = bound("SELECT count(*), coalesce(sum(\"damaged\"), 0) FROM \"messages\"");
    if (count.next()) {
        counts_.messages -= count.integer(0);
        counts_.damaged -= count.integer(1);
    }
    for (const sqliteTable_t &table : allTables())
        bound("DELETE FROM " + quotedName(table.name)).run();
}

} // namespace vek::tool
