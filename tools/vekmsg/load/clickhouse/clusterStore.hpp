// clusterStore_t: the archive on a ClickHouse server, on it alone or distributed over a cluster.
//
// Each row is there once, at every moment. The rows of a table go out in batches that end between messages. A server
// takes them only while the loader's claim of the log counts, and only those that are not there. When it is not known
// what became of a batch, the claim is renewed, so that nothing of it can come any more, and the very same one is sent
// again. How far a log is loaded stands in the table of sources, apart from the rows: these may be deleted at any time.
//
// Owns its connection and what has not been sent. One thread at a time.
#pragma once

#include "tools/vekmsg/load/archive.hpp"
#include "tools/vekmsg/load/clickhouse/expectedLogs.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace vek::tool {

class clusterStore_t final : public archive_t {
public:
    /// Makes the tables and columns that are missing. Throws usageError_t when the server can't be had, or when a table
    /// there is another one.
    clusterStore_t(const std::string &url, bool isPatient);

    const std::string &name() const override { return server_.name(); }
    void expect(std::span<const coming_t> logs) override { expected_.expect(logs); }
    std::size_t expected() const override { return 50; } // of which another loader is kept away
    std::vector<inspect::archivedLog_t> find(const inspect::archivedLog_t &log) override;
    void enter(inspect::archivedLog_t &log, bool isNew) override;
    std::size_t takeOver(std::span<const inspect::archivedLog_t> logs) override;
    overlap_t overlap(const inspect::archivedLog_t &log, std::span<const std::int64_t> marks) override;
    overlap_t mark(const inspect::archivedLog_t &log, std::span<const std::int64_t> marks) override;
    void begin() override { hasBegun_ = true; }
    bool hasBegun() const override { return hasBegun_; }
    void check(const inspect::archivedLog_t &) override {}
    void row(const inspect::row_t &row) override;
    void save(const inspect::archivedLog_t &log) override;
    void leave(const inspect::archivedLog_t &log) override { left_.insert(log.number); }
    void commit(bool isLast) override;
    bool isFull() const override;
    unsigned patience() const override { return 5000; }
    bool canRemove() const override { return false; }
    void removeFrom(std::uint64_t, std::uint64_t) override {}
    std::vector<inspect::archivedLog_t> logs() override;
    void forget(const inspect::archivedLog_t &log) override;
    std::int64_t removeOlder(const inspect::logTime_t &time) override;
    std::int64_t all() override;

private:
    struct table_t {
        const inspect::table_t *declared;
        std::string names, values, structure, key; // of its columns
        packedRows_t rows;                         // that go out together
        std::size_t count = 0;
        std::map<std::uint64_t, std::uint64_t> logs; // of these, with their first offsets
    };

    static void askAbout(const std::string &table, const std::function<void()> &ask);
    void makeTables();
    using create_t = std::function<std::string(std::string_view name, const inspect::clickhouseServer_t &server)>;
    void makeTable(const std::string &name, const create_t &create, const std::vector<inspect::sqlColumn_t> &columns);
    void checkCluster();
    void refuseOtherKind(const std::string &name, const std::string &local) const;
    void refuseNarrowKeys(const std::string &where);
    void takeFinerTimes(const std::string &where);
    bool hasMessagesOf(std::uint64_t number, std::string_view first);
    void claim(const inspect::archivedLog_t &log);
    inspect::archivedLog_t &entered(std::uint64_t number);
    static std::string placesOf(const table_t &table);
    void send(table_t &table);
    void settle(bool isLast);
    std::vector<std::string> tableNames() const;

    clusterServer_t server_;
    claims_t claims_{server_};
    expectedLogs_t expected_{server_, claims_};
    std::map<std::string, std::string> engines_, columns_;    // of the tables that are there
    std::vector<table_t> tables_;                             // by their numbers
    std::map<std::uint64_t, inspect::archivedLog_t> entered_; // by number
    std::map<std::uint64_t, inspect::archivedLog_t> saved_;
    std::map<std::uint64_t, std::vector<std::int64_t>> news_;   // marks that were not looked for
    std::vector<std::pair<std::int64_t, std::uint64_t>> marks_; // of what is saved, with their logs
    std::set<std::uint64_t> left_;                              // of which nothing more comes
    std::size_t size_ = 0;                                      // of all batches
    std::uint64_t savedAt_ = 0;                                 // milliseconds
    bool hasBegun_ = false;
    bool makesAll_ = false; // tables, on servers of the cluster that lack some
    std::vector<std::uint64_t> forgotten_;
};

} // namespace vek::tool
