// What the name of a log says of where it comes from.
#pragma once

#include "vek/inspect/archive/sources.hpp"

#include <string>

namespace vek::tool {

/// Takes device, site and host out of a name that ends as `pattern` says, "{site}/{device}.log". Throws usageError_t
/// when it ends otherwise, or the pattern is none.
void nameBy(const std::string &pattern, const std::string &name, inspect::archivedLog_t &log);

} // namespace vek::tool
