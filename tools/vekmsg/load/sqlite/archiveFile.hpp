// archiveFile_t: an SQLite database with the archive's tables, and rows going into them.
//
// Everything throws usageError_t. One thread at a time.
#pragma once

#include "tools/vekmsg/load/sqlite/database.hpp"
#include "vek/inspect/archive/rows.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace vek::tool {

class archiveFile_t final : public inspect::rowSink_t {
public:
    /// Opens a database of these tables, or makes one. Throws when the file is something else.
    explicit archiveFile_t(const std::string &file);

    database_t &database() { return database_; }

    /// The rows that follow are of this log.
    void setSource(std::int64_t source) { source_ = source; }
    void row(const inspect::row_t &row) override;

    /// Takes away the messages of a log from an offset on.
    void removeFrom(std::int64_t source, std::uint64_t offset);

    struct counts_t {
        std::int64_t messages = 0, damaged = 0;
    };
    /// Messages that came, less those that were taken away.
    const counts_t &counts() const { return counts_; }

    static std::int64_t messageId(std::int64_t source, std::uint64_t offset) {
        return (source << inspect::sqliteOffsetBits) + static_cast<std::int64_t>(offset);
    }

private:
    // What one of the archive's tables is written with.
    struct writer_t {
        std::optional<statement_t> insert;
        std::vector<statement_t> lists; // in the order of the columns of lists
    };

    void prepareFile();
    void makeTables();
    void compareTables();
    writer_t &writerOf(const inspect::table_t &table);
    void insertRow(statement_t &insert, const inspect::row_t &row);
    void insertList(statement_t &insert, const inspect::row_t &row, const inspect::cell_t &list);
    int bindFront(statement_t &insert, const inspect::row_t &row);
    void bindCell(statement_t &insert, int parameter, const inspect::cell_t &cell);

    database_t database_;
    std::vector<writer_t> writers_; // by the tables' numbers
    std::int64_t source_ = 0, messageId_ = 0;
    counts_t counts_;
    std::vector<std::string> frontRooms_; // of the row in hand
    std::deque<std::string> rooms_;       // for texts beyond ASCII
    std::size_t roomCount_ = 0;
};

} // namespace vek::tool
