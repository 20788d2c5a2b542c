#include "vek/vek_std/std_sys/private/vek_spareBodies.hpp"
#include "vek/vek_std/std_sys/vek_stringRep.hpp"

#include <cstdlib>

#ifdef _WIN32

// A thread's own data is dear there.
namespace vek {

constinit processWide_t<std::uint32_t> mostSpareBodies = 0;

void *takeBody() {
    return std::malloc(sizeof(stringRep_t));
}
void giveBody(stringRep_t *block) {
    std::free(block);
}
void freeSpareBodies() {}

} // namespace vek

#else

#    include <mutex>
#    include <pthread.h>
#    include <utility>

namespace vek {

// The address sanitizer is to see each body that is used after its release.
#    ifdef VEK_NO_SPARE_BODIES
constinit processWide_t<std::uint32_t> mostSpareBodies = 0;
#    else
constinit processWide_t<std::uint32_t> mostSpareBodies = 16384;
#    endif

namespace {

struct spares_t {
    stringRep_t *first; // chained by their data
    std::uint32_t count;
    bool isFreedAtEnd; // of the thread
};

// Reached without a call, also in a shared library.
[[gnu::tls_model("initial-exec")]] constinit thread_local spares_t spares{};

// A thread's end is told by a key of the system and not by a destructor of `spares`, since such a destructor would keep
// the library loaded until the thread ends.
constinit std::mutex keyMutex;
pthread_key_t key = 0;
bool hasKey = false;

// Has this thread's spares freed at its end; false when the system can't.
bool watchThread() {
    const std::scoped_lock lock(keyMutex);
    hasKey = hasKey || pthread_key_create(&key, [](void *) { freeSpareBodies(); }) == 0;
    return hasKey && pthread_setspecific(key, &spares) == 0;
}

// When the process ends, static objects of the host may outlive this one and still release texts: then there is a key
// again.
constinit struct atUnloading_t {
    constexpr atUnloading_t() = default;
    ~atUnloading_t() {
        freeSpareBodies();
        if (std::exchange(hasKey, false))
            pthread_key_delete(key);
    }
    atUnloading_t(const atUnloading_t &) = delete;
    atUnloading_t &operator=(const atUnloading_t &) = delete;
} atUnloading;

} // namespace

void *takeBody() {
    stringRep_t *const spare = spares.first;
    if (spare == nullptr)
        return std::malloc(sizeof(stringRep_t));
    spares.first = reinterpret_cast<stringRep_t *>(spare->data);
    --spares.count;
    return spare;
}

void giveBody(stringRep_t *block) {
    if (!spares.isFreedAtEnd)
        spares.isFreedAtEnd = watchThread();
    if (spares.count >= mostSpareBodies || !spares.isFreedAtEnd) {
        std::free(block);
        return;
    }
    block->data = reinterpret_cast<char *>(spares.first);
    spares.first = block;
    ++spares.count;
}

// At the end of a thread another of its ends may still release texts, so it is watched anew then.
void freeSpareBodies() {
    while (spares.first != nullptr)
        std::free(takeBody());
    spares.isFreedAtEnd = false;
}

} // namespace vek

#endif
