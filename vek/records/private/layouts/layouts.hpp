// The layouts of all message structures and of what they consist of, by the header that declares them.
#pragma once

#include "vek/records/private/layouts/layout.hpp"

#include <span>

namespace vek {

std::span<const layoutFamily_t *const> layoutFamilies();

} // namespace vek
