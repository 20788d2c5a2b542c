// Blocks of string bodies that were released lately, for the next bodies of the same thread.
//
// Most texts of a message take one block and give one back. The blocks are of the C heap, like those of every other
// module, and any of them may be freed there. A thread's spares are freed when it ends; those of all threads when the
// library is unloaded. Safe for concurrent use: each thread has its own.
#pragma once

#include "vek/vek_std/std_sys/vek_processWide.hpp"

#include <cstdint>

namespace vek {

struct stringRep_t;

/// How many spares a thread keeps at most, from its first on. (16,384 are all the texts of the longest message,
/// of six characters each on average: 1.5 MB.)
extern processWide_t<std::uint32_t> mostSpareBodies;

/// Room for a body, not set in any way; null without memory.
void *takeBody();

/// Takes a block that takeBody() gave, on this thread or another.
void giveBody(stringRep_t *block);

} // namespace vek
