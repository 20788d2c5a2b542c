// growableList_t: the growable array behind every list member of a message structure and behind the values of a range.
//
// It owns its elements. Its storage comes from the C heap, so a list that this library filled must be released by this
// library (see vekParamsDeleteStruct). Not safe for concurrent use.
//
// A list that can't get memory to grow or to be copied writes "out of memory" on standard error and ends the process
// with status 1; no other class of the library does that.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <type_traits>
#include <utility>

namespace vek {

/// A list of `T`. An append to an empty list without room makes room for `FirstCapacity` elements, and an append to a
/// full one doubles the room.
template <class T, std::int32_t FirstCapacity = 10>
class growableList_t {
public:
    using value_type = T;

    growableList_t() = default;
    growableList_t(const growableList_t &other) { appendAll(other); }
    growableList_t(growableList_t &&other) noexcept { swap(other); }
    ~growableList_t() {
        clear();
        std::free(items_);
    }

    /// Copies every element; the present storage is reused when it is large enough.
    growableList_t &operator=(const growableList_t &other) {
        if (this != &other) {
            clear();
            appendAll(other);
        }
        return *this;
    }
    growableList_t &operator=(growableList_t &&other) noexcept {
        swap(other);
        return *this;
    }

    std::int32_t count() const { return count_; }
    std::int32_t capacity() const { return capacity_; }
    bool isEmpty() const { return count_ == 0; }

    /// The element at `index`, which must be at least 0 and below count(); it is not checked.
    T &at(std::int32_t index) { return items_[index]; }
    const T &at(std::int32_t index) const { return items_[index]; }
    T &operator[](std::int32_t index) { return items_[index]; }
    const T &operator[](std::int32_t index) const { return items_[index]; }

    T *begin() { return items_; }
    T *end() { return items_ + count_; }
    const T *begin() const { return items_; }
    const T *end() const { return items_ + count_; }

    /// Appends a copy of `value`, which may be an element of this list, and returns the new element. References to
    /// elements end when the list grows.
    T &add(const T &value) {
        if (count_ < capacity_)
            return *new (items_ + count_++) T(value);
        T copy(value);
        growTo(count_ > 0 ? doubled() : FirstCapacity);
        return *new (items_ + count_++) T(std::move(copy));
    }

    /// Appends a value-initialised element.
    T &add() {
        if (count_ == capacity_)
            growTo(count_ > 0 ? doubled() : FirstCapacity);
        return *new (items_ + count_++) T();
    }

    /// Makes room for `capacity` elements in all, exactly, when there is less; otherwise does nothing.
    void reserve(std::int32_t capacity) {
        if (capacity > capacity_)
            growTo(capacity);
    }

    /// Drops elements from the end, or appends value-initialised ones. A negative count is taken as 0.
    void resize(std::int32_t count) {
        truncate(count);
        reserve(count);
        while (count_ < count)
            new (items_ + count_++) T();
    }

    /// Removes every element; the storage is kept.
    void clear() { truncate(0); }

    void swap(growableList_t &other) noexcept {
        std::swap(items_, other.items_);
        std::swap(capacity_, other.capacity_);
        std::swap(count_, other.count_);
    }

private:
    template <class>
    friend struct layoutOf; // pins where the members lie

    void truncate(std::int32_t count) {
        while (count_ > 0 && count_ > count)
            items_[--count_].~T();
    }

    std::int32_t doubled() const {
        if (count_ > INT32_MAX / 2)
            outOfMemory();
        return 2 * count_;
    }

    void appendAll(const growableList_t &other) {
        reserve(other.count_);
        for (const T &value : other)
            new (items_ + count_++) T(value);
    }

    void growTo(std::int32_t capacity) {
        if (static_cast<std::size_t>(capacity) > SIZE_MAX / sizeof(T))
            outOfMemory();
        const std::size_t bytes = static_cast<std::size_t>(capacity) * sizeof(T);
        if constexpr (std::is_trivially_copyable_v<T>) {
            auto *grown = static_cast<T *>(std::realloc(items_, bytes));
            if (grown == nullptr)
                outOfMemory();
            items_ = grown;
        } else {
            auto *grown = static_cast<T *>(std::malloc(bytes));
            if (grown == nullptr)
                outOfMemory();
            for (std::int32_t i = 0; i < count_; ++i) {
                new (grown + i) T(std::move(items_[i]));
                items_[i].~T();
            }
            std::free(items_);
            items_ = grown;
        }
        capacity_ = capacity;
    }

    [[noreturn]] static void outOfMemory() {
        std::fputs("out of memory\n", stderr);
        std::exit(1);
    }

    T *items_ = nullptr;
    std::int32_t capacity_ = 0;
    std::int32_t count_ = 0;
};

} // namespace vek
