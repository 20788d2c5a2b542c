// What the program and the libraries in it ask of the heap, counted by standing in front of the C library's functions.
// Counting is for one thread at a time.
#pragma once

#include <cstddef>

namespace bench {

struct heapCount_t {
    std::size_t allocations = 0; ///< blocks asked for, or moved to another size
    std::size_t bytes = 0;       ///< held now
    std::size_t peak = 0;        ///< most bytes held so far
};

/// Starts counting, from 0.
void startHeapCount();
/// Stops counting and returns what was counted.
heapCount_t stopHeapCount();

} // namespace bench
