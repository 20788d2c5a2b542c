// Layouts of the message structures of the device itself.
#pragma once

#include "vek/records/device.hpp"
#include "vek/records/private/layouts/foundation.hpp"

// offsetof in classes with a virtual table or hidden members is left to compilers; all that build this support it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace vek {

// clang-format off: one line a member

template <>
struct layoutOf<DeviceId> : pinned_t<DeviceId, MessageBase, 36, 64> {
    static constexpr std::array members{
        VEK_MEMBER(string_t, deviceName, 8, 16),
        VEK_MEMBER(string_t, deviceSerialNum, 12, 24),
        VEK_MEMBER(valueRange_t, resolution, 16, 32),
        VEK_MEMBER(int32_t, extra, 32, 56),
    };
};

template <>
struct layoutOf<DeviceInfo> : pinned_t<DeviceInfo, DeviceId, 192, 256, 264> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, unloadMediaType, 36, 60, 64),  VEK_MEMBER(int32_t, numOfCassette, 40, 64, 68),
        VEK_MEMBER(int32_t, numLaserBeams, 44, 68, 72),    VEK_MEMBER(vekSize, maxDrumSize, 48, 72, 80),
        VEK_MEMBER(vekSize, maxExposeSize, 64, 88, 96),    VEK_MEMBER(vekSize, align, 80, 104, 112),
        VEK_MEMBER(vekSize, addition, 96, 120, 128),       VEK_MEMBER(valueRange_t, spinnerSpeed, 112, 136, 144),
        VEK_MEMBER(valueRange_t, laserInt, 128, 160, 168), VEK_MEMBER(valueRange_t, focusValue, 144, 184, 192),
        VEK_MEMBER(valueRange_t, resMotor, 160, 208, 216), VEK_MEMBER(valueRange_t, ddbDelay, 176, 232, 240),
    };
};

template <>
struct layoutOf<DeviceInfo2> : pinned_t<DeviceInfo2, DeviceInfo, 192, 256, 264> {};

template <>
struct layoutOf<Version> : pinned_t<Version, MessageBase, 24, 32> {
    static constexpr std::array members{
        VEK_MEMBER(double, version, 8, 16),
        VEK_MEMBER(int32_t, hwVersion, 16, 24),
    };
};

template <>
struct layoutOf<ByteId> : pinned_t<ByteId, MessageBase, 12, 16, 24> {
    static constexpr std::array members{
        VEK_MEMBER(uint8_t, id, 8, 12, 16),
    };
};

template <>
struct layoutOf<DeviceState> : pinned_t<DeviceState, MessageBase, 12, 16, 24> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, deviceState, 8, 12, 16),
    };
};

template <>
struct layoutOf<DataPathPort> : pinned_t<DataPathPort, MessageBase, 20, 32> {
    static constexpr std::array members{
        VEK_MEMBER(growableList_t<int16_t>, dataPathPort, 8, 16),
    };
};

template <>
struct layoutOf<NarrowMode> : pinned_t<NarrowMode, MessageBase, 16, 24> {
    static constexpr std::array members{
        VEK_MEMBER(uint8_t, narrowMode, 8, 12, 16),
        VEK_MEMBER(int32_t, jobId, 12, 16, 20),
    };
};

template <>
struct layoutOf<SupportDataPorts> : pinned_t<SupportDataPorts, MessageBase, 12, 16, 24> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, supportDataPortsId, 8, 12, 16),
    };
};

// clang-format on

inline constexpr layoutFamily_t deviceLayouts{"vek/records/device.hpp",
                                              layouts<DeviceId, DeviceInfo, DeviceInfo2, Version, ByteId, DeviceState,
                                                      DataPathPort, NarrowMode, SupportDataPorts>};

} // namespace vek

#pragma GCC diagnostic pop
