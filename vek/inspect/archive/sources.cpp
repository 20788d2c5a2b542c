// The one list of columns that a log has in an archive, with what is read from it and written to it.
#include "vek/inspect/archive/sources.hpp"

#include <cstdlib>

namespace vek::inspect {

namespace {

std::uint64_t numberIn(const std::string &digits) {
    return std::strtoull(digits.c_str(), nullptr, 10);
}

cell_t ofNumber(std::uint64_t number) {
    return cell_t::ofInteger(static_cast<std::int64_t>(number));
}

using log_t = archivedLog_t;
using text_t = const std::string &;

constexpr sourceColumn_t columnsOfSources[] = {
    {"source_id", "INTEGER PRIMARY KEY", "UInt64", "the log's number, which its rows carry",
     [](const log_t &log) { return ofNumber(log.number); },
     [](log_t &log, text_t value) { log.number = numberIn(value); }},
    {"source", "TEXT NOT NULL", "String", "its name when it was first seen",
     [](const log_t &log) { return cell_t::ofText(log.name); }, [](log_t &log, text_t value) { log.name = value; }},
    {"first_bytes", "BLOB NOT NULL", "String", "its first 4096 bytes, unpacked, by which it is known again",
     [](const log_t &log) { return cell_t::ofText(log.first); }, [](log_t &log, text_t value) { log.first = value; }},
    {"loaded_bytes", "INTEGER NOT NULL", "UInt64", "how far it is loaded",
     [](const log_t &log) { return ofNumber(log.position.offset); },
     [](log_t &log, text_t value) { log.position.offset = numberIn(value); }},
    {"has_tail", "INTEGER NOT NULL", "UInt8", "1: rows stand behind that, of a message that may go on",
     [](const log_t &log) { return ofNumber(log.hasTail ? 1 : 0); },
     [](log_t &log, text_t value) { log.hasTail = numberIn(value) != 0; }},
    {"next_line", "INTEGER NOT NULL", "UInt64", "the line that goes on there",
     [](const log_t &log) { return ofNumber(log.position.line); },
     [](log_t &log, text_t value) { log.position.line = numberIn(value); }},
    {"line_head", "BLOB NOT NULL", "String", "what that line begins with",
     [](const log_t &log) { return cell_t::ofText(log.position.lineHead); },
     [](log_t &log, text_t value) { log.position.lineHead = value; }},
    {"is_line_head_complete", "INTEGER NOT NULL", "UInt8", "1: a message stood on it",
     [](const log_t &log) { return ofNumber(log.position.isLineHeadComplete ? 1 : 0); },
     [](log_t &log, text_t value) { log.position.isLineHeadComplete = numberIn(value) != 0; }},
    {"last_message_offset", "INTEGER NOT NULL", "UInt64", "where the last message stood that was loaded",
     [](const log_t &log) { return ofNumber(log.last.offset); },
     [](log_t &log, text_t value) { log.last.offset = numberIn(value); }},
    {"last_message_bytes", "INTEGER NOT NULL", "UInt64", "how long it was",
     [](const log_t &log) { return ofNumber(log.last.size); },
     [](log_t &log, text_t value) { log.last.size = numberIn(value); }},
    {"last_message_hash", "INTEGER NOT NULL", "Int64", "and its hash (64-bit FNV-1a)",
     [](const log_t &log) { return ofNumber(log.last.hash); },
     [](log_t &log, text_t value) { log.last.hash = numberIn(value); }},
    {"device", "TEXT NOT NULL DEFAULT ''", "String", "the device, when it was told",
     [](const log_t &log) { return cell_t::ofText(log.device); }, [](log_t &log, text_t value) { log.device = value; }},
    {"site", "TEXT NOT NULL DEFAULT ''", "String", "where it stands, when it was told",
     [](const log_t &log) { return cell_t::ofText(log.site); }, [](log_t &log, text_t value) { log.site = value; }},
    {"host", "TEXT NOT NULL DEFAULT ''", "String", "the machine that wrote it, when it was told",
     [](const log_t &log) { return cell_t::ofText(log.host); }, [](log_t &log, text_t value) { log.host = value; }},
    {"loaded_at", "TEXT NOT NULL DEFAULT ''", "String", "when something of it was last loaded, at UTC",
     [](const log_t &log) { return cell_t::ofText(log.loadedAt); },
     [](log_t &log, text_t value) { log.loadedAt = value; }},
    {"loaded_by", "TEXT NOT NULL DEFAULT ''", "String", "by whom: user and machine",
     [](const log_t &log) { return cell_t::ofText(log.loadedBy); },
     [](log_t &log, text_t value) { log.loadedBy = value; }},
    {"is_whole", "INTEGER NOT NULL DEFAULT 0", "UInt8",
     "1: every byte of it comes back; 0: its messages alone, as older versions kept them",
     [](const log_t &log) { return ofNumber(log.isWhole ? 1 : 0); },
     [](log_t &log, text_t value) { log.isWhole = numberIn(value) != 0; }},
    {"usual_fronts", "BLOB NOT NULL DEFAULT ''", "String",
     "what stands in front of messages that have nothing in `fronts`, by their ids",
     [](const log_t &log) { return cell_t::ofText(log.fronts.inWords()); },
     [](log_t &log, text_t value) { log.fronts = usualFronts_t::ofWords(value); }},
    {"behind_last", "BLOB NOT NULL DEFAULT ''", "String", "what stands behind the last message",
     [](const log_t &log) { return cell_t::ofText(log.behind); }, [](log_t &log, text_t value) { log.behind = value; }},
    {"tail_bytes", "BLOB NOT NULL DEFAULT ''", "String", "and behind `loaded_bytes`, when that may go on",
     [](const log_t &log) { return cell_t::ofText(log.tail); }, [](log_t &log, text_t value) { log.tail = value; }},
    {"first_hash", "INTEGER NOT NULL DEFAULT 0", "Int64", "the hash of `first_bytes`",
     [](const log_t &log) { return cell_t::ofInteger(log.firstHash()); }, nullptr},
    {"head_hash", "INTEGER NOT NULL DEFAULT 0", "Int64", "and of the first 256 of them",
     [](const log_t &log) { return cell_t::ofInteger(log.headHash()); }, nullptr},
};

} // namespace

std::uint64_t hashOf(std::string_view bytes) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char byte : bytes)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
    return hash;
}

std::string_view archivedLog_t::head() const {
    const std::string_view telling = std::string_view(first).substr(0, tellingBytes);
    const std::size_t end = telling.find("!!");
    return end == std::string_view::npos ? telling : telling.substr(0, end + 2);
}

std::int64_t archivedLog_t::firstHash() const {
    return static_cast<std::int64_t>(hashOf(first));
}

std::int64_t archivedLog_t::headHash() const {
    return first.size() < tellingBytes
               ? 0
               : static_cast<std::int64_t>(hashOf(std::string_view(first).substr(0, tellingBytes)));
}

std::span<const sourceColumn_t> sourceColumns() {
    return columnsOfSources;
}

} // namespace vek::inspect
