// The archive's tables in the words of databases.
//
// Every name is quoted, and no value is ever part of a statement. Pure functions.
#pragma once

#include "vek/inspect/archive/tables.hpp"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// What a database of this layout has for PRAGMA user_version and application_id.
inline constexpr int sqliteVersion = 5;
inline constexpr int sqliteApplication = 0x76656B6D; // "vekm"

/// Of a message's number in the tables of older versions, its offset; in front of these bits stands its log's number.
inline constexpr std::string_view sqliteOldLog = "message_id >> 40", sqliteOldOffset = "message_id & 1099511627775";

/// A table of SQLite: one of the archive's, or one that holds a column of lists.
struct sqliteTable_t {
    std::string name;
    const table_t *table = nullptr;
    const column_t *list = nullptr; ///< the column of lists that it holds; null for a table of the archive
    std::size_t depth = 0;          ///< numbers of elements
    /// Whether a row has the columns of the front that are stored. Otherwise the message has them.
    bool hasFront = false;
};

/// The tables that stand for one of the archive's: itself, then one for each column of lists.
std::vector<sqliteTable_t> sqliteTablesOf(const table_t &table);

struct sqlColumn_t {
    std::string name, type;
};

/// All columns of a table in SQLite, with what CREATE TABLE says of them: those of the key, with hasFront the others of
/// the front, and the columns that are no lists (or the list's element).
std::vector<sqlColumn_t> sqliteColumns(const sqliteTable_t &table);
/// How many of them are its key: the log, the offset, and the numbers of elements.
std::size_t sqliteKeySize(const sqliteTable_t &table);

/// INSERT INTO with a parameter a column, for so many rows. One that can't be put in ends the transaction.
std::string sqliteInsert(const sqliteTable_t &table, std::size_t rows);

/// CREATE TABLE for a table, without a semicolon; also of other columns, the key in front.
std::string sqliteCreate(const sqliteTable_t &table, const std::vector<sqlColumn_t> &columns);
std::string sqliteCreate(const sqliteTable_t &table);
/// The same for the logs that were loaded, and how they are found; tables that are there stay.
std::vector<sqlColumn_t> sqliteSourceColumns();
std::string sqliteCreateSources();
std::string sqliteCreateSourceIndexes();
/// The questions that are asked most, as views; what is there under their names stays.
std::string sqliteCreateViews();
/// The same for the marks of their messages.
std::vector<sqlColumn_t> sqliteMarkColumns();
std::string sqliteCreateMarks();

/// The days of logs: where in a log the messages of a day stand. By them a span of time is found, in any table.
std::vector<sqlColumn_t> sqliteDayColumns();
std::string sqliteCreateDays();
std::string sqliteCreateDayIndexes();
/// What puts all days of the messages into it.
std::string sqliteFillDays();

/// All that for the sources and for these tables, a semicolon behind each, and what tells that the database is an
/// archive. Tables that are there stay.
void appendSqliteSchema(std::string &out, std::span<const table_t *const> tables);

/// The same for ClickHouse: a row is there once for its source, offset and elements.
void appendClickhouseSchema(std::string &out, std::span<const table_t *const> tables);

/// The type of a column; of a list in SQLite, that of its elements.
std::string sqliteType(const column_t &column);
std::string clickhouseType(const column_t &column);

/// What a ClickHouse server has, and how its tables are kept.
struct clickhouseServer_t {
    bool isCurrent = false;      ///< it has DateTime64, LowCardinality and codecs, as since version 23
    std::string_view replicated; ///< where in ZooKeeper copies of a table find each other; empty: there is one
};

/// One of these statements, without a semicolon, for a table of any name. Its parts are those of months: all rows of a
/// month may be dropped at once.
std::string clickhouseCreate(const table_t &table, std::string_view name, const clickhouseServer_t &server = {});

/// The day of a row's time, 1970-01-01 when it has none, which the server computes.
inline constexpr std::string_view clickhouseDay = "log_date";
sqlColumn_t clickhouseDayColumn();

/// All columns of a table in ClickHouse, in their order.
std::vector<sqlColumn_t> clickhouseColumns(const table_t &table);

/// The table of logs in ClickHouse: a row a claim of a loader, the latest of which tells how far a log is loaded.
std::vector<sqlColumn_t> clickhouseSourceColumns();
std::string clickhouseCreateSources(std::string_view name, const clickhouseServer_t &server = {});
/// The marks of their messages. One that is there twice is the same one.
std::vector<sqlColumn_t> clickhouseMarkColumns();
std::string clickhouseCreateMarks(std::string_view name, const clickhouseServer_t &server = {});

/// A name in double quotes.
std::string quotedName(std::string_view name);

} // namespace vek::inspect
