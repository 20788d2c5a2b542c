// archiveFile_t: an SQLite database with the archive's tables, and rows going into them.
//
// Everything throws usageError_t. One thread at a time.
#pragma once

#include "tools/vekmsg/load/archive.hpp"
#include "tools/vekmsg/load/sqlite/database.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace vek::tool {

/// Rows of the table of sources, those of what stands behind its name in a SELECT.
std::vector<inspect::archivedLog_t> logsIn(database_t &database, const std::string &rest);

class archiveFile_t final : public archive_t {
public:
    /// Opens a database of these tables, or makes one; what an older version or somebody else made lacks is added.
    /// Throws when the file is something else.
    explicit archiveFile_t(const std::string &file);

    /// Adds what an archive lacks that an older version made. Throws when the file is something else.
    static void bringUpToDate(const std::string &file);

    database_t &database() { return database_; }

    const std::string &name() const override { return database_.file(); }
    std::vector<inspect::archivedLog_t> find(const inspect::archivedLog_t &log) override;
    void enter(inspect::archivedLog_t &log, bool isNew) override;
    overlap_t overlap(const inspect::archivedLog_t &log, std::span<const std::int64_t> marks) override;
    overlap_t mark(const inspect::archivedLog_t &log, std::span<const std::int64_t> marks) override;
    void begin() override;
    bool hasBegun() const override { return transaction_.has_value(); }
    void check(const inspect::archivedLog_t &log) override;
    void row(const inspect::row_t &row) override;
    void save(const inspect::archivedLog_t &log) override;
    void commit(bool isLast) override;
    bool isFull() const override;
    unsigned patience() const override { return 0; }
    bool canRemove() const override { return true; }
    void removeFrom(std::uint64_t source, std::uint64_t offset) override;
    std::vector<inspect::archivedLog_t> logs() override { return logsIn(database_, "ORDER BY source_id"); }
    void forget(const inspect::archivedLog_t &log) override;
    std::int64_t removeOlder(const inspect::logTime_t &time) override;
    std::int64_t all() override { return database_.number("SELECT count(*) FROM messages"); }

    static std::int64_t messageId(std::uint64_t source, std::uint64_t offset) {
        return (static_cast<std::int64_t>(source) << inspect::sqliteOffsetBits) + static_cast<std::int64_t>(offset);
    }

private:
    // What one of the archive's tables is written with.
    struct writer_t {
        std::optional<statement_t> insert;
        std::vector<statement_t> lists; // in the order of the columns of lists
    };

    void prepareFile();
    void renameColumns();
    void complete(const std::string &table, const std::string &create,
                  const std::vector<inspect::sqlColumn_t> &columns);
    void completeSources();
    writer_t &writerOf(const inspect::table_t &table);
    void beginMessage(const inspect::row_t &row);
    void insertRow(statement_t &insert, const inspect::row_t &row);
    void insertList(statement_t &insert, const inspect::row_t &row, const inspect::cell_t &list);
    std::int64_t removeOlder(std::uint64_t source, const std::string &time);
    void removeBetween(std::int64_t first, std::int64_t end);
    int bindFront(statement_t &insert, const inspect::row_t &row);
    void bindCell(statement_t &insert, int parameter, const inspect::cell_t &cell);
    static void bindWellFormed(statement_t &insert, int parameter, const inspect::cell_t &cell);

    database_t database_;
    std::vector<writer_t> writers_; // by the tables' numbers
    std::optional<transaction_t> transaction_;
    std::int64_t messageId_ = 0, atBegin_ = 0;
    std::vector<inspect::cell_t> front_;  // of the message in hand
    std::vector<std::string> frontRooms_; // for its texts
    std::deque<std::string> rooms_;       // for texts beyond ASCII
    std::size_t roomCount_ = 0;
};

} // namespace vek::tool
