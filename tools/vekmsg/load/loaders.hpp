// The databases that vekmsg load knows. Each runs to its end and gives the exit code; they throw usageError_t.
#pragma once

#include "tools/vekmsg/commands/options.hpp"

namespace vek::tool {

int loadIntoSqlite(const options_t &options);
int loadIntoCluster(const options_t &options);

} // namespace vek::tool
