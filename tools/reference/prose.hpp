// What the declarations can't say of a record: its meaning in a few words.
#pragma once

#include <string_view>

namespace vek {

/// One or two sentences about a record class. Throws std::runtime_error when there are none.
std::string_view proseOf(std::string_view record);

} // namespace vek
