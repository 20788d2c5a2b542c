#pragma once

// An allocator that counts, and that fails when it is told to. It stands behind malloc, realloc and operator new of
// the test program, which is linked with --wrap.

#include <cstddef>

namespace memory {

/// The n-th allocation from now on fails, counted from 1; also all later ones when `andAllLater`.
void failAt(std::size_t n, bool andAllLater = false);
/// Nothing fails any more. Returns how many allocations did.
std::size_t stopFailing();

struct counts_t {
    std::size_t allocations = 0; ///< by malloc, since the program began
    std::size_t reallocations = 0;
    std::size_t lastReallocation = 0; ///< the size that realloc was asked for last
    std::size_t liveBlocks = 0;       ///< of malloc and realloc, not yet freed
    std::size_t liveObjects = 0;      ///< of operator new, not yet deleted
};
const counts_t &counts();

} // namespace memory
