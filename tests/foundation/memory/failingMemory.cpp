#include "tests/foundation/memory/failingMemory.hpp"

#include "vek/vek_std/std_sys/private/vek_spareBodies.hpp"

#include <cstdlib>
#include <new>

namespace {

memory::counts_t counted;
std::size_t untilFailure = 0; // 0: nothing fails
bool allLaterFail = false;
std::size_t failures = 0;

bool failsNow() {
    if (untilFailure == 0 || --untilFailure > 0)
        return false;
    if (allLaterFail)
        untilFailure = 1;
    ++failures;
    return true;
}

// What is counted, and may fail, is every body.
[[maybe_unused]] const bool keepsNoSpares = (vek::mostSpareBodies = 0, true);

// What runs when the program ends, such as the writing of coverage counts, has memory, also if a test ends it amid a
// failure.
[[maybe_unused]] struct atEnd_t {
    ~atEnd_t() { untilFailure = 0; }
} atEnd;

} // namespace

extern "C" {

void *__real_malloc(std::size_t size);
void *__real_realloc(void *block, std::size_t size);
void __real_free(void *block);

void *__wrap_malloc(std::size_t size);
void *__wrap_realloc(void *block, std::size_t size);
void __wrap_free(void *block);

void *__wrap_malloc(std::size_t size) {
    ++counted.allocations;
    void *made = failsNow() ? nullptr : __real_malloc(size);
    counted.liveBlocks += made != nullptr;
    return made;
}

void *__wrap_realloc(void *block, std::size_t size) {
    ++counted.reallocations;
    counted.lastReallocation = size;
    void *made = failsNow() ? nullptr : __real_realloc(block, size);
    counted.liveBlocks += made && !block;
    return made;
}

void __wrap_free(void *block) {
    counted.liveBlocks -= block != nullptr;
    __real_free(block);
}
}

void *operator new(std::size_t size) {
    void *made = failsNow() ? nullptr : __real_malloc(size > 0 ? size : 1);
    if (!made)
        throw std::bad_alloc();
    ++counted.liveObjects;
    return made;
}
void *operator new[](std::size_t size) {
    return operator new(size);
}
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
    void *made = failsNow() ? nullptr : __real_malloc(size > 0 ? size : 1);
    counted.liveObjects += made != nullptr;
    return made;
}
void operator delete(void *block) noexcept {
    counted.liveObjects -= block != nullptr;
    __real_free(block);
}
void operator delete(void *block, std::size_t) noexcept {
    operator delete(block);
}
void operator delete[](void *block) noexcept {
    operator delete(block);
}
void operator delete[](void *block, std::size_t) noexcept {
    operator delete(block);
}

namespace memory {

void failAt(std::size_t n, bool andAllLater) {
    untilFailure = n;
    allLaterFail = andAllLater;
    failures = 0;
}

std::size_t stopFailing() {
    untilFailure = 0;
    return failures;
}

const counts_t &counts() {
    return counted;
}

} // namespace memory
