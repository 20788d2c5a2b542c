// What the name of a log says of where it comes from.
#pragma once

#include "vek/inspect/archive/sources.hpp"

#include <string>

namespace vek::tool {

/// Throws usageError_t when a pattern is none; an empty one says nothing.
void checkPattern(const std::string &pattern);

/// Takes device, site and host out of a name that ends as `pattern` says, "{site}/{device}.log". Throws usageError_t
/// when it ends otherwise.
void nameBy(const std::string &pattern, const std::string &name, inspect::archivedLog_t &log);

} // namespace vek::tool
