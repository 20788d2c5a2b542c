// What an archive of version 1 on a ClickHouse server needs to go on: its rows had no number of their log.
#pragma once

#include "tools/vekmsg/load/clickhouse/clusterServer.hpp"

#include <map>
#include <string>

namespace vek::tool {

/// Gives every log of such an archive a number and a row in the table of sources, which must be there, and its rows the
/// number. What was there stays in a database beside it. `columns`: of each table that is there, ",name,,name,". Killed
/// at any moment, it goes on when it is called again. Gives the tables that are other ones now.
std::vector<std::string> migrateFromNames(clusterServer_t &server, const std::map<std::string, std::string> &columns);

} // namespace vek::tool
