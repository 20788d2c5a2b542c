// What vekmsg load is asked for, and the loader, which knows no database.
#pragma once

#include "tools/vekmsg/reading/readingOptions.hpp"

namespace vek::tool {

class archive_t;

struct loadOptions_t {
    readingOptions_t reading;
    sourceOption_t source;
    std::string target; ///< the database
    std::string device, site, host;
    std::string pattern; ///< of the logs' names, with these three in it
    bool isQuiet = false;
};

/// Loads the logs one behind the other, or all at once when they are followed. Gives the exit code.
int loadInto(archive_t &archive, const loadOptions_t &options);

} // namespace vek::tool
