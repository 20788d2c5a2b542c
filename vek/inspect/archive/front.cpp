// The one list of columns that stand in front of every row, with their values.
#include "vek/inspect/archive/front.hpp"

namespace vek::inspect {

namespace {

cell_t ofNumber(const std::optional<std::int32_t> &number) {
    return number ? cell_t::ofInteger(*number) : cell_t{};
}

cell_t sourceNumber(const row_t &row, std::string &) {
    return row.front.number != 0 ? cell_t::ofInteger(static_cast<std::int64_t>(row.front.number)) : cell_t{};
}

cell_t source(const row_t &row, std::string &) {
    return cell_t::ofText(row.front.source);
}

cell_t byteOffset(const row_t &row, std::string &) {
    return cell_t::ofInteger(static_cast<std::int64_t>(row.front.byteOffset));
}

cell_t second(const row_t &row, std::string &room) {
    if (!clickhouseSeconds(row.front.time))
        return {};
    room.clear();
    row.front.time->appendTo(room, ' ', logTime_t::fraction_t::none);
    return cell_t::ofText(room);
}

cell_t microsecond(const row_t &row, std::string &) {
    return clickhouseSeconds(row.front.time) ? cell_t::ofInteger(row.front.time->microsecond()) : cell_t{};
}

cell_t time(const row_t &row, std::string &room) {
    if (!row.front.time)
        return {};
    room.clear();
    row.front.time->appendTo(room, ' ', logTime_t::fraction_t::always);
    return cell_t::ofText(room);
}

cell_t echoTag(const row_t &row, std::string &) {
    return ofNumber(row.echoTag);
}

cell_t sequenceNumber(const row_t &row, std::string &) {
    return ofNumber(row.sequenceNumber);
}

cell_t damaged(const row_t &row, std::string &) {
    return cell_t::ofInteger(row.isDamaged ? 1 : 0);
}

constexpr frontColumn_t columns[] = {
    {"source_id",
     {"UInt64", sourceNumber},
     {"INTEGER NOT NULL", sourceNumber},
     "the log's number in the table `sources`",
     true},
    {"source", {"String", source}, {}, "the name of the log, as it was given"},
    {"byte_offset",
     {"UInt64", byteOffset},
     {"INTEGER NOT NULL", byteOffset},
     "of the message's first byte in the log (unpacked), from 0",
     true},
    {"log_time",
     {"Nullable(DateTime('UTC'))", second},
     {"TEXT", time},
     "the time that stands on the line, at UTC when it says its zone; SQLite: with its fraction, `2026-03-01 "
     "08:00:02.250`"},
    {"log_microsecond", {"UInt32", microsecond}, {}, "the fraction of that second"},
    {"echo_tag", {"Nullable(Int32)", echoTag}, {"INTEGER", echoTag}, "the echo tag of the envelope"},
    {"sequence_number",
     {"Nullable(Int32)", sequenceNumber},
     {"INTEGER", sequenceNumber},
     "the sequence number of the envelope"},
    {"damaged", {"UInt8", damaged}, {"INTEGER NOT NULL", damaged}, "1: `check` finds an error"},
};

} // namespace

std::span<const frontColumn_t> frontColumns() {
    return columns;
}

std::optional<std::int64_t> clickhouseSeconds(const std::optional<logTime_t> &time) {
    constexpr std::int64_t second = 1'000'000, end = std::int64_t{1} << 32;
    if (!time || !time->hasDate || time->microseconds < 0 || time->microseconds / second >= end)
        return std::nullopt;
    return time->microseconds / second;
}

} // namespace vek::inspect
