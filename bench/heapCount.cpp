#include "bench/heapCount.hpp"

#include <malloc.h>

#include <algorithm>
#include <cstdint>

namespace {

bool isCounting = false;
bench::heapCount_t counted;

void *note(void *block) {
    if (isCounting && block != nullptr) {
        ++counted.allocations;
        counted.bytes += malloc_usable_size(block);
        counted.peak = std::max(counted.peak, counted.bytes);
    }
    return block;
}

void forget(void *block) {
    if (isCounting && block != nullptr)
        counted.bytes -= malloc_usable_size(block);
}

} // namespace

// glibc's own functions under the names that they may be replaced by.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void __libc_free(void *block);

void *malloc(std::size_t size) {
    return note(__libc_malloc(size));
}
void *calloc(std::size_t count, std::size_t size) {
    return note(__libc_calloc(count, size));
}
void *realloc(void *block, std::size_t size) {
    forget(block);
    return note(__libc_realloc(block, size));
}
void free(void *block) {
    forget(block);
    __libc_free(block);
}
}

namespace bench {

void startHeapCount() {
    counted = {};
    isCounting = true;
}

heapCount_t stopHeapCount() {
    isCounting = false;
    return counted;
}

} // namespace bench
