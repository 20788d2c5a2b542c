// The databases that vekmsg load knows. Each runs to its end and gives the exit code; they throw usageError_t.
#pragma once

#include "tools/vekmsg/reading/readingOptions.hpp"

namespace vek::tool {

struct loadOptions_t {
    readingOptions_t reading;
    sourceOption_t source;
    std::string target; ///< the database
    bool isQuiet = false;
};

int loadIntoSqlite(const loadOptions_t &options);
int loadIntoCluster(const loadOptions_t &options);

} // namespace vek::tool
