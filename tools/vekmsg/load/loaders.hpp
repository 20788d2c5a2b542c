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
    std::string pattern;                ///< of the logs' names, with these three in it
    bool isReplacing = false;           ///< logs that are there are loaded anew
    std::vector<std::string> forgotten; ///< names of logs to take away first
    std::string keep;                   ///< how old messages may be: "90d"; empty: they stay
    bool isQuiet = false;
};

/// Throws usageError_t for what can be judged before a database is opened, or made when it is not there.
void checkArguments(const loadOptions_t &options, bool isThere);

/// Loads the logs one behind the other, or all at once when they are followed. Gives the exit code.
int loadInto(archive_t &archive, const loadOptions_t &options);

} // namespace vek::tool
