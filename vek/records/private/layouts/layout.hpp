// How the layout of a structure is pinned: one table a structure, with the place of every member on 32-bit Windows, on
// 64-bit Linux, and on 64-bit Windows where that is another. There MinGW would put a member into what a base leaves
// over at its end, as on Linux, and Microsoft's compiler would not: so their bases leave nothing over.
//
// A table is a specialisation of layoutOf. Its lines are checked against the compiler at hand wherever they are
// compiled, so a member that moves stops the build; documentation reads the same lines at run time. Everything is
// constant: there is nothing to own and nothing to guard.
#pragma once

#include "vek/text/enumField.hpp"
#include "vek/text/members.h"
#include "vek/text/private/typeName.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

namespace vek {

#if defined(_WIN32) || (defined(__linux__) && defined(__LP64__))
inline constexpr bool isPinnedTarget = true;
#else
inline constexpr bool isPinnedTarget = false;
#endif
#if defined(_WIN64)
inline constexpr bool isWindows64 = true;
#else
inline constexpr bool isWindows64 = false;
#endif

/// A number of bytes on each target.
struct bytes_t {
    std::size_t windows32;
    std::size_t linux64;
    std::size_t windows64 = linux64;
    constexpr std::size_t here() const { return sizeof(void *) == 4 ? windows32 : isWindows64 ? windows64 : linux64; }
    constexpr bytes_t operator+(bytes_t other) const {
        return {windows32 + other.windows32, linux64 + other.linux64, windows64 + other.windows64};
    }
};

struct structureLayout_t;

struct memberLayout_t {
    std::string_view name;
    std::string_view type; ///< as it is declared
    bytes_t offset;
    bytes_t size;
    std::size_t alignment;              ///< as compiled here
    const structureLayout_t *structure; ///< the layout of the member's type; null when it has no members
};

struct structureLayout_t {
    std::string_view name;
    bytes_t size;
    bool hasVirtualTable;          ///< then a pointer to it comes first
    bool isOpaque;                 ///< its members are not shown
    const structureLayout_t *base; ///< lies at the start; null when there is none
    std::span<const memberLayout_t> members;
};

/// The table of a structure. What is not public is pinned too: the classes let layoutOf see it.
template <class Structure>
struct layoutOf;

/// What every table states: the structure, its base or void, and its size on each target.
template <class Structure, class Base, std::size_t Windows32, std::size_t Linux64, std::size_t Windows64 = Linux64>
struct pinned_t {
    using structure_t = Structure;
    using base_t = Base;
    static constexpr std::string_view name = typeName<Structure>();
    static constexpr bytes_t size{Windows32, Linux64, Windows64};
    static constexpr std::array<memberLayout_t, 0> members{};
    static_assert(!isPinnedTarget || sizeof(Structure) == size.here(), "the structure has another size");
};

/// For a type of which hosts need the size and the place alone: nothing inside it is pinned or shown.
template <class Structure, std::size_t Windows32, std::size_t Linux64, std::size_t Windows64 = Linux64>
struct opaque_t : pinned_t<Structure, void, Windows32, Linux64, Windows64> {
    static constexpr bool isOpaque = true;
};

template <class T>
concept hasLayout = requires {
    layoutOf<T>::size;
};

template <class T>
concept isOpaqueLayout = requires {
    layoutOf<T>::isOpaque;
};

template <class T>
consteval bytes_t sizeOnTargets() {
    if constexpr (std::is_array_v<T>) {
        const bytes_t element = sizeOnTargets<std::remove_extent_t<T>>();
        constexpr std::size_t count = std::extent_v<T>;
        return {count * element.windows32, count * element.linux64, count * element.windows64};
    } else if constexpr (std::is_pointer_v<T> || std::is_same_v<T, std::size_t>) {
        return {4, 8};
    } else if constexpr (hasLayout<T>) {
        return layoutOf<T>::size;
    } else {
        static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>, "a type without a layout");
        return {sizeof(T), sizeof(T)};
    }
}

template <class T>
consteval structureLayout_t layoutWithoutGaps();

template <class T>
inline constexpr structureLayout_t structureLayout = layoutWithoutGaps<T>();

/// What the tables, and hosts in other languages, take a type to be: a member that holds an enumeration is an integer.
template <class T>
struct plainly_t {
    using type = T;
};
template <class Enumeration>
struct plainly_t<enumMember_t<Enumeration>> {
    using type = std::int32_t;
};
template <class Enumeration>
struct plainly_t<ownEnumFieldOf_t<Enumeration>> {
    using type = ownEnumField_t;
};

/// One line of a table, see VEK_MEMBER. Here is where a table that is wrong stops the build.
template <class Declared, class Stated, std::size_t Offset, std::size_t... Places>
consteval memberLayout_t pinnedMember(std::string_view name, std::string_view type) {
    constexpr bytes_t offset{Places...};
    constexpr bytes_t size = sizeOnTargets<Stated>();
    static_assert(std::is_same_v<typename plainly_t<Declared>::type, Stated> && sizeof(Declared) == sizeof(Stated),
                  "the member has another type");
    static_assert(!isPinnedTarget || Offset == offset.here(), "the member lies elsewhere");
    static_assert(!isPinnedTarget || sizeof(Stated) == size.here(), "the member has another size");
    const structureLayout_t *structure = nullptr;
    if constexpr (hasLayout<Stated>)
        structure = &structureLayout<Stated>;
    return {name, type, offset, size, alignof(Stated), structure};
}

/// A member of the structure: its type, its name, and its offsets on 32-bit Windows, on 64-bit Linux, and on 64-bit
/// Windows where that is another. A macro, because only offsetof tells where a member lies, and the name is wanted as a
/// text too.
#define VEK_MEMBER(type, name, ...)                                                                                    \
    pinnedMember<decltype(structure_t::name), type, offsetof(structure_t, name), __VA_ARGS__>(#name, #type)

/// Where the last member ends, as compiled here; 0 when there is room between members where an unnamed one could be.
template <class T>
consteval std::size_t endOfMembers() {
    using base_t = typename layoutOf<T>::base_t;
    if constexpr (isOpaqueLayout<T>)
        return sizeof(T);
    std::size_t end = std::is_polymorphic_v<T> ? sizeof(void *) : 0;
    if constexpr (!std::is_void_v<base_t>)
        end = isWindows64 ? sizeof(base_t) : endOfMembers<base_t>();
    for (const memberLayout_t &member : layoutOf<T>::members) {
        if (member.offset.here() < end || member.offset.here() - end >= member.alignment)
            return 0;
        end = member.offset.here() + member.size.here();
    }
    return end;
}

/// Whether a structure has a comparison of its own. That of its base takes all for equal whose base is.
template <class T>
concept comparesItself = requires {
    static_cast<bool (T::*)(const T &) const>(&T::operator==);
};

template <class T>
consteval structureLayout_t layoutWithoutGaps() {
    using layout = layoutOf<T>;
    static_assert(!isPinnedTarget || sizeof(T) - endOfMembers<T>() < alignof(T), "a member is not in the table");
    const structureLayout_t *base = nullptr;
    if constexpr (!std::is_void_v<typename layout::base_t>) {
        static_assert(layout::members.empty() || comparesItself<T>, "the structure needs an operator== of its own");
        base = &structureLayout<typename layout::base_t>;
    }
    return {layout::name, layout::size, std::is_polymorphic_v<T>, isOpaqueLayout<T>, base, layout::members};
}

/// The structures that one header declares.
struct layoutFamily_t {
    std::string_view header;
    std::span<const structureLayout_t *const> structures;
};

template <class... Structures>
inline constexpr std::array<const structureLayout_t *, sizeof...(Structures)> layouts{&structureLayout<Structures>...};

} // namespace vek
