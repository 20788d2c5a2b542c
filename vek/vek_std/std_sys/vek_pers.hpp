// The registry of persistence codes: every class of the object model gets a code made from its name, and groups of
// classes find a class, and make an instance of it, by code or name.
//
// Descriptors, groups and names belong to whoever declares them, usually as statics; they must outlive the groups
// that know them. A group owns its table. Clashes are printed, and the class that came later loses.
//
// Thread rule: classes are registered by one thread at a time, while no other looks one up.
#pragma once

#include "vek/vek_std/std_sys/hashVtab.hpp"

#include <concepts>
#include <cstdint>
#include <memory>

namespace vek {

class obj_t;
struct classGroup_t;

/// Called when a group without classes is searched. Its default reports " : EMPTY_GROUP".
extern processWide_t<errorHook_t> emptyGroupHook;

/// What is known of a class. Null names and zeros are fine; registerClass completes them.
struct classDescriptor_t {
    char *name;                    ///< White space around it is removed in place at registration.
    classGroup_t *group = nullptr; ///< Null: the default group.
    std::uint32_t code = 0;        ///< Of the name.
    std::uint32_t secondCode = 0;  ///< Also finds the class. 0, or one that clashes, becomes the code.
    obj_t *(*factory)() = nullptr; ///< Makes a default instance, which the caller owns.
    std::uintptr_t reserved = 0;
};

/// A set of classes. A class of a group is also one of every enclosing group.
struct classGroup_t {
    const char *name;
    classGroup_t *enclosing = nullptr;
    std::unique_ptr<wordVtab_t> table{};            ///< Descriptor pointers by code, made at the first registration.
    classDescriptor_t *defaultDescriptor = nullptr; ///< What a lookup that finds nothing returns.
    std::int32_t count = 0;                         ///< Descriptors in the table.
};

/// The group of the classes that name none.
classGroup_t &defaultClassGroup();

/// The code of a name: its characters as digits of base 63, modulo 2^32. 0 for null.
std::uint32_t codeOf(const char *name);

/// The characters that a code stands for, up to seven. The text is overwritten by the thread's next call.
const char *nameOf(std::uint32_t code);

/// Flag of registerClass: the class becomes the default of its own group.
constexpr std::uint32_t defaultOfGroup = 0x1;

/// Enters a class into a group, the descriptor's own for null, and into every enclosing one. Clashes are printed on
/// standard error.
void registerClass(classDescriptor_t &descriptor, std::uint32_t flags = 0, classGroup_t *group = nullptr);

/// The class with that code, else with that second code, else the group's default, which may be null. A group that
/// has no table is reported. Null: the default group.
classDescriptor_t *lookup(classGroup_t *group, std::uint32_t code);

/// A new default instance, which the caller owns, of the class that lookup finds; null when it finds none.
obj_t *create(classGroup_t *group, std::uint32_t code);
obj_t *create(classGroup_t *group, const char *name);
/// By any other integer, so that a 0 is a code and no null name.
template <std::integral Code>
obj_t *create(classGroup_t *group, Code code) {
    return create(group, static_cast<std::uint32_t>(code));
}

/// What printGroup calls a group.
enum groupKind_t : std::int32_t { templateGroup_e = 0, macroGroup_e = 1, plainGroup_e = 2 };

/// Prints the classes of a group on standard output. The kind is one of groupKind_t, or its number; any other number
/// stands for a plain group.
void printGroup(const classGroup_t *group, std::int32_t kind = plainGroup_e);

} // namespace vek
