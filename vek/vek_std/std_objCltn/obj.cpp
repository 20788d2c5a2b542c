#include "vek/vek_std/std_objCltn/obj.hpp"

#include <cstdio>
#include <functional>
#include <ostream>
#include <string>

namespace vek {

namespace {

// Does the object count its memberships? Leaves the count as it was. Found out by trying, since no virtual operation
// tells; two additions, so that a count is left to see also when the object is in no collection.
bool keepsCount(obj_t &object) {
    object.addedTo(nullptr);
    object.addedTo(nullptr);
    const bool isCounting = object.removedFrom(nullptr) > 0;
    object.removedFrom(nullptr);
    return isCounting;
}

} // namespace

constinit processWide_t<std::uint32_t> obj_t::printFlags = 0;
constinit processWide_t<std::int32_t> obj_t::liveObjects_ = 0;

classDescriptor_t &obj_t::descriptor() {
    static char name[] = "obj_t";
    return describe<obj_t>(name);
}

classDescriptor_t &obj_t::classDescriptor() const {
    return descriptor();
}
void obj_t::store(persIOtab_t &) const {}
void obj_t::load(persIOtab_t &) {}

// The order of unrelated addresses is defined for std::less only.
int obj_t::compare(const obj_t &other) const {
    return std::less<>()(&other, this) - std::less<>()(this, &other);
}

std::uint32_t obj_t::hash() const {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(this));
}

// One in and one out: the operations that a counting class overrides tell the count, there is no second place for it.
std::int32_t obj_t::membershipCount() {
    addedTo(nullptr);
    return removedFrom(nullptr);
}

std::int32_t obj_t::removedFrom(objCltn_t *) {
    return 0;
}
void obj_t::addedTo(objCltn_t *) {}
bool obj_t::isOrdered(const obj_t &other) const {
    return compare(other) <= 0;
}
const char *obj_t::className() const {
    return classDescriptor().name;
}

void obj_t::printOn(std::ostream &stream) {
    if ((printFlags & withAddress) != 0) {
        char address[2 * sizeof(void *) + 8];
        std::snprintf(address, sizeof address, "(%p)", static_cast<void *>(this));
        stream << address;
    }
    if ((printFlags & withoutClassName) == 0)
        stream << className();
    if ((printFlags & withoutMembershipCount) == 0 && keepsCount(*this))
        stream << '(' + std::to_string(membershipCount()) + ')';
}

classDescriptor_t &obj_t::persistentDescriptor() const {
    return classDescriptor();
}

// printOn has the slot of an operation that may change its object, but leaves it as it is: also the membership count,
// which it takes up and down again.
std::ostream &operator<<(std::ostream &stream, const obj_t *object) {
    if (object != nullptr)
        const_cast<obj_t *>(object)->printOn(stream);
    else
        stream << "NULL";
    return stream;
}

} // namespace vek
