// Printing a range on a character stream, for debugging. Apart from valueRange.hpp, which message structures include,
// so that they need no stream headers.
#pragma once

#include "vek/text/valueRange.hpp"

#include <iosfwd>

namespace vek {

/// Prints a headline, a line "  range[i]= value" for each value in the stream's own number format, and a closing line.
void printRange(std::ostream &out, const valueRange_t &range);

} // namespace vek
