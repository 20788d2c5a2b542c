// Container: the structure of a message that is a list of items.
//
// It has the operations of a standard sequence of pointers to its items; the pointers themselves are the container's,
// so an item is replaced by replace(), or by assigning to it. Positions may be of any integer type.
//
// It owns its items and deletes them; its storage comes from the library's allocator. Not safe for concurrent use.
#pragma once

#include "vek/records/messageBase.hpp"
#include "vek/text/growableList.hpp"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <new>
#include <utility>

namespace vek {

/// Where a container's items are.
template <class Item>
struct containerBlock_t {
    Item **items;
    std::int32_t capacity;
    std::int32_t count;
};

/// Items are held by pointer; a null pointer is allowed and stands for an item with its structure's declared defaults.
template <class Item>
class Container : public MessageBase {
public:
    using value_type = Item;
    using iterator = Item *const *;
    using const_iterator = const Item *const *;

    Container(const Container &other) : Container(VEK_MSG_DEVICE_INFO, other.count()) {
        kind = other.kind;
        addAll(other);
    }
    Container &operator=(const Container &other) {
        if (this != &other) {
            clear();
            addAll(other);
        }
        return *this;
    }
    ~Container() override {
        clear();
        delete[] block_->items;
        delete block_;
    }

    std::int32_t count() const { return block_->count; }
    std::size_t size() const { return static_cast<std::size_t>(block_->count); }
    bool empty() const { return block_->count == 0; }
    std::int32_t capacity() const { return block_->capacity; }

    /// Equal items in the same order. A null pointer equals only another.
    bool operator==(const Container &other) const {
        return std::equal(begin(), end(), other.begin(), other.end(), [](const Item *one, const Item *another) {
            return one == another || (one != nullptr && another != nullptr && *one == *another);
        });
    }

    /// The pointer to the item at `index`, which must be at least 0 and below count(); it is not checked.
    Item *at(std::int32_t index) { return block_->items[index]; }
    const Item *at(std::int32_t index) const { return block_->items[index]; }
    Item *operator[](std::int32_t index) { return block_->items[index]; }
    const Item *operator[](std::int32_t index) const { return block_->items[index]; }
    Item *operator[](std::integral auto index) { return block_->items[index]; }
    const Item *operator[](std::integral auto index) const { return block_->items[index]; }

    // What takes a pointer takes ownership of it, also when it fails. What takes an item copies it; the item may be of
    // this container. All may throw std::bad_alloc.

    /// Appends an item and returns it; without an argument, one with its declared defaults.
    Item *add(Item *item) {
        std::unique_ptr<Item> owned(item);
        if (block_->count == block_->capacity)
            grow();
        return block_->items[block_->count++] = owned.release();
    }
    Item &add(const Item &item) { return *add(new Item(item)); }
    Item &add() { return *add(new Item()); }
    void push_back(const Item &item) { add(item); }

    /// Inserts a copy of the item, or of the items of a range, before `position`. Returns where the first one is.
    iterator insert(const_iterator position, const Item &item) { return insert(position, &item, &item + 1); }
    iterator insert(const_iterator position, std::initializer_list<Item> items) {
        return insert(position, items.begin(), items.end());
    }
    template <std::input_iterator Iterator, std::sentinel_for<Iterator> End>
    requires std::constructible_from<Item, std::iter_reference_t<Iterator>> iterator insert(const_iterator position,
                                                                                            Iterator first, End last) {
        const std::ptrdiff_t index = indexOf(position), before = block_->count;
        growableList_t<std::unique_ptr<Item>> made; // the range may go over this container's items
        for (; first != last; ++first)
            made.add(std::make_unique<Item>(*first));
        for (std::unique_ptr<Item> &item : made)
            add(item.release());
        std::rotate(block_->items + index, block_->items + before, block_->items + block_->count);
        return begin() + index;
    }

    /// Puts another item, which is returned, in the place of the one at `index`, which is deleted.
    Item *replace(std::integral auto index, Item *item) {
        std::unique_ptr<Item> old(std::exchange(block_->items[index], item));
        return item;
    }
    Item &replace(std::integral auto index, const Item &item) { return *replace(index, new Item(item)); }

    /// Deletes the items from `first` to before `last`, or one. Returns the place behind them.
    iterator erase(const_iterator first, const_iterator last) {
        Item **const place = block_->items + indexOf(first);
        Item **const rest = block_->items + indexOf(last);
        std::rotate(place, rest, block_->items + block_->count);
        truncate(block_->count - static_cast<std::int32_t>(rest - place));
        return place;
    }
    iterator erase(const_iterator position) { return erase(position, position + 1); }

    /// Makes room for `capacity` items in all, when there is less; otherwise does nothing.
    void reserve(std::integral auto capacity) {
        if (std::cmp_less_equal(capacity, block_->capacity))
            return;
        if (std::cmp_greater(capacity, INT32_MAX))
            throw std::bad_alloc();
        auto **items = new Item *[static_cast<std::size_t>(capacity)];
        std::copy(begin(), end(), items);
        delete[] block_->items;
        block_->items = items;
        block_->capacity = static_cast<std::int32_t>(capacity);
    }

    /// Deletes every item; the capacity is kept.
    void clear() { truncate(0); }

    /// The pointers to the items: `for (Cassette *cassette : cassettes)`.
    iterator begin() { return block_->items; }
    iterator end() { return block_->items + block_->count; }
    const_iterator begin() const { return block_->items; }
    const_iterator end() const { return block_->items + block_->count; }

protected:
    /// With room for `capacity` items; for 10 when less than 1 is asked for.
    explicit Container(vekMessageId id, std::int32_t capacity = 0) : MessageBase(id) {
        const std::int32_t room = capacity < 1 ? 10 : capacity;
        std::unique_ptr<Item *[]> items(new Item *[static_cast<std::size_t>(room)]);
        block_ = new containerBlock_t<Item>{items.get(), room, 0};
        items.release();
    }

private:
    template <class>
    friend struct layoutOf; // pins where the members lie

    // Rare, and therefore once.
    [[gnu::noinline]] void grow() { reserve(2 * std::int64_t{block_->capacity}); }

    void addAll(const Container &other) {
        for (const Item *item : other)
            add(item != nullptr ? new Item(*item) : nullptr);
    }

    std::ptrdiff_t indexOf(const_iterator position) const { return position - begin(); }

    void truncate(std::int32_t count) {
        while (block_->count > count)
            delete block_->items[--block_->count];
    }

    containerBlock_t<Item> *block_;
};

/// The container that is a message's structure: empty, with a requested room, or with copies of items.
template <class Item, vekMessageId Id>
struct MessageContainer : Container<Item> {
    MessageContainer() : Container<Item>(Id) {}
    explicit MessageContainer(std::int32_t capacity) : Container<Item>(Id, capacity) {}
    MessageContainer(std::initializer_list<Item> items) : MessageContainer(items.begin(), items.end()) {}
    template <std::input_iterator Iterator, std::sentinel_for<Iterator> End>
    requires std::constructible_from<Item, std::iter_reference_t<Iterator>> MessageContainer(Iterator first, End last)
        : MessageContainer() {
        this->insert(this->end(), first, last);
    }
};

} // namespace vek
