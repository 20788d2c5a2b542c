// obj_t, the root of the object model: comparing, hashing, printing, and a descriptor for each class.
//
// An object does not own anything here. A class that counts its memberships in collections overrides addedTo and
// removedFrom; obj_t keeps no count. A class's descriptor is made, and entered in the default group of the persistence
// registry, when it is first asked for.
//
// Thread rule: an object is one thread's at a time; the live counter counts every thread, and the print flags may be
// changed by any. Descriptors are made and registered by one thread at a time.
#pragma once

#include "vek/vek_std/std_sys/vek_pers.hpp"

#include <cstdint>
#include <iosfwd>

namespace vek {

struct objCltn_t;
class persIOtab_t;

/// What printOn shows of an object; the word of flags is obj_t::printFlags.
enum printFlag_t : std::uint32_t {
    withoutClassName = 0x1,
    withAddress = 0x2,
    withoutMembershipCount = 0x4,
    withoutArrayCounts = 0x8000
};

class obj_t {
public:
    obj_t() { liveObjects_.fetchAdd(1); }
    obj_t(const obj_t &) { liveObjects_.fetchAdd(1); }
    obj_t &operator=(const obj_t &) = default;

    // The virtual operations, in the order of their slots.

    /// The descriptor of the object's class.
    virtual classDescriptor_t &classDescriptor() const;
    /// Storing and loading through a persistence table; nothing by default.
    virtual void store(persIOtab_t &table) const;
    virtual void load(persIOtab_t &table);
    virtual ~obj_t() { liveObjects_.fetchAdd(-1); }
    /// -1, 0 or 1; by default the order of the addresses.
    virtual int compare(const obj_t &other) const;
    /// By default the low 32 bits of the address.
    virtual std::uint32_t hash() const;
    /// How many collections hold the object; 0 when it keeps no count.
    virtual std::int32_t membershipCount();
    /// Notes that a collection let the object go, and returns the remaining count. A null collection only probes.
    virtual std::int32_t removedFrom(objCltn_t *collection);
    /// Notes that a collection took the object.
    virtual void addedTo(objCltn_t *collection);
    /// Does this object come before the other, or compare equal?
    virtual bool isOrdered(const obj_t &other) const;
    virtual const char *className() const;
    /// Prints address, class name and membership count, as the print flags say.
    virtual void printOn(std::ostream &stream);
    /// The descriptor under which the persistence layer files the object: that of its class.
    virtual classDescriptor_t &persistentDescriptor() const;

    static classDescriptor_t &descriptor();
    /// Objects alive in the process.
    static std::int32_t liveCount() { return liveObjects_; }

    static processWide_t<std::uint32_t> printFlags;

private:
    static processWide_t<std::int32_t> liveObjects_;
};

/// Prints the object, which stays as it is, or "NULL".
std::ostream &operator<<(std::ostream &stream, const obj_t *object);

/// A factory for class descriptors.
template <class Class>
obj_t *makeInstance() {
    return new Class;
}

/// The one descriptor of a class, made and registered in the default group at the first call. It keeps the name's
/// characters, which must outlive it.
template <class Class>
classDescriptor_t &describe(char *name) {
    static classDescriptor_t described{.name = name, .factory = makeInstance<Class>};
    [[maybe_unused]] static const bool isRegistered = [] {
        registerClass(described);
        return true;
    }();
    return described;
}

} // namespace vek
