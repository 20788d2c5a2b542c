#pragma once

// An allocator that counts, and that fails when it is told to. It stands behind malloc, realloc and operator new of
// the test program, which is linked with --wrap.

#include <cstddef>

namespace memory {

/// The n-th allocation from now on fails, counted from 1; also all later ones when `andAllLater`.
void failAt(std::size_t n, bool andAllLater = false);
/// Nothing fails any more. Returns how many allocations did.
std::size_t stopFailing();

/// Since the program began.
std::size_t allocations();
std::size_t reallocations();
/// The size that realloc was asked for last.
std::size_t lastReallocation();
/// Blocks allocated and not yet freed, by malloc and realloc.
std::size_t liveBlocks();
/// Blocks of operator new that are not deleted yet.
std::size_t liveObjects();

} // namespace memory
