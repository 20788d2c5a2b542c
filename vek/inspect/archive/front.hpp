// The columns in front of every row, which are of no key: by them rows are found and put together. Everything that
// makes or describes tables and rows goes by this one list; a further column is a row in front.cpp.
#pragma once

#include "vek/inspect/archive/rows.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vek::inspect {

struct frontColumn_t {
    /// What a database has of it.
    struct stored_t {
        std::string_view type = {}; ///< in its words; empty: it has no such column
        /// The value; a text may be put into `room`.
        cell_t (*value)(const row_t &row, std::string &room) = nullptr;
    };

    std::string_view name;
    stored_t clickhouse;      ///< in every table
    stored_t sqlite;          ///< in tables without numbers of elements; what is of the key in every table
    std::string_view meaning; ///< for people
    bool isOfKey = false;     ///< of SQLite's tables
};

/// In their order; those of the key stand in front of the others.
std::span<const frontColumn_t> frontColumns();

/// The seconds since 1970 that ClickHouse can keep of a time.
std::optional<std::int64_t> clickhouseSeconds(const std::optional<logTime_t> &time);

} // namespace vek::inspect
