#include "tools/vekmsg/load/sqlite/archiveFile.hpp"

#include "tools/vekmsg/load/sqlite/migration.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <tuple>

namespace vek::tool {

using namespace inspect;

namespace {

constexpr std::int64_t endOfLog = INT64_MAX; // an offset behind all

std::vector<sqliteTable_t> allTables() {
    std::vector<sqliteTable_t> tables;
    for (const table_t &table : archiveTables().all())
        for (sqliteTable_t &one : sqliteTablesOf(table))
            tables.push_back(std::move(one));
    return tables;
}

// "SELECT a, b FROM sources ", and the like.
std::string sourceNames() {
    std::string names;
    for (const sourceColumn_t &column : sourceColumns())
        names.append(names.empty() ? "" : ", ").append(column.name);
    return names;
}

archivedLog_t logIn(const statement_t &row) {
    archivedLog_t log;
    int at = 0;
    for (const sourceColumn_t &column : sourceColumns()) {
        if (column.set != nullptr)
            column.set(log, row.text(at));
        ++at;
    }
    return log;
}

void addKey(rowWriter_t &writer, const row_t &row) {
    writer.add(cell_t::ofInteger(static_cast<std::int64_t>(row.front.number)));
    writer.add(cell_t::ofInteger(static_cast<std::int64_t>(row.front.byteOffset)));
    for (const std::uint32_t element : row.elements)
        writer.add(cell_t::ofInteger(element));
}

} // namespace

std::vector<archivedLog_t> logsIn(database_t &database, const std::string &rest) {
    std::vector<archivedLog_t> logs;
    statement_t rows(database, "SELECT " + sourceNames() + " FROM sources " + rest);
    while (rows.next())
        logs.push_back(logIn(rows));
    return logs;
}

void archiveFile_t::bringUpToDate(const std::string &file) {
    bool isCurrent = false;
    {
        database_t database(file, true);
        isCurrent = database.number("PRAGMA application_id") == sqliteApplication &&
                    database.number("PRAGMA user_version") == sqliteVersion;
    }
    if (!isCurrent)
        archiveFile_t{file};
}

std::unique_ptr<archive_t> openSqlite(const std::string &file) {
    return std::make_unique<archiveFile_t>(file);
}

archiveFile_t::archiveFile_t(const std::string &file) : database_(file), writers_(archiveTables().all().size()) {
    prepareFile();
    transaction_t transaction(database_);
    renameColumns(database_);
    splitKeys(database_, allTables());
    completeSources();
    for (const sqliteTable_t &table : allTables())
        complete(table.name, sqliteCreate(table), sqliteColumns(table), sqliteKeySize(table));
    if (complete("days", sqliteCreateDays(), sqliteDayColumns(), 2))
        database_.run(sqliteFillDays());
    database_.run(sqliteCreateDayIndexes() + sqliteCreateViews());
    if (const std::int64_t version = database_.number("PRAGMA user_version"); version != sqliteVersion) {
        database_.run("PRAGMA user_version = " + std::to_string(sqliteVersion));
        if (version != 0)
            sample();
    }
    transaction.commit();
}

// Others may read while a transaction is written; what is committed outlives this process at any moment.
void archiveFile_t::prepareFile() {
    const bool isEmpty = database_.number("SELECT count(*) FROM sqlite_schema") == 0;
    if (!isEmpty && database_.number("PRAGMA application_id") != sqliteApplication)
        throw usageError_t(database_.file() + " is a database of something else; name a new file");
    const std::int64_t version = database_.number("PRAGMA user_version");
    if (version > sqliteVersion)
        throw usageError_t(database_.file() + " has tables of version " + std::to_string(version) +
                           ", and this vekmsg writes version " + std::to_string(sqliteVersion) +
                           "; load with the newer vekmsg that made it");
    database_.run("PRAGMA page_size = 8192; PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL;"
                  "PRAGMA cache_size = -8192; PRAGMA wal_autocheckpoint = 2000;");
    if (isEmpty)
        database_.run("PRAGMA application_id = " + std::to_string(sqliteApplication));
}

// Makes a table, or adds the columns that it lacks; true: it was made. Its own further ones, and its types, are the
// owner's.
bool archiveFile_t::complete(const std::string &table, const std::string &create,
                             const std::vector<sqlColumn_t> &columns, std::size_t keySize) {
    std::set<std::string> there;
    statement_t names(database_, "SELECT name FROM pragma_table_xinfo(?)");
    names.bind(1, std::string_view(table));
    while (names.next())
        there.insert(names.text(0));
    if (there.empty()) {
        database_.run(create);
        return true;
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const auto &[name, type] = columns[i];
        if (there.contains(name))
            continue;
        if (i < keySize)
            throw usageError_t(inspect::joined({database_.file(), ": the table ", table, " has no column ", name,
                                                "; give the table another name, and load again"}));
        const bool isBare = type.ends_with(" NOT NULL"); // rows that are there have no value for it
        database_.run("ALTER TABLE " + quotedName(table) + " ADD COLUMN " + quotedName(name) + " " +
                      (isBare ? type.substr(0, type.size() - 9) : type));
    }
    return false;
}

void archiveFile_t::completeSources() {
    complete("sources", sqliteCreateSources(), sqliteSourceColumns());
    complete("marks", sqliteCreateMarks(), sqliteMarkColumns());
    database_.run(sqliteCreateSourceIndexes());
    for (const archivedLog_t &log : logsIn(database_, "WHERE first_hash = 0"))
        save(log); // of a version that had no hashes
}

// Those that may have grown since begin alike. Ones that are short are looked for by each of their sizes, as their
// hashes change when they grow.
std::vector<archivedLog_t> archiveFile_t::find(const archivedLog_t &log) {
    std::set<std::int64_t, std::greater<>> numbers;
    const auto look = [&numbers](statement_t &rows, auto value) {
        rows.bind(1, value);
        while (rows.next())
            numbers.insert(rows.integer(0));
        rows.reset();
    };
    statement_t alike(database_, "SELECT source_id FROM sources WHERE first_hash = ?");
    statement_t heads(database_, "SELECT source_id FROM sources WHERE head_hash = ? AND length(first_bytes) < 4096");
    statement_t named(database_, "SELECT source_id FROM sources WHERE source = ? ORDER BY source_id DESC LIMIT 20");
    look(alike, log.firstHash());
    look(named, std::string_view(log.name));
    if (log.headHash() != 0)
        look(heads, log.headHash());
    if (log.first.size() < archivedLog_t::firstBytes) {
        statement_t longer(database_, "SELECT source_id FROM sources WHERE substr(first_bytes, 1, 256) >= ?1 AND "
                                      "substr(first_bytes, 1, 256) < ?2 AND substr(first_bytes, 1, ?3) = ?4 LIMIT 20");
        const std::string head = log.first.substr(0, archivedLog_t::tellingBytes);
        const std::string end = head + std::string(archivedLog_t::tellingBytes, '\xFF');
        longer.bindBytes(1, head);
        longer.bindBytes(2, end);
        longer.bind(3, static_cast<std::int64_t>(log.first.size()));
        longer.bindBytes(4, log.first);
        while (longer.next())
            numbers.insert(longer.integer(0));
    }
    for (std::size_t size = 1; size < std::min(log.first.size(), archivedLog_t::tellingBytes); ++size)
        look(alike, static_cast<std::int64_t>(hashOf(std::string_view(log.first).substr(0, size))));
    std::vector<archivedLog_t> found;
    statement_t row(database_, "SELECT " + sourceNames() + " FROM sources WHERE source_id = ?");
    for (const std::int64_t number : numbers) {
        row.bind(1, number);
        if (row.next())
            found.push_back(logIn(row));
        row.reset();
    }
    std::stable_partition(found.begin(), found.end(), [&](const auto &one) { return one.name == log.name; });
    return found;
}

void archiveFile_t::enter(archivedLog_t &log, bool) {
    if (log.number != 0)
        return;
    log.number = static_cast<std::uint64_t>(database_.number("SELECT coalesce(max(source_id), 0) + 1 FROM sources"));
    save(log);
}

archive_t::overlap_t archiveFile_t::overlap(const archivedLog_t &log, std::span<const std::int64_t> marks) {
    std::map<std::int64_t, std::size_t> counts;
    statement_t find(database_, "SELECT source_id FROM marks WHERE mark = ? AND source_id <> ?");
    find.bind(2, static_cast<std::int64_t>(log.number));
    for (const std::int64_t mark : marks) {
        find.bind(1, mark);
        if (find.next())
            ++counts[find.integer(0)];
        find.reset();
    }
    overlap_t most;
    std::int64_t number = 0;
    for (const auto &[other, count] : counts)
        if (count > most.count)
            std::tie(number, most.count) = std::tie(other, count);
    for (archivedLog_t &other : logsIn(database_, "WHERE source_id = " + std::to_string(number)))
        most.log = std::move(other);
    return most;
}

// Those that are there already are its own, or another log's.
archive_t::overlap_t archiveFile_t::mark(const archivedLog_t &log, std::span<const std::int64_t> marks) {
    std::vector<std::int64_t> there;
    statement_t insert(database_, "INSERT OR IGNORE INTO marks (mark, source_id) VALUES (?, ?)");
    insert.bind(2, static_cast<std::int64_t>(log.number));
    for (const std::int64_t mark : marks) {
        insert.bind(1, mark);
        insert.run();
        if (database_.changes() == 0)
            there.push_back(mark);
    }
    return there.empty() ? overlap_t() : overlap(log, there);
}

void archiveFile_t::begin() {
    transaction_.emplace(database_);
    atBegin_ = counts_.messages;
}

void archiveFile_t::check(const archivedLog_t &log) {
    statement_t row(database_, "SELECT loaded_bytes FROM sources WHERE source_id = ?");
    row.bind(1, static_cast<std::int64_t>(log.number));
    if (!row.next() || static_cast<std::uint64_t>(row.integer(0)) != log.position.offset)
        throw usageError_t("another vekmsg loads " + log.name + " into " + database_.file() +
                           " at the same time; let it");
}

void archiveFile_t::save(const archivedLog_t &log) {
    std::string parameters, updates;
    for (const sourceColumn_t &column : sourceColumns()) {
        parameters.append(parameters.empty() ? "?" : ", ?");
        updates.append(updates.empty() ? "" : ", ").append(column.name).append(" = excluded.").append(column.name);
    }
    statement_t insert(database_, "INSERT INTO sources (" + sourceNames() + ") VALUES (" + parameters +
                                      ") ON CONFLICT (source_id) DO UPDATE SET " + updates);
    int parameter = 0;
    for (const sourceColumn_t &column : sourceColumns()) {
        const cell_t cell = column.get(log);
        if (column.sqlite.starts_with("BLOB"))
            insert.bindBytes(++parameter, cell.text);
        else
            insert.bind(++parameter, cell);
    }
    insert.run();
}

void archiveFile_t::flush() {
    for (std::vector<rowWriter_t> &writers : writers_)
        for (rowWriter_t &writer : writers)
            writer.flush();
    days_.flush();
}

// What the tables hold, from some rows of each: by that SQLite chooses where a question of several tables begins.
void archiveFile_t::sample() {
    database_.run("PRAGMA analysis_limit = 400; ANALYZE");
    sampled_ = counts_.messages;
}

void archiveFile_t::commit(bool) {
    flush();
    constexpr std::int64_t few = 100, growth = 8;
    if (counts_.messages >= std::max(few, sampled_ * growth))
        sample();
    transaction_->commit();
    transaction_.reset();
}

// Few enough that others soon see them, and enough that their cost is spread.
bool archiveFile_t::isFull() const {
    constexpr std::int64_t messagesAtOnce = 20'000;
    return counts_.messages - atBegin_ >= messagesAtOnce;
}

std::vector<rowWriter_t> &archiveFile_t::writersOf(const table_t &table) {
    std::vector<rowWriter_t> &writers = writers_[table.number];
    if (writers.empty())
        for (sqliteTable_t &one : sqliteTablesOf(table))
            writers.emplace_back(database_, std::move(one));
    return writers;
}

void archiveFile_t::row(const row_t &row) {
    if (&row.table == &archiveTables().messages())
        beginMessage(row);
    std::vector<rowWriter_t> &writers = writersOf(row.table);
    insertRow(writers.front(), row);
    std::size_t lists = 0;
    for (std::size_t i = 0; i < row.cells.size() && lists + 1 < writers.size(); ++i)
        if (row.table.columns[i].isList)
            insertList(writers[++lists], row, row.cells[i]);
}

// Its first row: what stands in front is the same in all of them.
void archiveFile_t::beginMessage(const row_t &row) {
    ++counts_.messages;
    counts_.damaged += row.isDamaged ? 1 : 0;
    days_.add(row.front);
    frontRooms_.resize(frontColumns().size());
    front_.clear();
    for (const frontColumn_t &column : frontColumns())
        if (column.sqlite.value != nullptr)
            front_.push_back(column.sqlite.value(row, frontRooms_[front_.size()]));
}

void archiveFile_t::insertRow(rowWriter_t &writer, const row_t &row) {
    if (row.table.depth > 0)
        addKey(writer, row);
    else
        for (const cell_t &cell : front_)
            writer.add(cell);
    for (std::size_t i = 0; i < row.cells.size(); ++i)
        if (!row.table.columns[i].isList)
            writer.add(row.cells[i]);
    writer.endRow();
}

void archiveFile_t::insertList(rowWriter_t &writer, const row_t &row, const cell_t &list) {
    if (list.kind != cell_t::kind_t::list)
        return;
    std::int64_t index = 0;
    for (const cell_t &element : row.list(list)) {
        addKey(writer, row);
        writer.add(cell_t::ofInteger(index++));
        writer.add(element);
        writer.endRow();
    }
}

void archiveFile_t::removeFrom(std::uint64_t source, std::uint64_t offset) {
    flush();
    const auto first = static_cast<std::int64_t>(offset);
    statement_t count(database_, "SELECT count(*), coalesce(sum(damaged), 0) FROM messages WHERE source_id = ? AND "
                                 "byte_offset >= ?");
    count.bind(1, static_cast<std::int64_t>(source));
    count.bind(2, first);
    if (count.next()) {
        counts_.messages -= count.integer(0);
        counts_.damaged -= count.integer(1);
    }
    removeBetween(source, first, endOfLog);
}

void archiveFile_t::removeBetween(std::uint64_t source, std::int64_t first, std::int64_t end) {
    for (const sqliteTable_t &table : allTables()) {
        statement_t remove(database_, "DELETE FROM " + quotedName(table.name) +
                                          " WHERE source_id = ? AND byte_offset >= ? AND byte_offset < ?");
        remove.bind(1, static_cast<std::int64_t>(source));
        remove.bind(2, first);
        remove.bind(3, end);
        remove.run();
    }
    days_.narrow(source, first, end);
}

void archiveFile_t::forget(const archivedLog_t &log) {
    flush();
    removeBetween(log.number, 0, endOfLog);
    for (const char *table : {"marks", "sources"})
        database_.run(joined({"DELETE FROM ", table, " WHERE source_id = ", std::to_string(log.number)}));
}

std::int64_t archiveFile_t::removeOlder(const logTime_t &time) {
    std::string limit;
    time.appendTo(limit, ' ', logTime_t::fraction_t::always);
    std::int64_t count = 0;
    for (const archivedLog_t &log : logs())
        count += removeOlder(log.number, limit);
    return count;
}

// A log's messages up to the first one that stays, also those among them without a time.
std::int64_t archiveFile_t::removeOlder(std::uint64_t source, const std::string &time) {
    const auto log = static_cast<std::int64_t>(source);
    statement_t young(database_, "SELECT byte_offset FROM messages WHERE source_id = ? AND log_time >= ? "
                                 "ORDER BY byte_offset LIMIT 1");
    young.bind(1, log);
    young.bind(2, std::string_view(time));
    const std::int64_t stays = young.next() ? young.integer(0) : endOfLog;
    statement_t timed(database_,
                      "SELECT count(*), count(log_time) FROM messages WHERE source_id = ? AND byte_offset < ?");
    timed.bind(1, log);
    timed.bind(2, stays);
    if (!timed.next() || timed.integer(1) == 0)
        return 0; // nobody knows how old they are
    removeBetween(source, 0, stays);
    return timed.integer(0);
}

} // namespace vek::tool
