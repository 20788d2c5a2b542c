// Container: the structure of a message that is a list of items.
//
// It owns its items and deletes them; its storage comes from the library's allocator. Not safe for concurrent use.
#pragma once

#include "vek/records/messageBase.hpp"

#include <algorithm>
#include <cstdint>
#include <memory>

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
    std::int32_t capacity() const { return block_->capacity; }

    /// The pointer to the item at `index`, which must be at least 0 and below count(); it is not checked.
    Item *at(std::int32_t index) { return block_->items[index]; }
    const Item *at(std::int32_t index) const { return block_->items[index]; }

    /// Appends an item and returns it. The first form takes ownership of the pointer, also when it fails; the second
    /// appends a copy, which may be of an item of this container; the third makes an item with its declared defaults.
    /// Throw std::bad_alloc.
    Item *add(Item *item) {
        std::unique_ptr<Item> owned(item);
        if (block_->count == block_->capacity)
            grow();
        return block_->items[block_->count++] = owned.release();
    }
    Item &add(const Item &item) { return *add(new Item(item)); }
    Item &add() { return *add(new Item()); }

    /// Deletes every item; the capacity is kept.
    void clear() {
        while (block_->count > 0)
            delete block_->items[--block_->count];
    }

    /// The pointers to the items: `for (Cassette *cassette : cassettes)`.
    Item *const *begin() { return block_->items; }
    Item *const *end() { return block_->items + block_->count; }
    const Item *const *begin() const { return block_->items; }
    const Item *const *end() const { return block_->items + block_->count; }

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

    void addAll(const Container &other) {
        for (const Item *item : other)
            add(item != nullptr ? new Item(*item) : nullptr);
    }

    void grow() {
        const std::int32_t room = 2 * block_->capacity;
        auto **items = new Item *[static_cast<std::size_t>(room)];
        std::copy(begin(), end(), items);
        delete[] block_->items;
        block_->items = items;
        block_->capacity = room;
    }

    containerBlock_t<Item> *block_;
};

} // namespace vek
