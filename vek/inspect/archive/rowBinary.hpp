// Rows as ClickHouse's RowBinary takes them: every number as it is in memory, so that none changes on its way.
#pragma once

#include "vek/inspect/archive/sources.hpp"

#include <string>

namespace vek::inspect {

/// The columns in the order of clickhouseColumns().
void appendRowBinary(std::string &out, const row_t &row);

/// The columns in the order of sourceColumns().
void appendRowBinary(std::string &out, const archivedLog_t &log);

/// A row of the marks.
void appendMark(std::string &out, std::int64_t mark, std::uint64_t log);

} // namespace vek::inspect
