// What the shared library says of itself on Linux, in a note of its file that is loaded with it: its version.
#pragma once

#include "vek/api/version.h"

#include <cstdint>

namespace vek {

/// As notes are laid out: three sizes and numbers, the name of who wrote it with its NUL, then what it says.
struct versionNote_t {
    std::uint32_t nameSize = sizeof name;
    std::uint32_t contentSize = sizeof version;
    std::uint32_t type = 1;
    char name[16] = "vekParams2ASCII";
    std::int32_t version = VEK_VERSION_NUMBER;
};

} // namespace vek
