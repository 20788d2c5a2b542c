// growableList_t: the growable array behind every list member of a message structure and behind the values of a range.
//
// It has the operations of a standard sequence, with iterators that are pointers, so that standard algorithms, ranges
// and std::span take it. Positions may be of any integer type. References and iterators end when the list grows.
//
// It owns its elements. Its storage comes from the C heap, so a list that this library filled must be released by this
// library (see vekParamsDeleteStruct). Not safe for concurrent use.
//
// A list that can't get memory to grow or to be copied calls a hook, which may throw, then writes "out of memory" on
// standard error and ends the process with status 1; no other class of the library does that.
#pragma once

#include "vek/vek_std/std_sys/vek_processWide.hpp"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <iterator>
#include <new>
#include <type_traits>
#include <utility>

namespace vek {

/// Of lists without memory; null, unless it is set.
extern processWide_t<void (*)()> listOutOfMemoryHook;

/// Lists and texts of this module that get no memory throw std::bad_alloc from now on.
void throwWithoutMemory();

/// Whether a value can be moved as memory, so that its new place has it and the old one is free. A list of such values
/// grows in place where it can, and never has both its old and its new room.
template <class T>
inline constexpr bool isMovableAsMemory = std::is_trivially_copyable_v<T>;

/// A list of `T`. An append to an empty list without room makes room for `FirstCapacity` elements, and an append to a
/// full one doubles the room.
template <class T, std::int32_t FirstCapacity = 10>
class growableList_t {
public:
    using value_type = T;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = T &;
    using const_reference = const T &;
    using iterator = T *;
    using const_iterator = const T *;

    growableList_t() = default;
    growableList_t(std::initializer_list<T> values) : growableList_t(values.begin(), values.end()) {}
    /// Copies of the values of a range.
    template <std::input_iterator Iterator, std::sentinel_for<Iterator> End>
    requires std::constructible_from<T, std::iter_reference_t<Iterator>> growableList_t(Iterator first, End last) {
        if constexpr (std::sized_sentinel_for<End, Iterator>)
            reserve(last - first);
        for (; first != last; ++first)
            add(T(*first));
    }
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
    size_type size() const { return static_cast<size_type>(count_); }
    std::int32_t capacity() const { return capacity_; }
    bool isEmpty() const { return count_ == 0; }
    bool empty() const { return isEmpty(); }

    /// The same values in the same order.
    bool operator==(const growableList_t &other) const requires std::equality_comparable<T> {
        return std::equal(begin(), end(), other.begin(), other.end());
    }

    /// The element at `index`, which must be at least 0 and below count(); it is not checked.
    T &at(std::int32_t index) { return items_[index]; }
    const T &at(std::int32_t index) const { return items_[index]; }
    T &operator[](std::int32_t index) { return items_[index]; }
    const T &operator[](std::int32_t index) const { return items_[index]; }
    T &operator[](std::integral auto index) { return items_[index]; }
    const T &operator[](std::integral auto index) const { return items_[index]; }
    T &front() { return items_[0]; }
    const T &front() const { return items_[0]; }
    T &back() { return items_[count_ - 1]; }
    const T &back() const { return items_[count_ - 1]; }

    T *data() { return items_; }
    const T *data() const { return items_; }
    T *begin() { return items_; }
    T *end() { return items_ + count_; }
    const T *begin() const { return items_; }
    const T *end() const { return items_ + count_; }

    // Values that are given to be added may be elements of this list.

    /// Appends a copy of `value`, or the value itself, and returns the new element.
    T &add(const T &value) { return count_ < capacity_ ? append(value) : add(T(value)); }
    T &add(T &&value) {
        if (count_ < capacity_)
            return append(std::move(value));
        T kept(std::move(value));
        growTo(count_ > 0 ? doubled() : FirstCapacity);
        return append(std::move(kept));
    }
    void push_back(const T &value) { add(value); }
    void push_back(T &&value) { add(std::move(value)); }

    /// Appends a value-initialised element.
    T &add() {
        if (count_ == capacity_)
            growTo(count_ > 0 ? doubled() : FirstCapacity);
        return *new (items_ + count_++) T();
    }

    /// Inserts a copy of the value, or of the values of a range, before `position`. Returns the first inserted element.
    iterator insert(const_iterator position, const T &value) { return insert(position, T(value)); }
    iterator insert(const_iterator position, T &&value) {
        const difference_type index = position - items_;
        add(std::move(value));
        return rotated(index, count_ - 1);
    }
    iterator insert(const_iterator position, std::initializer_list<T> values) {
        return insert(position, values.begin(), values.end());
    }
    template <std::input_iterator Iterator, std::sentinel_for<Iterator> End>
    requires std::constructible_from<T, std::iter_reference_t<Iterator>> iterator insert(const_iterator position,
                                                                                         Iterator first, End last) {
        const difference_type index = position - items_, before = count_;
        for (T &value : growableList_t(std::move(first), std::move(last)))
            add(std::move(value));
        return rotated(index, before);
    }

    /// Removes the elements from `first` to before `last`, or one. Returns the element behind them.
    iterator erase(const_iterator first, const_iterator last) {
        iterator const place = items_ + (first - items_);
        if (first != last)
            truncate(std::move(items_ + (last - items_), end(), place) - items_);
        return place;
    }
    iterator erase(const_iterator position) { return erase(position, position + 1); }
    void pop_back() { truncate(count_ - 1); }

    /// Makes room for `capacity` elements in all, exactly, when there is less; otherwise does nothing.
    void reserve(std::integral auto capacity) {
        if (const std::int32_t wanted = checked(capacity); wanted > capacity_)
            growTo(wanted);
    }

    /// Drops elements from the end, or appends value-initialised ones. A negative count is taken as 0.
    void resize(std::integral auto count) {
        const std::int32_t wanted = checked(count);
        truncate(wanted);
        if (count_ < wanted)
            reserve(wanted);
        while (count_ < wanted)
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

    /// A count as lists keep it. A negative one is taken as 0.
    static std::int32_t checked(std::integral auto count) {
        if (std::cmp_greater(count, INT32_MAX))
            outOfMemory();
        return std::cmp_less(count, 0) ? 0 : static_cast<std::int32_t>(count);
    }

    /// For values while there is room.
    template <class Value>
    T &append(Value &&value) {
        return *new (items_ + count_++) T(std::forward<Value>(value));
    }

    /// Moves the elements from `middle` on to `index`.
    iterator rotated(difference_type index, difference_type middle) {
        std::rotate(items_ + index, items_ + middle, end());
        return items_ + index;
    }

    void truncate(std::ptrdiff_t count) {
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

    [[gnu::noinline]] void growTo(std::int32_t capacity) { // rare, and therefore once
        if (static_cast<std::size_t>(capacity) > SIZE_MAX / sizeof(T))
            outOfMemory();
        const std::size_t bytes = static_cast<std::size_t>(capacity) * sizeof(T);
        if constexpr (isMovableAsMemory<T>) {
            auto *grown = static_cast<T *>(std::realloc(static_cast<void *>(items_), bytes));
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
        if (const auto hook = listOutOfMemoryHook.get())
            hook();
        std::fputs("out of memory\n", stderr);
        std::exit(1);
    }

    T *items_ = nullptr;
    std::int32_t capacity_ = 0;
    std::int32_t count_ = 0;
};

} // namespace vek
