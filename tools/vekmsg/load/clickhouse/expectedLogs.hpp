// expectedLogs_t: logs that begin together. What each of them would ask the server alone is asked for all at once, and
// they are claimed at once; the answers wait here. A log that is not as simple as most, as one that begins like another
// one, has none, and asks for itself.
//
// One thread at a time.
#pragma once

#include "tools/vekmsg/load/archive.hpp"
#include "tools/vekmsg/load/clickhouse/claims.hpp"
#include "tools/vekmsg/load/clickhouse/knownLogs.hpp"

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vek::tool {

/// The number of a log that is in no archive. It follows from what is known of the log and stays when that grows, so
/// that two loaders give the same log the same.
std::uint64_t newNumberOf(const inspect::archivedLog_t &log);

class expectedLogs_t {
public:
    expectedLogs_t(clusterServer_t &server, claims_t &claims) : server_(server), claims_(claims) {}

    void expect(std::span<const archive_t::coming_t> logs);
    void clear() { expected_.clear(); }

    /// The logs that may be this one; nothing when that is to be asked.
    std::optional<std::vector<inspect::archivedLog_t>> find(const inspect::archivedLog_t &log);
    /// Whether it is a new one, claimed under this number, whose messages were in no other log.
    bool isClaimed(const inspect::archivedLog_t &log, std::uint64_t number) const;

private:
    struct expected_t {
        std::deque<std::vector<inspect::archivedLog_t>> found; // one answer behind the other
        std::uint64_t newNumber = 0;
    };
    static std::string keyOf(const inspect::archivedLog_t &log);
    void expectSome(std::span<const archive_t::coming_t> logs);
    void keep(const archive_t::coming_t &one, std::uint64_t newNumber, const knownLogs_t &known);
    std::set<std::uint64_t> doubtful(std::span<const archive_t::coming_t *const> logs);

    clusterServer_t &server_;
    claims_t &claims_;
    std::map<std::string, expected_t> expected_;
};

} // namespace vek::tool
