// The layouts of all message structures and of what they consist of, by the header that declares them.
#pragma once

#include "vek/records/private/layouts/layout.hpp"

#include <span>
#include <string_view>

namespace vek {

struct layoutFamily_t {
    std::string_view header; ///< that declares the structures
    std::span<const structureLayout_t *const> structures;
};

std::span<const layoutFamily_t> layoutFamilies();

} // namespace vek
