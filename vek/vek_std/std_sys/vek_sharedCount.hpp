// sharedCount_t: a number in memory that several threads count, taken by reference.
//
// Safe for concurrent use, as the order that is given says.
#pragma once

#include "vek/vek_std/std_sys/vek_cpp20.hpp"

#include <atomic>
#include <cstdint>

namespace vek {

#if defined(__cpp_lib_atomic_ref)
using sharedCount_t = std::atomic_ref<std::uint32_t>;
#else
/// What of std::atomic_ref is used here, for C++ libraries that have none.
class sharedCount_t {
public:
    explicit sharedCount_t(std::uint32_t &number) : number_(number) {}

    std::uint32_t load(std::memory_order order) const { return __atomic_load_n(&number_, static_cast<int>(order)); }
    std::uint32_t fetch_add(std::uint32_t value, std::memory_order order) const {
        return __atomic_fetch_add(&number_, value, static_cast<int>(order));
    }
    std::uint32_t fetch_sub(std::uint32_t value, std::memory_order order) const {
        return __atomic_fetch_sub(&number_, value, static_cast<int>(order));
    }

private:
    std::uint32_t &number_;
};
#endif

} // namespace vek
