// Message structures of the punch systems.
#pragma once

#include "vek/records/container.hpp"
#include "vek/records/messageBase.hpp"
#include "vek/records/messages.hpp"
#include "vek/text/growableList.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <cstdint>

namespace vek {

using Size = ::vekSize;
using PunchParams = ::vekPunchParams;

/// 4099
struct PunchSystem : MessageBase {
    PunchSystem() : MessageBase(VEK_MSG_PUNCH_SYSTEM) {}

    Size center{};
    double minFilmFeed = -1.0;
    double pitch = 0.0;
    string_t position;
    string_t system;
    std::int32_t index = -1;
    std::int32_t numOfUnits = 0; ///< at most so many locations of each list are written
    growableList_t<double> wUnitLocation;
    growableList_t<double> hUnitLocation;

    bool operator==(const PunchSystem &) const = default;
};

/// 4102
struct PunchArray : MessageContainer<PunchSystem, VEK_MSG_PUNCH_ARRAY> {
    using MessageContainer::MessageContainer;
};

} // namespace vek
