// Layouts of the message structures of the punch systems.
#pragma once

#include "vek/records/private/layouts/foundation.hpp"
#include "vek/records/punch.hpp"

// offsetof in classes with a virtual table or hidden members is left to compilers; all that build this support it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace vek {

// clang-format off: one line a member

template <>
struct layoutOf<PunchSystem> : pinned_t<PunchSystem, MessageBase, 80, 104> {
    static constexpr std::array members{
        VEK_MEMBER(vekSize, center, 8, 16),
        VEK_MEMBER(double, minFilmFeed, 24, 32),
        VEK_MEMBER(double, pitch, 32, 40),
        VEK_MEMBER(string_t, position, 40, 48),
        VEK_MEMBER(string_t, system, 44, 56),
        VEK_MEMBER(int32_t, index, 48, 64),
        VEK_MEMBER(int32_t, numOfUnits, 52, 68),
        VEK_MEMBER(growableList_t<double>, wUnitLocation, 56, 72),
        VEK_MEMBER(growableList_t<double>, hUnitLocation, 68, 88),
    };
};

template <>
struct layoutOf<PunchArray> : pinned_t<PunchArray, Container<PunchSystem>, 12, 24> {};

template <>
struct layoutOf<vekPunchParams> : pinned_t<vekPunchParams, void, 48, 48> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, numSystems, 0, 0),
        VEK_MEMBER(int32_t, align, 4, 4),
        VEK_MEMBER(int32_t[10], activeSystems, 8, 8),
    };
};

// clang-format on

inline constexpr layoutFamily_t punchLayouts{"vek/records/punch.hpp", layouts<PunchSystem, PunchArray, vekPunchParams>};

} // namespace vek

#pragma GCC diagnostic pop
