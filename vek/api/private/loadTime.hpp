// The load-time set-up and the debug switch.
#pragma once

#include <cstdint>

namespace vek {

/// 1 when PLOT_DEBUG_MODE was "msgPrint" as the library was loaded, else 0. Reserved for printing messages: nothing
/// in the library consults it.
extern std::int32_t debugSwitch;

/// Puts the header numbers to their start and reads PLOT_DEBUG_MODE. Runs once, when the library is loaded.
void setUpAtLoad();

} // namespace vek
