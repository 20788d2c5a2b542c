// claims_t: which loader may send rows of which logs. Claims are rows of the table of sources, numbered; the highest
// one of a log counts, and a server takes rows only under it. So what arrives late, or comes from a loader that another
// one has followed, changes nothing.
//
// One thread at a time.
#pragma once

#include "tools/vekmsg/load/clickhouse/clusterServer.hpp"
#include "vek/inspect/archive/sources.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace vek::tool {

class claims_t {
public:
    explicit claims_t(clusterServer_t &server) : server_(server) {}

    /// Logs as the server has them, for which a condition on the table of sources is true.
    std::vector<inspect::archivedLog_t> find(const std::string &condition);

    /// Claims logs, and waits until nothing that was sent under another claim of them is on its way into the tables.
    /// Gives the numbers of those that no other loader has claimed since.
    std::set<std::uint64_t> claim(std::span<const inspect::archivedLog_t> logs);
    /// The same for one log. Throws databaseError_t when another loader has claimed it since.
    void claim(const inspect::archivedLog_t &log);
    /// The same anew for all logs, when it is not known what became of rows that were sent. Throws databaseError_t when
    /// another loader has claimed one of them since.
    void renew(std::uint64_t above = 0);
    /// Throws databaseError_t when another loader has claimed one of the logs.
    void verify();
    /// Says how far logs are loaded.
    void save(std::span<const inspect::archivedLog_t> logs, bool isSettled);

    /// Adds rows to the table of marks.
    void saveMarks(std::string_view rows);

    bool holds(std::uint64_t number) const { return logs_.contains(number); }
    /// Lets go what was settled.
    void release(std::uint64_t number) { logs_.erase(number); }

    /// The logs of a row, as a condition that is true as long as their claims count.
    std::string condition(std::span<const std::uint64_t> numbers) const;
    /// A name for the next query that sends rows.
    std::string nextQueryName();

private:
    void insert(std::span<const inspect::archivedLog_t> logs, bool isSettled);
    void insert(const std::string &table, std::span<const inspect::sqlColumn_t> columns, std::string_view rows);
    std::set<std::uint64_t> claimsOf(std::span<const std::uint64_t> numbers);
    std::map<std::uint64_t, std::uint64_t> latest(std::span<const std::uint64_t> numbers);
    void raise(std::uint64_t above);
    void waitForOthers(const std::set<std::uint64_t> &others);
    std::vector<std::uint64_t> numbers() const;
    [[noreturn]] void refuse() const;

    clusterServer_t &server_;
    std::map<std::uint64_t, inspect::archivedLog_t> logs_; // by number
    std::set<std::uint64_t> own_;                          // all claims that were made
    std::uint64_t claim_ = 0, queries_ = 0;
};

/// "1, 2, 3"
std::string listed(std::span<const std::uint64_t> numbers);

} // namespace vek::tool
