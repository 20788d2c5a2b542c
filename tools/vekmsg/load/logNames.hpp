// Whether the logs that a person names are in an archive.
#pragma once

#include "vek/inspect/archive/sources.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace vek::tool {

/// Throws usageError_t, with what there is, when no log has one of these words there: its name, its device.
void checkNamed(std::string_view option, const std::vector<std::string> &words,
                const std::vector<inspect::archivedLog_t> &logs, std::string inspect::archivedLog_t::*part,
                std::string_view archive);

} // namespace vek::tool
