#include "vek/vek_std/std_sys/vek_pers.hpp"

#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <cstdio>
#include <cstring>

namespace vek {

namespace {

constexpr char location[] = "vek_std/std_sys/vek_pers";
constexpr std::uint32_t emptyGroupLine = 164; // fixed, wherever the code stands
// Codes are written into stored data: the order of the digits and the base can never change. The underscore is zero, so
// a name with leading underscores has the code of the name without them.
constexpr char digits[] = "_abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
constexpr std::uint32_t base = 63;

void reportEmptyGroup() {
    report(" : EMPTY_GROUP");
}

// The value of a character as a digit; characters that are none count 0.
constexpr std::uint32_t digitValue(char c) {
    if (isAsciiLower(c))
        return static_cast<std::uint32_t>(c - 'a') + 1;
    if (isAsciiUpper(c))
        return static_cast<std::uint32_t>(c - 'A') + 27;
    return isDigit(c) ? static_cast<std::uint32_t>(c - '0') + 53 : 0;
}

classDescriptor_t *descriptorIn(const void *entry) {
    return entry != nullptr ? *static_cast<classDescriptor_t *const *>(entry) : nullptr;
}

std::uint32_t codeKey(const void *entry) {
    const classDescriptor_t *descriptor = descriptorIn(entry);
    return descriptor != nullptr ? descriptor->code : 0;
}

const char *textOf(const char *name) {
    return name != nullptr ? name : "";
}
const char *groupName(const classGroup_t *group) {
    return group != nullptr && group->name != nullptr ? group->name : "UNKNOWN GROUP";
}

// In place, since descriptors share the characters with whoever declared them and own none.
void trim(char *name) {
    if (name == nullptr)
        return;
    const char *begin = name;
    while (isSpace(*begin))
        ++begin;
    std::size_t length = std::strlen(begin);
    while (length > 0 && isSpace(begin[length - 1]))
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

// A code that is taken stays with the class that has it. Codes wrap at 32 bits, so two names may share one; what was
// found under it before is found under it still. Entering a class twice is no clash.
void enter(classDescriptor_t &descriptor, classGroup_t &group) {
    if (group.table == nullptr)
        group.table = std::make_unique<wordVtab_t>(codeKey);
    const classDescriptor_t *pointer = &descriptor;
    const classDescriptor_t *stored = descriptorIn(group.table->insert(&pointer));
    if (stored != nullptr && stored != &descriptor)
        printDuplicate(descriptor.code, descriptor, *stored);
    group.count = group.table->count();
}

// Second codes are no keys of the table, so every class is looked at. They are rare, and classes register once.
void checkSecondCode(classDescriptor_t &descriptor, const classGroup_t &group) {
    const std::uint32_t second = descriptor.secondCode;
    if (second == descriptor.code)
        return;
    hashVtabIterator_t walk(*group.table);
    const classDescriptor_t *other = nullptr;
    while ((other = descriptorIn(walk.next())) != nullptr) {
        if (other != &descriptor && (other->code == second || other->secondCode == second)) {
            printDuplicate(second, descriptor, *other);
            descriptor.secondCode = descriptor.code;
        }
    }
}

void makeDefault(classDescriptor_t &descriptor, classGroup_t &group) {
    if (group.defaultDescriptor != nullptr && group.defaultDescriptor != &descriptor)
        printDuplicate(descriptor.code, descriptor, *group.defaultDescriptor, true);
    else
        group.defaultDescriptor = &descriptor;
}

void printDescriptor(std::int32_t number, const classDescriptor_t &descriptor, bool isDefault) {
    std::printf("\n%4d :%c%#x", number, isDefault ? '[' : ' ', descriptor.code);
    if (descriptor.secondCode != descriptor.code)
        std::printf(" {%#x}", descriptor.secondCode);
    std::printf(" (%s)%c", descriptor.name != nullptr ? descriptor.name : "NULL", isDefault ? ']' : ' ');
}

} // namespace

constinit processWide_t<errorHook_t> emptyGroupHook = reportEmptyGroup;

// Made at the first call: classes register while statics are being made, in an order that nobody sets.
classGroup_t &defaultClassGroup() {
    static classGroup_t group{"default"};
    return group;
}

// The base is odd, so none of its powers vanishes modulo 2^32: every character of a long name still counts.
std::uint32_t codeOf(const char *name) {
    std::uint32_t code = 0;
    for (const char *c = textOf(name); *c != '\0'; ++c)
        code = code * base + digitValue(*c);
    return code;
}

const char *nameOf(std::uint32_t code) {
    constexpr std::size_t longest = 8; // a code has six digits at most
    static thread_local char name[longest + 1];
    std::size_t begin = longest;
    bool needsMore = true;
    // No identifier begins with a decimal digit: such a name gets the digit zero, an underscore, before it.
    while (code != 0 || needsMore) {
        name[--begin] = digits[code % base];
        needsMore = isDigit(name[begin]);
        code /= base;
    }
    std::memmove(name, name + begin, longest - begin + 1);
    return name;
}

// Enclosing groups get the class too, so that a lookup need not know which inner group declares it. Only the class's
// own group takes it as its default: what an outer group falls back to is for that group to say.
void registerClass(classDescriptor_t &descriptor, std::uint32_t flags, classGroup_t *group) {
    trim(descriptor.name);
    descriptor.code = codeOf(descriptor.name);
    if (descriptor.secondCode == 0)
        descriptor.secondCode = descriptor.code;
    if (group == nullptr)
        group = descriptor.group != nullptr ? descriptor.group : &defaultClassGroup();
    for (classGroup_t *entered = group; entered != nullptr; entered = entered->enclosing) {
        enter(descriptor, *entered);
        checkSecondCode(descriptor, *entered);
        if (entered == group && (flags & defaultOfGroup) != 0)
            makeDefault(descriptor, *group);
    }
}

// First codes come first, whatever the order of registration: a second code never hides a class's own. An empty group
// is a mistake of the program, not of the data, and is reported; an unknown code is neither.
classDescriptor_t *lookup(classGroup_t *group, std::uint32_t code) {
    if (group == nullptr)
        group = &defaultClassGroup();
    if (group->table == nullptr) {
        signalError(location, emptyGroupLine, emptyGroupHook);
        return group->defaultDescriptor;
    }
    classDescriptor_t *descriptor = descriptorIn(group->table->find(code));
    if (descriptor != nullptr)
        return descriptor;
    hashVtabIterator_t walk(*group->table);
    while ((descriptor = descriptorIn(walk.next())) != nullptr) {
        if (descriptor->secondCode == code)
            return descriptor;
    }
    return group->defaultDescriptor;
}

obj_t *create(classGroup_t *group, std::uint32_t code) {
    const classDescriptor_t *descriptor = lookup(group, code);
    return descriptor != nullptr && descriptor->factory != nullptr ? descriptor->factory() : nullptr;
}

obj_t *create(classGroup_t *group, const char *name) {
    return create(group, codeOf(name));
}

void printGroup(const classGroup_t *group, std::int32_t kind) {
    const char *kindName = kind == templateGroup_e ? "TEMPLATE" : kind == macroGroup_e ? "MACRO" : "";
    std::printf("\n%s Group of %s ", kindName, groupName(group));
    for (const classGroup_t *outer = group != nullptr ? group->enclosing : nullptr; outer != nullptr;
         outer = outer->enclosing)
        std::printf(", which enclosed into %s", groupName(outer));
    if (group == nullptr || group->table == nullptr) {
        std::printf(" is EMPTY.");
    } else {
        std::int32_t number = 0;
        hashVtabIterator_t walk(*group->table);
        const classDescriptor_t *descriptor = nullptr;
        while ((descriptor = descriptorIn(walk.next())) != nullptr)
            printDescriptor(number++, *descriptor, descriptor == group->defaultDescriptor);
    }
    std::fflush(stdout);
}

} // namespace vek
