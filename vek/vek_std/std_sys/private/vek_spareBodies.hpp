// Blocks of string bodies and of message structures that were released lately, for the next ones of the same thread.
//
// Most texts of a message take one block and give one back. The blocks are of the C heap and of operator new, like
// those of every other module, and any of them may be freed there. A thread's spares are freed when it ends; those of
// all threads when the library is unloaded. Safe for concurrent use: each thread has its own.
#pragma once

#include "vek/vek_std/std_sys/vek_processWide.hpp"

#include <cstddef>
#include <cstdint>

namespace vek {

struct stringRep_t;

/// How many spare bodies a thread keeps at most, from its first on; with 0 it keeps no structures, either. (16,384 are
/// all the texts of the longest message, of six characters each on average: 1.5 MB.)
extern processWide_t<std::uint32_t> mostSpareBodies;

/// Room for a body, not set in any way; null without memory.
void *takeBody();

/// Takes a block that takeBody() gave, on this thread or another.
void giveBody(stringRep_t *block);

/// The same for a structure of this size, by operator new. Throws std::bad_alloc. A thread keeps one of most sizes, and
/// of large ones none.
void *takeStructure(std::size_t size);
void giveStructure(void *block, std::size_t size);

/// Fills a structure with zeros.
void clearStructure(void *structure, std::size_t size);

} // namespace vek
