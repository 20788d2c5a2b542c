#include "vek/vek_std/std_sys/private/vek_spareBodies.hpp"
#include "vek/vek_std/std_sys/vek_stringRep.hpp"

#include <cstdlib>
#include <cstring>
#include <new>

namespace vek {

// In halves: from 2 KB on C libraries take an instruction that whoever reads the structure next waits for.
void clearStructure(void *structure, std::size_t size) {
    const std::size_t half = size / 2;
    std::memset(structure, 0, half);
    std::memset(static_cast<char *>(structure) + half, 0, size - half);
}

} // namespace vek

// None on Windows, where a thread's own data is dear. Nor where the address sanitizer is to see each body that is used
// after its release, nor in a library that reads few messages and does without thread-local storage.
#if defined(_WIN32) || defined(VEK_NO_SPARE_BODIES)

namespace vek {

constinit processWide_t<std::uint32_t> mostSpareBodies = 0;

void *takeBody() {
    return std::malloc(sizeof(stringRep_t));
}
void giveBody(stringRep_t *block) {
    std::free(block);
}
void *takeStructure(std::size_t size) {
    return ::operator new(size);
}
void giveStructure(void *block, std::size_t) {
    ::operator delete(block);
}

} // namespace vek

#else

#    include <array>
#    include <atomic>
#    include <pthread.h>
#    include <utility>

namespace vek {

constinit processWide_t<std::uint32_t> mostSpareBodies = 16384;

namespace {

// A block is for structures of just its size: it may be a host's own.
struct spareStructure_t {
    void *block;
    std::size_t size; // 0 without a block
};
constexpr std::size_t longestStructure = 4096, sizeOfWord = sizeof(std::int32_t), structurePlaces = 127;

// A thread's spares. When it ends the next new thread has its pool.
struct pool_t {
    stringRep_t *first = nullptr;                               // chained by their data
    std::uint32_t room = 0;                                     // for so many more
    std::array<spareStructure_t, structurePlaces> structures{}; // by their size; few share a place
    std::atomic<bool> hasThread = true;
    pool_t *next = nullptr;

    void empty() {
        while (first != nullptr) {
            stringRep_t *const spare = first;
            first = reinterpret_cast<stringRep_t *>(spare->data);
            std::free(spare);
        }
        for (spareStructure_t &spare : structures)
            keep(spare, {});
    }
    static void keep(spareStructure_t &spare, spareStructure_t other) {
        if (spare.size != 0)
            ::operator delete(spare.block);
        spare = other;
    }
    spareStructure_t &placeOf(std::size_t size) { return structures[size / sizeOfWord % structurePlaces]; }
};

// Reached without a call, also in a shared library. No more than a pointer, since programs that load and unload
// libraries run out of the block that it lies in.
[[gnu::tls_model("initial-exec")]] constinit thread_local pool_t *ownPool = nullptr;

constinit std::atomic<pool_t *> pools = nullptr; // of all threads
constinit std::atomic<bool> isOpen = false;      // new pools are made
pthread_key_t key = 0;                           // tells a thread's end, without keeping the library loaded until then

void leavePool(void *left) {
    auto *const pool = static_cast<pool_t *>(left);
    ownPool = nullptr;
    pool->empty();
    pool->hasThread.store(false, std::memory_order_release);
}

[[gnu::constructor]] void open() {
    isOpen = pthread_key_create(&key, leavePool) == 0;
}

// Null without memory.
pool_t *newPool() {
    for (pool_t *pool = pools; pool != nullptr; pool = pool->next)
        if (!pool->hasThread.exchange(true, std::memory_order_acquire))
            return pool;
    void *const room = std::malloc(sizeof(pool_t));
    if (room == nullptr)
        return nullptr;
    auto *const pool = new (room) pool_t();
    pool->next = pools;
    while (!pools.compare_exchange_weak(pool->next, pool)) {
    }
    return pool;
}

// At the end of a thread another of its ends may still release texts: then it has a pool once more. Null when there is
// none to be had.
[[gnu::noinline, gnu::cold]] pool_t *makeOwnPool() {
    const std::uint32_t most = mostSpareBodies;
    pool_t *const pool = isOpen && most != 0 ? newPool() : nullptr;
    if (pool == nullptr)
        return nullptr;
    if (pthread_setspecific(key, pool) != 0) {
        leavePool(pool);
        return nullptr;
    }
    pool->room = most;
    return ownPool = pool;
}

pool_t *poolToGiveTo() {
    pool_t *const own = ownPool;
    return own != nullptr ? own : makeOwnPool();
}

// When the process ends, other threads go on, and static objects of the host may outlive this one: from here on no pool
// is made, and only this thread's is emptied.
constinit struct atProcessEnd_t {
    constexpr atProcessEnd_t() = default;
    ~atProcessEnd_t() {
        isOpen = false;
        if (pool_t *const own = std::exchange(ownPool, nullptr))
            own->empty();
    }
    atProcessEnd_t(const atProcessEnd_t &) = delete;
    atProcessEnd_t &operator=(const atProcessEnd_t &) = delete;
} atProcessEnd;

// The library's functions of this kind run before its objects are destroyed when it is unloaded, and behind that when
// the process ends.
[[gnu::destructor]] void unload() {
    if (!isOpen.exchange(false))
        return;
    pthread_key_delete(key);
    ownPool = nullptr;
    for (pool_t *pool = pools.exchange(nullptr); pool != nullptr;) {
        pool->empty();
        std::free(std::exchange(pool, pool->next));
    }
}

} // namespace

void *takeBody() {
    pool_t *const own = ownPool;
    if (own == nullptr || own->first == nullptr)
        return std::malloc(sizeof(stringRep_t));
    stringRep_t *const spare = own->first;
    own->first = reinterpret_cast<stringRep_t *>(spare->data);
    ++own->room;
    return spare;
}

void giveBody(stringRep_t *block) {
    pool_t *const own = poolToGiveTo();
    if (own == nullptr || own->room == 0) {
        std::free(block);
        return;
    }
    block->data = reinterpret_cast<char *>(own->first);
    own->first = block;
    --own->room;
}

void *takeStructure(std::size_t size) {
    if (pool_t *const own = ownPool; own != nullptr)
        if (spareStructure_t &spare = own->placeOf(size); spare.size == size) {
            spare.size = 0;
            return spare.block;
        }
    return ::operator new(size);
}

void giveStructure(void *block, std::size_t size) {
    if (pool_t *const own = poolToGiveTo(); own != nullptr && size <= longestStructure)
        pool_t::keep(own->placeOf(size), {block, size});
    else
        ::operator delete(block);
}

} // namespace vek

#endif
