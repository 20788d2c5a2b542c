#include "tools/vekmsg/load/clickhouse/knownLogs.hpp"

#include "tools/vekmsg/load/clickhouse/clusterServer.hpp"
#include "vek/inspect/words/words.hpp"

namespace vek::tool {

using inspect::archivedLog_t;

namespace {

void list(std::string &out, const std::string &word) {
    out.append(out.empty() ? "" : ", ").append(word);
}

bool isShort(const archivedLog_t &log) {
    return log.first.size() < archivedLog_t::tellingBytes;
}

bool canGrow(const archivedLog_t &log) {
    return log.first.size() < archivedLog_t::firstBytes;
}

} // namespace

knownLogs_t::knownLogs_t(std::vector<archivedLog_t> logs) {
    for (archivedLog_t &log : logs) {
        const std::int64_t first = log.firstHash(), head = log.headHash();
        known_.push_back({std::move(log), first, head});
    }
}

// Those that may have grown since begin alike; one that is short itself has no hash that stays when it grows.
std::string knownLogs_t::condition(std::span<const archivedLog_t> logs) {
    std::string firsts, names, heads, growing, alike;
    for (const archivedLog_t &log : logs) {
        list(firsts, std::to_string(log.firstHash()));
        list(names, sqlText(log.name));
        if (isShort(log))
            alike.append(inspect::joined(
                {" OR substring(first_bytes, 1, ", std::to_string(log.first.size()), ") = ", sqlText(log.first)}));
        else
            list(canGrow(log) ? growing : heads, std::to_string(log.headHash()));
    }
    if (!growing.empty())
        alike.append(" OR head_hash IN (" + growing + ")");
    if (!heads.empty())
        alike.append(inspect::joined({" OR (head_hash IN (", heads, ") AND length(first_bytes) < 4096)"}));
    return inspect::joined({"first_hash IN (", firsts, ") OR source IN (", names,
                            ") OR (head_hash = 0 AND length(first_bytes) BETWEEN 1 AND 255)", alike});
}

std::vector<archivedLog_t> knownLogs_t::like(const archivedLog_t &log) const {
    const std::int64_t first = log.firstHash(), head = log.headHash();
    std::vector<archivedLog_t> found;
    for (const auto &[known, knownFirst, knownHead] : known_) {
        const bool isAlike =
            isShort(log) ? known.first.starts_with(log.first) : knownHead == head && (canGrow(log) || canGrow(known));
        if (known.name == log.name || knownFirst == first || isAlike || (isShort(known) && !known.first.empty()))
            found.push_back(known);
    }
    return found;
}

} // namespace vek::tool
