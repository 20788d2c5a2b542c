// archiveFile_t: an SQLite database with the archive's tables, and rows going into them.
//
// Everything throws usageError_t. One thread at a time.
#pragma once

#include "tools/vekmsg/load/archive.hpp"
#include "tools/vekmsg/load/sqlite/days.hpp"
#include "tools/vekmsg/load/sqlite/rowWriter.hpp"

#include <cstdint>
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
    /// Puts rows that wait for others into their tables; removing and committing do so, too. Throws databaseError_t.
    void flush();

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

private:
    void prepareFile();
    bool complete(const std::string &table, const std::string &create, const std::vector<inspect::sqlColumn_t> &columns,
                  std::size_t keySize = 1);
    void completeSources();
    std::vector<rowWriter_t> &writersOf(const inspect::table_t &table);
    void beginMessage(const inspect::row_t &row);
    void insertRow(rowWriter_t &writer, const inspect::row_t &row);
    static void insertList(rowWriter_t &writer, const inspect::row_t &row, const inspect::cell_t &list);
    void sample();
    std::int64_t removeOlder(std::uint64_t source, const std::string &time);
    void removeBetween(std::uint64_t source, std::int64_t first, std::int64_t end);

    database_t database_;
    // By the tables' numbers; behind a table's own one those of its columns of lists, in their order.
    std::vector<std::vector<rowWriter_t>> writers_;
    days_t days_{database_};
    std::optional<transaction_t> transaction_;
    std::int64_t atBegin_ = 0, sampled_ = 0;
    std::vector<inspect::cell_t> front_;  // of the message in hand
    std::vector<std::string> frontRooms_; // for its texts
};

} // namespace vek::tool
