#include "failingMemory.hpp"

#include <cstdlib>
#include <new>

namespace {

std::size_t mallocCalls = 0;
std::size_t reallocCalls = 0;
std::size_t reallocSize = 0;
std::size_t blocks = 0;
std::size_t objects = 0;
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

} // namespace

extern "C" {

void *__real_malloc(std::size_t size);
void *__real_realloc(void *block, std::size_t size);
void __real_free(void *block);

void *__wrap_malloc(std::size_t size);
void *__wrap_realloc(void *block, std::size_t size);
void __wrap_free(void *block);

void *__wrap_malloc(std::size_t size) {
    ++mallocCalls;
    void *made = failsNow() ? nullptr : __real_malloc(size);
    blocks += made != nullptr;
    return made;
}

void *__wrap_realloc(void *block, std::size_t size) {
    ++reallocCalls;
    reallocSize = size;
    void *made = failsNow() ? nullptr : __real_realloc(block, size);
    blocks += made && !block;
    return made;
}

void __wrap_free(void *block) {
    blocks -= block != nullptr;
    __real_free(block);
}
}

void *operator new(std::size_t size) {
    void *made = failsNow() ? nullptr : __real_malloc(size > 0 ? size : 1);
    if (!made)
        throw std::bad_alloc();
    ++objects;
    return made;
}
void *operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete(void *block) noexcept {
    objects -= block != nullptr;
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

std::size_t allocations() {
    return mallocCalls;
}
std::size_t reallocations() {
    return reallocCalls;
}
std::size_t lastReallocation() {
    return reallocSize;
}
std::size_t liveBlocks() {
    return blocks;
}
std::size_t liveObjects() {
    return objects;
}

} // namespace memory
