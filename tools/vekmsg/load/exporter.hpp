// What vekmsg export is asked for, and the exporter, which knows no database.
#pragma once

#include "tools/vekmsg/load/archiveReader.hpp"
#include "tools/vekmsg/reading/timeFinder.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vek::tool {

struct exportOptions_t {
    std::string target; ///< the database
    std::vector<std::string> sources, devices, sites, hosts;
    std::optional<std::string> since, until;
    std::string folder;                      ///< a file a log in it; empty: all to standard output
    const inspect::table_t *table = nullptr; ///< its rows, instead of the logs
    bool isCsv = false;
};

/// Gives the exit code.
int exportFrom(archiveReader_t &archive, const exportOptions_t &options);

} // namespace vek::tool
