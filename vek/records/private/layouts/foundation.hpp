// Layouts of the types that message structures are made of: sizes, texts, lists, ranges, containers.
#pragma once

#include "vek/records/container.hpp"
#include "vek/records/messageBase.hpp"
#include "vek/records/private/layouts/layout.hpp"
#include "vek/text/growableList.hpp"
#include "vek/text/valueRange.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

// offsetof in classes with a virtual table or hidden members is left to compilers; all that build this support it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace vek {

// clang-format off: one line a member

template <>
struct layoutOf<vekSize> : pinned_t<vekSize, void, 16, 16> {
    static constexpr std::array members{
        VEK_MEMBER(double, width, 0, 0),
        VEK_MEMBER(double, height, 8, 8),
    };
};

template <>
struct layoutOf<stringRep_t> : pinned_t<stringRep_t, void, 80, 88> {
    static constexpr std::array members{
        VEK_MEMBER(uint32_t, referenceCount, 0, 0), VEK_MEMBER(char *, data, 4, 8),
        VEK_MEMBER(uint32_t, length, 8, 16),        VEK_MEMBER(uint32_t, capacity, 12, 20),
        VEK_MEMBER(char[64], room, 16, 24),
    };
};

template <>
struct layoutOf<string_t> : pinned_t<string_t, void, 4, 8> {
    static constexpr std::array members{
        VEK_MEMBER(stringRep_t *, body, 0, 0),
    };
};

template <class T, std::int32_t FirstCapacity>
struct layoutOf<growableList_t<T, FirstCapacity>> : pinned_t<growableList_t<T, FirstCapacity>, void, 12, 16> {
    using structure_t = growableList_t<T, FirstCapacity>;
    static constexpr std::string_view name = "growableList_t<T>";
    static constexpr std::array members{
        VEK_MEMBER(T *, items_, 0, 0),
        VEK_MEMBER(int32_t, capacity_, 4, 8),
        VEK_MEMBER(int32_t, count_, 8, 12),
    };
};

template <>
struct layoutOf<valueRange_t> : pinned_t<valueRange_t, void, 16, 24> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, kind, 0, 0),
        VEK_MEMBER(valueRange_t::values_t, values_, 4, 8),
    };
};

template <>
struct layoutOf<MessageBase> : pinned_t<MessageBase, void, 8, 16> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, kind, 4, 8),
    };
};

template <class Item>
struct layoutOf<containerBlock_t<Item>> : pinned_t<containerBlock_t<Item>, void, 12, 16> {
    using structure_t = containerBlock_t<Item>;
    static constexpr std::string_view name = "containerBlock_t<Item>";
    static constexpr std::array members{
        VEK_MEMBER(Item **, items, 0, 0),
        VEK_MEMBER(int32_t, capacity, 4, 8),
        VEK_MEMBER(int32_t, count, 8, 12),
    };
};

template <class Item>
struct layoutOf<Container<Item>> : pinned_t<Container<Item>, MessageBase, 12, 24> {
    using structure_t = Container<Item>;
    static constexpr std::string_view name = "Container<Item>";
    static constexpr std::array members{
        VEK_MEMBER(containerBlock_t<Item> *, block_, 8, 16),
    };
};

// clang-format on

inline constexpr layoutFamily_t sizeLayouts{"vek/records/messages.h", layouts<vekSize>};
inline constexpr layoutFamily_t stringLayouts{"vek/vek_std/std_sys/vek_string.hpp", layouts<string_t, stringRep_t>};
inline constexpr layoutFamily_t listLayouts{"vek/text/growableList.hpp", layouts<growableList_t<string_t>>};
inline constexpr layoutFamily_t rangeLayouts{"vek/text/valueRange.hpp", layouts<valueRange_t>};
inline constexpr layoutFamily_t containerLayouts{"vek/records/container.hpp",
                                                 layouts<Container<string_t>, containerBlock_t<string_t>>};

} // namespace vek

#pragma GCC diagnostic pop
