// A log of which nothing is given unless all of it is sound.
#pragma once

#include "tools/vekmsg/reading/input.hpp"

namespace vek::tool {

/// As openSource(), but what is packed is read to its end first; standard input then lies in a temporary file.
std::unique_ptr<source_t> openSound(const std::string &name);

} // namespace vek::tool
