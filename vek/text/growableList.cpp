#include "vek/text/growableList.hpp"

#include "vek/vek_std/std_sys/vek_stringRep.hpp"

#include <new>

namespace vek {

constinit processWide_t<void (*)()> listOutOfMemoryHook = nullptr;

void throwWithoutMemory() {
    const auto throwIt = [] { throw std::bad_alloc(); };
    listOutOfMemoryHook = throwIt;
    stringOutOfMemoryHook = throwIt;
}

} // namespace vek
