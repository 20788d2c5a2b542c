// clusterStore_t: the archive's tables on a ClickHouse server, on it alone or distributed over a cluster.
//
// Each row arrives once. The rows of a table are sent in the order of their source in batches that end between
// messages, and the server takes a batch as a whole or not at all; so the largest offset that a table has of a source
// says up to where its rows are there. It is asked for before a source is read, and again when it is not known what
// became of a batch. Should two programs load the same source at the same time all the same, the tables' engine removes
// the second copies some time later.
//
// Owns its connection and what has not been sent. One thread at a time.
#pragma once

#include "tools/vekmsg/load/clickhouse/clusterLogs.hpp"
#include "tools/vekmsg/load/clickhouse/clusterServer.hpp"
#include "vek/inspect/archive/rows.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vek::tool {

/// Rows of one table that go out together.
class rowBatch_t {
public:
    /// Begins a row, whose JSON is to be appended to lines().
    void begin(std::size_t source, std::uint64_t offset);
    std::string &lines() { return lines_; }
    bool isEmpty() const { return pieces_.empty(); }
    /// Leaves out the rows in front of each source's offset.
    void dropBelow(const std::vector<std::uint64_t> &offsets);
    /// Moves the offsets behind all the rows.
    void moveBehind(std::vector<std::uint64_t> &offsets) const;
    void clear();

private:
    struct piece_t { // the rows of one message
        std::size_t source;
        std::uint64_t offset;
        std::size_t begin; // in lines_
    };
    std::string lines_;
    std::vector<piece_t> pieces_;
};

class clusterStore_t final : public inspect::rowSink_t {
public:
    /// Makes the tables that are missing. Throws usageError_t when the server can't be had, or when a table there is
    /// another one.
    explicit clusterStore_t(const std::string &url);

    const std::string &name() const { return server_.name(); }

    /// Logs that will be read: asks at once how far they are there.
    void expect(std::span<const std::string> logs);
    /// The source of a log whose first message this row of `messages` is.
    std::string sourceOf(const std::string &log, const inspect::row_t &first);

    /// The row's source is one that sourceOf() gave.
    void row(const inspect::row_t &row) override;
    /// All rows of a message were given; it may send them. Throws databaseError_t when the server stays away.
    void endMessage();
    /// Sends all there is.
    void commit();
    /// Messages that were not there before.
    std::int64_t messages() const { return messages_; }
    std::int64_t damaged() const { return damaged_; }
    /// Messages on the server, of all sources.
    std::int64_t all();
    bool hasUnsent() const { return size_ > 0; }

private:
    struct table_t {
        const inspect::table_t *declared;
        rowBatch_t batch;
        std::vector<std::uint64_t> wanted; // by source: from which offset on rows are missing
    };

    void makeTables();
    void makeTable(const inspect::table_t &table, const std::string &name, const std::string &engine);
    void compareColumns();
    std::size_t sourceNumber(std::string_view name);
    void askWanted(std::span<table_t> tables, std::span<const std::string> sources);
    void send(table_t &table);

    clusterServer_t server_;
    clusterLogs_t logs_{server_};
    std::vector<table_t> tables_; // by their numbers
    std::vector<std::string> sources_;
    std::unordered_map<std::string, std::size_t> sourceNumbers_;
    std::size_t lastSource_ = 0;
    std::size_t size_ = 0; // of all batches
    std::int64_t messages_ = 0, damaged_ = 0;
};

} // namespace vek::tool
