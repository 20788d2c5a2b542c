// Rows as JSON lines, as ClickHouse's JSONEachRow takes them.
#pragma once

#include "vek/inspect/archive/rows.hpp"

#include <string>

namespace vek::inspect {

/// One object without a line end: the columns in front, the numbers of elements, then the table's columns; what is null
/// or an empty list is left out, and so are infinite numbers, which JSON lacks. Booleans are 0 and 1. `namesTable`:
/// the table's name comes first, as "table".
void appendRowJson(std::string &out, const row_t &row, bool namesTable);

} // namespace vek::inspect
