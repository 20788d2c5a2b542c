// archiveReader_t: what an archive holds, whichever it is: its logs, and of one log messages and rows, piece by piece.
//
// What it does throws databaseError_t. One thread at a time.
#pragma once

#include "tools/vekmsg/load/databaseError.hpp"
#include "vek/inspect/archive/messageOfRows.hpp"
#include "vek/inspect/archive/sources.hpp"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vek::tool {

/// Rows with the texts that they view.
struct keptRows_t {
    std::vector<inspect::keptRow_t> rows;
    std::deque<std::string> texts;

    inspect::cell_t text(std::string bytes) { return inspect::cell_t::ofText(texts.emplace_back(std::move(bytes))); }
};

class archiveReader_t {
public:
    struct message_t {
        std::uint64_t offset = 0, line = 0;
        std::optional<std::int32_t> id, echoTag, sequenceNumber;
        std::optional<inspect::logTime_t> time;
        bool isDamaged = false;
        std::optional<std::string> text; ///< nothing: its rows say all of it
    };

    virtual ~archiveReader_t() = default;

    virtual const std::string &name() const = 0; ///< for people
    virtual std::vector<inspect::archivedLog_t> logs() = 0;
    /// A log's messages from an offset on, in their order, at most so many.
    virtual std::vector<message_t> messages(std::uint64_t log, std::uint64_t from, std::size_t most) = 0;
    /// The rows of a log in a table with offsets between these, the first and the last included, in the order of
    /// offsets and elements. Texts have the bytes that stood in the log.
    virtual void read(const inspect::table_t &table, std::uint64_t log, std::uint64_t first, std::uint64_t last,
                      keptRows_t &rows) = 0;
};

std::unique_ptr<archiveReader_t> openSqliteReader(const std::string &file);
std::unique_ptr<archiveReader_t> openClusterReader(const std::string &url);

} // namespace vek::tool
