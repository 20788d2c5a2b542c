// clusterLogs_t: as which source a log is on the server. A log is known again by its first message; another one of the
// same name, as after a rotation, becomes the source "NAME#2", and so on.
//
// One thread at a time.
#pragma once

#include "tools/vekmsg/load/clickhouse/clusterServer.hpp"
#include "vek/inspect/archive/rows.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace vek::tool {

/// What tells the first message of a log from another's.
struct logBeginning_t {
    enum part_t : std::uint8_t { offset, line, id, echoTag, sequenceNumber, second, microsecond, partCount };

    logBeginning_t() = default;
    explicit logBeginning_t(const inspect::row_t &message); ///< of the table `messages`

    std::array<std::int64_t, partCount> parts{}; ///< 0 for what is not there

    bool operator==(const logBeginning_t &) const = default;
};

class clusterLogs_t {
public:
    explicit clusterLogs_t(clusterServer_t &server) : server_(server) {}

    /// Asks for many logs at once, which is faster. Returns the sources that are there.
    std::vector<std::string> expect(std::span<const std::string> names);
    /// The source of the log that has this name and begins so; it is entered when it is new.
    struct found_t {
        std::string source;
        bool isNew;
    };
    found_t find(const std::string &name, const logBeginning_t &beginning);

private:
    void ask(std::span<const std::string> sources);

    clusterServer_t &server_;
    std::unordered_map<std::string, std::optional<logBeginning_t>> known_; // by source; none: it is not there
};

} // namespace vek::tool
