// removal_t: takes rows out of the tables of a server, or of all servers of a cluster, each of which is asked itself.
//
// A server writes the parts anew that have such rows, and takes its time for it; what was asked for is done also when
// it is stopped. Called again after it has failed, it goes on. One thread at a time.
#pragma once

#include "tools/vekmsg/load/clickhouse/clusterServer.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vek::tool {

class removal_t {
public:
    /// Throws databaseError_t when a server of the cluster does not answer.
    removal_t(clusterServer_t &server, const std::vector<std::string> &tables);

    /// Rows for which a condition is true, and waits until they are nowhere any more. Gives the number of those in the
    /// first table.
    std::int64_t remove(const std::string &condition);
    /// The same for those that are older than a moment: whole months at once, where the tables are kept in months.
    std::int64_t removeOlder(const std::string &moment);

private:
    std::string stored(const std::string &table) const;
    std::string counting(const std::string &condition, bool isOfAll) const;
    std::int64_t dropMonths(clusterServer_t &server, const std::string &moment, const std::string &condition) const;
    std::string copyOf(clusterServer_t &server) const;
    void order(clusterServer_t &server, const std::string &table, const std::string &condition) const;
    void await(const std::string &condition) const;

    clusterServer_t &server_;
    const std::vector<std::string> tables_;
    const std::vector<std::unique_ptr<clusterServer_t>> all_;
};

/// Whether a log of this number was taken out of a replicated cluster, which does not take the same blocks again.
bool wasRemoved(clusterServer_t &server, std::uint64_t number);
/// A row with such a number is no log's: it stands for rows that were taken away.
constexpr std::uint64_t standInOf(std::uint64_t number) {
    return number & ~std::uint64_t{1};
}

} // namespace vek::tool
