// Charts of numbers in lines of text: bars, and how far a group of numbers reaches. With block characters, or in plain
// ASCII.
//
// Pure functions.
#pragma once

#include "tools/vekmsg/figures/spread.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vek::tool {

/// Whether the characters of this place have blocks: of UTF-8, on no dumb terminal.
bool hasBlocks();

/// A number in at most seven digits, unless it is an integer.
std::string numberText(double number);

/// The numbers from `from` on, and below `to`; or all that are `from`, when that is `to`.
struct bar_t {
    double from, to;
    std::uint64_t count = 0;
};

/// A bar for each different number, when there are few; else for ranges of one round width, empty ones too.
std::vector<bar_t> histogramOf(const spread_t &spread);

/// `part` (up to 1, not 0) of so many columns; something of it is seen always.
std::string barText(double part, std::size_t columns, bool isOfBlocks);

/// A line from the least to the largest of numbers, with a mark at their mean, on a scale of so many columns.
std::string reachText(const spread_t &spread, double scaleLeast, double scaleMost, std::size_t columns,
                      bool isOfBlocks);

} // namespace vek::tool
