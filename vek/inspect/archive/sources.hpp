// The table of the logs that an archive holds, and how far each of them is loaded: one list of columns for every
// database. It stands apart from the messages: what is deleted of these is not loaded again.
#pragma once

#include "vek/inspect/archive/lineFront.hpp"
#include "vek/inspect/archive/rows.hpp"
#include "vek/inspect/log/logScanner.hpp"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace vek::inspect {

/// A log as an archive knows it.
struct archivedLog_t {
    /// Bytes that tell one log from another, and fewer that are not alike by chance.
    static constexpr std::size_t firstBytes = 4096, tellingBytes = 256;

    struct message_t {
        std::uint64_t offset = 0, size = 0, hash = 0;
    };

    std::uint64_t number = 0;       ///< that its rows carry; 0: it is in no archive yet
    std::string name;               ///< of the file when it was first seen, or what the user calls it
    std::string device, site, host; ///< as the user says
    std::string first;              ///< at most firstBytes
    logPosition_t position;         ///< where to go on
    message_t last;       ///< that was loaded last: it must still be where it was. Of size 0 when there is none
    bool hasTail = false; ///< there are rows behind the position, made of what stood at the log's end
    std::string loadedAt, loadedBy;

    /// Every byte of it is kept, not its messages alone, as by older versions.
    bool isWhole = false;
    usualFronts_t fronts; ///< what stands in front of its messages
    std::string behind;   ///< what stands behind the last one, up to the position
    std::string tail;     ///< and from there to the end, when that may go on

    /// Its beginning as it stays when the log grows: at most tellingBytes, up to its first message's end.
    std::string_view head() const;
    /// Of the first bytes, and of the telling ones among them (0 when there are fewer): by them it is found.
    std::int64_t firstHash() const;
    std::int64_t headHash() const;
};

struct sourceColumn_t {
    std::string_view name;
    std::string_view sqlite, clickhouse; ///< the types
    std::string_view meaning;            ///< for people
    cell_t (*get)(const archivedLog_t &log);
    void (*set)(archivedLog_t &log, const std::string &value); ///< a number in its digits; null: it is computed
};

/// In their order; the first one is the number.
std::span<const sourceColumn_t> sourceColumns();

/// 64-bit FNV-1a.
std::uint64_t hashOf(std::string_view bytes);

} // namespace vek::inspect
