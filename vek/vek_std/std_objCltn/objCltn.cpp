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

constinit std::int32_t objArray_t::liveArrays = 0;

objArray_t::objArray_t(std::uint32_t expansion) : xpnd_value(expansion > 0 ? expansion : defaultExpansion) {
    ++liveArrays;
}

objArray_t::objArray_t(const objArray_t &other) : objArray_t(other.xpnd_value) {
    addAll(other);
}

objArray_t::~objArray_t() {
    --liveArrays;
    objArray_t::clear();
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
        xpnd_value = array->xpnd_value;
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

/// Gives the array exactly so many slots; false, with the old ones, when there is no memory.
bool objArray_t::setSlots(std::uint32_t slots) {
    if (slots == 0) {
        std::free(std::exchange(items, nullptr));
        return true;
    }
    void *resized = std::realloc(items, slots * slotSize);
    if (resized)
        items = static_cast<obj_t **>(resized);
    return resized != nullptr;
}

obj_t *objArray_t::add(obj_t *element) {
    if (!element || (nObjs % xpnd_value == 0 && !setSlots(nObjs + xpnd_value)))
        return nullptr;
    items[nObjs++] = element;
    element->addedTo(this);
    return element;
}

obj_t *objArray_t::removeAt(std::uint32_t index) {
    if (index >= nObjs)
        return nullptr;
    obj_t *element = items[index];
    --nObjs;
    std::memmove(items + index, items + index + 1, (nObjs - index) * slotSize);
    element->removedFrom(this);
    if (nObjs % xpnd_value == 0)
        setSlots(nObjs);
    return element;
}

void objArray_t::clear() {
    for (std::uint32_t i = 0; i < nObjs; ++i)
        items[i]->removedFrom(this);
    nObjs = 0;
    setSlots(0);
}

void objArray_t::printOn(std::ostream &stream) {
    obj_t::printOn(stream);
    if (!(printFlags & withoutArrayCounts))
        stream << ". nObjs=" + std::to_string(nObjs) + ". xpnd_value=" + std::to_string(xpnd_value);
}

} // namespace vek
