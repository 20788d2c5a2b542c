// Rows as JSON lines, as ClickHouse's JSONEachRow takes them.
#pragma once

#include "vek/inspect/archive/rows.hpp"
#include "vek/inspect/forms/jsonSchema.hpp"

#include <string>
#include <vector>

namespace vek::inspect {

/// One object without a line end: the columns in front, the numbers of elements, then the table's columns; what is null
/// or an empty list is left out. Booleans are 0 and 1, an infinite number is the text "inf" or "-inf". `namesTable`:
/// the table's name comes first, as "table".
void appendRowJson(std::string &out, const row_t &row, bool namesTable);

/// The schemas of such rows: "row_messages" and so on, and "row" for any of them.
std::vector<schemaDefinition_t> rowDefinitions();

} // namespace vek::inspect
