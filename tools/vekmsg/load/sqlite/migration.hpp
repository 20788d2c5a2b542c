// Archives of older versions, made such as this one makes them; to be called in a transaction.
#pragma once

#include "tools/vekmsg/load/sqlite/database.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <string>
#include <vector>

namespace vek::tool {

/// Version 1 had other names for the places of problems.
void renameColumns(database_t &database);

/// Up to version 4 a log and an offset were one number, `message_id`: tables that have it are written anew. Columns,
/// indexes and triggers that somebody added stay; of those that name it, which go with it, it is told. Throws
/// databaseError_t.
void splitKeys(database_t &database, const std::vector<inspect::sqliteTable_t> &tables);

} // namespace vek::tool
