// processWide_t: a setting, hook or counter of the whole process, which any thread may read and change at any time.
//
// Each value is whole, and nothing is promised about the order in which threads see changes of several. So it costs
// what a plain variable does. It is used like one.
#pragma once

#include "vek/vek_std/std_sys/vek_cpp20.hpp"

#include <atomic>

namespace vek {

template <class T>
class processWide_t {
public:
    constexpr processWide_t(T value = {}) noexcept : value_(value) {}
    processWide_t(const processWide_t &other) noexcept : value_(other.get()) {}

    processWide_t &operator=(T value) noexcept {
        value_.store(value, std::memory_order_relaxed);
        return *this;
    }
    processWide_t &operator=(const processWide_t &other) noexcept { return *this = other.get(); }

    T get() const noexcept { return value_.load(std::memory_order_relaxed); }
    operator T() const noexcept { return get(); }

    /// Stores another value and returns the previous one.
    T exchange(T value) noexcept { return value_.exchange(value, std::memory_order_relaxed); }

    /// Adds to a number, which wraps, and returns it as it was before.
    T fetchAdd(T addend) noexcept { return value_.fetch_add(addend, std::memory_order_relaxed); }

    /// Stores another value if the expected one is there, and tells; else the expected one becomes what is there.
    bool replace(T &expected, T value) noexcept {
        return value_.compare_exchange_strong(expected, value, std::memory_order_relaxed);
    }

private:
    static_assert(std::atomic<T>::is_always_lock_free);
    std::atomic<T> value_;
};

} // namespace vek
