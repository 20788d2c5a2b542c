// clusterStore_t: the archive on a ClickHouse server, on it alone or distributed over a cluster.
//
// Each row is there once, at every moment. The rows of a table go out in the order of their log, in batches that end
// between messages. A server takes a batch as a whole or not at all, only while the loader's claim of the log counts,
// and of it only rows that are not there. When it is not known what became of a batch, the claim is renewed: then
// nothing of it can come any more, the largest offset of the log says what has come, and the rest is sent again. How
// far a log is loaded stands in the table of sources, apart from the rows: these may be deleted at any time.
//
// Owns its connection and what has not been sent. One thread at a time.
#pragma once

#include "tools/vekmsg/load/archive.hpp"
#include "tools/vekmsg/load/clickhouse/claims.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vek::tool {

/// Rows of one table that go out together.
class rowBatch_t {
public:
    /// Begins a row, whose bytes are to be appended to bytes().
    void begin(std::uint64_t log, std::uint64_t offset);
    std::string &bytes() { return bytes_; }
    bool isEmpty() const { return pieces_.empty(); }
    /// The first offset that there is of each log.
    std::map<std::uint64_t, std::uint64_t> logs() const;
    /// Leaves out the rows in front of each log's offset.
    void dropBelow(const std::map<std::uint64_t, std::uint64_t> &offsets);

private:
    struct piece_t { // the rows of one message
        std::uint64_t log, offset;
        std::size_t begin; // in bytes_
    };
    std::string bytes_;
    std::vector<piece_t> pieces_;
};

class clusterStore_t final : public archive_t {
public:
    /// Makes the tables and columns that are missing. Throws usageError_t when the server can't be had, or when a table
    /// there is another one.
    clusterStore_t(const std::string &url, bool isPatient);

    const std::string &name() const override { return server_.name(); }
    std::vector<inspect::archivedLog_t> find(const inspect::archivedLog_t &log) override;
    void enter(inspect::archivedLog_t &log, bool isNew) override;
    overlap_t overlap(const inspect::archivedLog_t &log, std::span<const std::int64_t> marks) override;
    overlap_t mark(const inspect::archivedLog_t &log, std::span<const std::int64_t> marks) override;
    void begin() override { hasBegun_ = true; }
    bool hasBegun() const override { return hasBegun_; }
    void check(const inspect::archivedLog_t &) override {}
    void row(const inspect::row_t &row) override;
    void save(const inspect::archivedLog_t &log) override;
    void commit(bool isLast) override;
    bool isFull() const override;
    unsigned patience() const override { return 1000; }
    bool canRemove() const override { return false; }
    void removeFrom(std::uint64_t, std::uint64_t) override {}
    std::int64_t all() override;

private:
    using offsets_t = std::map<std::uint64_t, std::uint64_t>; // by log

    struct table_t {
        const inspect::table_t *declared;
        std::string names, structure; // of its columns
        rowBatch_t batch;
        offsets_t wanted; // from which offset on rows are missing; of a log that is not in it, all
    };
    struct entered_t {
        inspect::archivedLog_t log;
        bool isKnown = false, isSettled = false;
    };

    void makeTables();
    void makeTable(const std::string &name, const std::string &create, const std::string &local,
                   const std::vector<inspect::sqlColumn_t> &columns);
    bool hasMessagesOf(std::uint64_t number, std::string_view first);
    void claim(entered_t &entered);
    void askWanted(std::span<table_t> tables, const inspect::archivedLog_t &log);
    void send(table_t &table);

    clusterServer_t server_;
    claims_t claims_{server_};
    std::map<std::string, std::string> engines_, columns_; // of the tables that are there
    std::vector<table_t> tables_;                          // by their numbers
    std::map<std::uint64_t, entered_t> entered_;           // by number
    std::vector<inspect::archivedLog_t> saved_;
    std::string marks_;    // of what is saved, as they go out
    std::size_t size_ = 0; // of all batches
    bool hasBegun_ = false;
};

} // namespace vek::tool
