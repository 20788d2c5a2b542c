// objCltn_t, what every collection of objects can do, and objArray_t, the growable array of object pointers.
//
// A collection does not own its elements: whoever made them keeps them alive while they are in it. It tells each
// element when it enters or leaves.
//
// Thread rule: unguarded, and notifications are not to change the collection; one thread at a time.
#pragma once

#include "vek/vek_std/std_objCltn/obj.hpp"

#include <cstdint>

namespace vek {

struct objCltn_t : obj_t {
    /// Removes all elements.
    virtual void clear() = 0;
    /// Adds an element and returns it; null for null, or when there is no memory.
    virtual obj_t *add(obj_t *element) = 0;
    /// Removes the element at this place and returns it; null when there is none.
    virtual obj_t *removeAt(std::uint32_t index) = 0;
    virtual std::uint32_t count() const = 0;
    /// The element at this place; null when there is none.
    virtual obj_t *at(std::uint32_t index) const = 0;
};

/// An array of element pointers, which has room for the next multiple of its expansion step.
class objArray_t : public objCltn_t {
public:
    static constexpr std::uint32_t defaultExpansion = 32;

    /// An empty array; a step of 0 stands for the default.
    explicit objArray_t(std::uint32_t expansion = defaultExpansion);
    /// Takes the step and the elements of the other. Elements that there is no memory for are left out.
    objArray_t(const objArray_t &other);
    objArray_t &operator=(const objArray_t &other);
    /// Takes the elements of the other, and the step when that is an array, in place of its own.
    objArray_t &operator=(const objCltn_t &other);

    classDescriptor_t &classDescriptor() const override;
    ~objArray_t() override;
    /// As obj_t, then ". nObjs=" and ". xpnd_value=".
    void printOn(std::ostream &stream) override;
    void clear() override;
    obj_t *add(obj_t *element) override;
    obj_t *removeAt(std::uint32_t index) override;
    std::uint32_t count() const override { return count_; }
    obj_t *at(std::uint32_t index) const override { return index < count_ ? items_[index] : nullptr; }

    /// How many slots the array grows and shrinks by.
    std::uint32_t expansion() const { return expansion_; }

    static classDescriptor_t &descriptor();
    /// Arrays alive in the process.
    static std::int32_t liveCount() { return liveArrays_; }

private:
    void addAll(const objCltn_t &other);
    bool setSlots(std::uint32_t slots);

    std::uint32_t count_ = 0;
    obj_t **items_ = nullptr; // from the C heap, null when empty
    std::uint32_t expansion_;

    static std::int32_t liveArrays_;
};

} // namespace vek
