#include "vek/vek_std/std_sys/vek_pers.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <cstdio>
#include <cstring>

namespace vek {
namespace {

constexpr char location[] = "vek_std/std_sys/vek_pers";
constexpr std::uint32_t emptyGroupLine = 164;
constexpr char digits[] = "_abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
constexpr std::uint32_t base = 63;

void reportEmptyGroup() {
    report(" : EMPTY_GROUP");
}

/// The value of a character as a digit; characters that are none count 0.
constexpr std::uint32_t digitValue(char c) {
    if (isAsciiLower(c))
        return static_cast<std::uint32_t>(c - 'a') + 1;
    if (isAsciiUpper(c))
        return static_cast<std::uint32_t>(c - 'A') + 27;
    return c >= '0' && c <= '9' ? static_cast<std::uint32_t>(c - '0') + 53 : 0;
}

classDescriptor_t *descriptorIn(const void *entry) {
    return entry ? *static_cast<classDescriptor_t *const *>(entry) : nullptr;
}

std::uint32_t codeKey(const void *entry) {
    const classDescriptor_t *descriptor = descriptorIn(entry);
    return descriptor ? descriptor->code : 0;
}

const char *textOf(const char *name) {
    return name ? name : "";
}
const char *groupName(const classGroup_t *group) {
    return group && group->name ? group->name : "UNKNOWN GROUP";
}

void trim(char *name) {
    if (!name)
        return;
    const char *begin = name;
    while (isAsciiSpace(*begin))
        ++begin;
    std::size_t length = std::strlen(begin);
    while (length > 0 && isAsciiSpace(begin[length - 1]))
        --length;
    if (begin != name)
        std::memmove(name, begin, length);
    if (name[length] != '\0') // a name that needs no trimming may be constant
        name[length] = '\0';
}

void printDuplicate(std::uint32_t code, const classDescriptor_t &loser, const classDescriptor_t &other,
                    bool isDefaultClash = false) {
    std::fprintf(stderr, "\n\avek_persERROR:DUPLICATE %sCODE=%#x\n%s clash with %s\n%s of second code ignored",
                 isDefaultClash ? "DEFAULT " : "", code, textOf(loser.name), textOf(other.name),
                 isDefaultClash ? "'defaultness'" : "persistence");
}

void enter(classDescriptor_t &descriptor, classGroup_t &group) {
    if (!group.table)
        group.table = std::make_unique<wordVtab_t>(codeKey);
    const classDescriptor_t *pointer = &descriptor;
    const classDescriptor_t *stored = descriptorIn(group.table->insert(&pointer));
    if (stored && stored != &descriptor)
        printDuplicate(descriptor.code, descriptor, *stored);
    group.count = group.table->count();
}

void checkSecondCode(classDescriptor_t &descriptor, const classGroup_t &group) {
    const std::uint32_t second = descriptor.secondCode;
    if (second == descriptor.code)
        return;
    hashVtabIterator_t walk(*group.table);
    while (const classDescriptor_t *other = descriptorIn(walk.next())) {
        if (other != &descriptor && (other->code == second || other->secondCode == second)) {
            printDuplicate(second, descriptor, *other);
            descriptor.secondCode = descriptor.code;
        }
    }
}

void makeDefault(classDescriptor_t &descriptor, classGroup_t &group) {
    if (group.defaultDescriptor && group.defaultDescriptor != &descriptor)
        printDuplicate(descriptor.code, descriptor, *group.defaultDescriptor, true);
    else
        group.defaultDescriptor = &descriptor;
}

void printDescriptor(std::int32_t number, const classDescriptor_t &descriptor, bool isDefault) {
    std::printf("\n%4d :%c%#x", number, isDefault ? '[' : ' ', descriptor.code);
    if (descriptor.secondCode != descriptor.code)
        std::printf(" {%#x}", descriptor.secondCode);
    std::printf(" (%s)%c", descriptor.name ? descriptor.name : "NULL", isDefault ? ']' : ' ');
    std::fflush(stdout);
}

} // namespace

constinit errorHook_t emptyGroupHook = reportEmptyGroup;

classGroup_t &defaultClassGroup() {
    static classGroup_t group{"default"};
    return group;
}

std::uint32_t codeOf(const char *name) {
    std::uint32_t code = 0;
    for (const char *c = textOf(name); *c; ++c)
        code = code * base + digitValue(*c);
    return code;
}

const char *nameOf(std::uint32_t code) {
    constexpr std::size_t longest = 8; // a code has six digits at most
    static char name[longest + 1];
    std::size_t begin = longest;
    bool isDigit = true;
    // A name that would begin with a decimal digit gets an underscore before it.
    while (code != 0 || isDigit) {
        name[--begin] = digits[code % base];
        isDigit = name[begin] >= '0' && name[begin] <= '9';
        code /= base;
    }
    std::memmove(name, name + begin, longest - begin + 1);
    return name;
}

void registerClass(classDescriptor_t &descriptor, std::uint32_t flags, classGroup_t *group) {
    trim(descriptor.name);
    descriptor.code = codeOf(descriptor.name);
    if (descriptor.secondCode == 0)
        descriptor.secondCode = descriptor.code;
    if (!group)
        group = descriptor.group ? descriptor.group : &defaultClassGroup();
    for (classGroup_t *entered = group; entered; entered = entered->enclosing) {
        enter(descriptor, *entered);
        checkSecondCode(descriptor, *entered);
        if (entered == group && (flags & defaultOfGroup))
            makeDefault(descriptor, *group);
    }
}

classDescriptor_t *lookup(classGroup_t *group, std::uint32_t code) {
    if (!group)
        group = &defaultClassGroup();
    if (!group->table) {
        signalError(location, emptyGroupLine, emptyGroupHook);
        return group->defaultDescriptor;
    }
    if (classDescriptor_t *found = descriptorIn(group->table->find(code)))
        return found;
    hashVtabIterator_t walk(*group->table);
    while (classDescriptor_t *descriptor = descriptorIn(walk.next())) {
        if (descriptor->secondCode == code)
            return descriptor;
    }
    return group->defaultDescriptor;
}

obj_t *create(classGroup_t *group, std::uint32_t code) {
    const classDescriptor_t *descriptor = lookup(group, code);
    return descriptor && descriptor->factory ? descriptor->factory() : nullptr;
}

obj_t *create(classGroup_t *group, const char *name) {
    return create(group, codeOf(name));
}

void printGroup(const classGroup_t *group, groupKind_t kind) {
    const char *kindName = kind == templateGroup_e ? "TEMPLATE" : kind == macroGroup_e ? "MACRO" : "";
    std::printf("\n%s Group of %s ", kindName, groupName(group));
    for (const classGroup_t *outer = group ? group->enclosing : nullptr; outer; outer = outer->enclosing)
        std::printf(", which enclosed into %s", groupName(outer));
    if (!group || !group->table) {
        std::printf(" is EMPTY.");
        return;
    }
    std::int32_t number = 0;
    hashVtabIterator_t walk(*group->table);
    while (const classDescriptor_t *descriptor = descriptorIn(walk.next()))
        printDescriptor(number++, *descriptor, descriptor == group->defaultDescriptor);
}

} // namespace vek
