// Of the shared library alone: whoever else is made of these sources says nothing of its version.
#include "vek/api/private/versionNote.hpp"

namespace vek {

#if defined(__ELF__)
[[gnu::section(".note.vekParams2ASCII"), gnu::used, gnu::aligned(4)]] constexpr versionNote_t versionNote;
#endif

} // namespace vek
