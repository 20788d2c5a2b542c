#include "vek/vek_std/std_objCltn/objCltn.hpp"

#include <cstdlib>
#include <cstring>
#include <ostream>
#include <string>
#include <utility>

namespace vek {

namespace {

constexpr std::size_t slotSize = sizeof(void *);

} // namespace

constinit std::int32_t objArray_t::liveArrays_ = 0;

objArray_t::objArray_t(std::uint32_t expansion) : expansion_(expansion > 0 ? expansion : defaultExpansion) {
    ++liveArrays_;
}

objArray_t::objArray_t(const objArray_t &other) : objArray_t(other.expansion_) {
    addAll(other);
}

objArray_t::~objArray_t() {
    --liveArrays_;
    objArray_t::clear(); // the elements live on, and count their memberships
}

objArray_t &objArray_t::operator=(const objArray_t &other) {
    if (this != &other)
        *this = static_cast<const objCltn_t &>(other);
    return *this;
}

objArray_t &objArray_t::operator=(const objCltn_t &other) {
    if (this == &other)
        return *this;
    clear();
    if (const auto *array = dynamic_cast<const objArray_t *>(&other))
        expansion_ = array->expansion_;
    addAll(other);
    return *this;
}

void objArray_t::addAll(const objCltn_t &other) {
    for (std::uint32_t i = 0; i < other.count(); ++i)
        objArray_t::add(other.at(i));
}

classDescriptor_t &objArray_t::descriptor() {
    static char name[] = "objArray_t";
    return describe<objArray_t>(name);
}

classDescriptor_t &objArray_t::classDescriptor() const {
    return descriptor();
}

// Gives the array exactly so many slots; false, with the old ones, when there is no memory.
bool objArray_t::setSlots(std::uint32_t slots) {
    if (slots == 0) {
        std::free(std::exchange(items_, nullptr));
        return true;
    }
    const std::size_t wanted = slots;
    void *resized = wanted <= SIZE_MAX / slotSize ? std::realloc(items_, wanted * slotSize) : nullptr;
    if (resized != nullptr)
        items_ = static_cast<obj_t **>(resized);
    return resized != nullptr;
}

// The number of slots is not kept: it is always the next multiple of the step, 0 for no elements, so room is used up
// exactly where the count is a multiple. That is why the step changes only while the array is empty.
obj_t *objArray_t::add(obj_t *element) {
    if (element == nullptr || (count_ % expansion_ == 0 && !setSlots(count_ + expansion_)))
        return nullptr;
    items_[count_++] = element;
    element->addedTo(this);
    return element;
}

// The element learns of it when it is out of the array already, so that it may look. That shrinking gets no memory does
// not matter: the larger block serves as well.
obj_t *objArray_t::removeAt(std::uint32_t index) {
    if (index >= count_)
        return nullptr;
    obj_t *element = items_[index];
    --count_;
    std::memmove(items_ + index, items_ + index + 1, (count_ - index) * slotSize);
    element->removedFrom(this);
    if (count_ % expansion_ == 0)
        setSlots(count_);
    return element;
}

void objArray_t::clear() {
    for (std::uint32_t i = 0; i < count_; ++i)
        items_[i]->removedFrom(this);
    count_ = 0;
    setSlots(0);
}

void objArray_t::printOn(std::ostream &stream) {
    obj_t::printOn(stream);
    if ((printFlags & withoutArrayCounts) == 0)
        stream << ". nObjs=" + std::to_string(count_) + ". xpnd_value=" + std::to_string(expansion_);
}

} // namespace vek
