// logCursor_t: one log of an archive, message by message, as it stood. Owns the piece of it that is in hand.
#pragma once

#include "tools/vekmsg/load/archiveReader.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vek::tool {

class logCursor_t {
public:
    /// With a table, rows of it are read instead of the log's text. `most`: messages in a piece.
    logCursor_t(archiveReader_t &archive, inspect::archivedLog_t log, const inspect::table_t *table, std::size_t most);

    const inspect::archivedLog_t &log() const { return log_; }
    bool isAtEnd() const { return at_ == messages_.size(); }
    /// The message in hand, or its latest predecessor's time when it has none.
    const archiveReader_t::message_t &message() const { return messages_[at_]; }
    const std::optional<inspect::logTime_t> &time() const { return time_; }

    /// What stands in front of the message in hand, and the message. Of a log whose words between messages are not kept
    /// it is the time, and a line is ended behind the message.
    void appendText(std::string &out);
    /// What stands behind the last message.
    void appendEnd(std::string &out);
    std::span<const inspect::keptRow_t> rows() const { return rowsOf(*table_); }
    void next();

    /// Bytes of the log that the archive has no more; what stood in front of appendText() and appendEnd().
    std::uint64_t missing() const { return missing_; }

private:
    void readPiece();
    void take();
    std::span<const inspect::keptRow_t> rowsOf(const inspect::table_t &table) const;
    bool isInTail() const { return table_ == nullptr && message().offset >= log_.position.offset; }

    archiveReader_t &archive_;
    inspect::archivedLog_t log_;
    const inspect::table_t *table_;
    std::size_t most_;
    std::vector<archiveReader_t::message_t> messages_;
    std::map<const inspect::table_t *, keptRows_t> rows_;
    std::size_t at_ = 0, front_ = 0;
    std::uint64_t from_ = 0; // of the next piece
    std::uint64_t told_ = 0; // of the log, where what comes out stands
    std::uint64_t missing_ = 0;
    std::optional<inspect::logTime_t> time_;
};

} // namespace vek::tool
