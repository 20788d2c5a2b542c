// Message structures of the device itself: identity and limits, version, state, ports.
//
// Sizes are pairs of width and height. A message's structure has its members in the order of its keys.
#pragma once

#include "vek/records/messageBase.hpp"
#include "vek/records/messages.hpp"
#include "vek/text/growableList.hpp"
#include "vek/text/valueRange.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <cstdint>

namespace vek {

using Size = ::vekSize;

/// The device's identity, the first part of DeviceInfo.
class DeviceId : public MessageBase {
public:
    DeviceId() = default;

    string_t deviceName;
    string_t deviceSerialNum;
    valueRange_t resolution;
    std::int32_t extra = 0; ///< has no key, no conversion changes it
#if defined(_WIN64)
    std::int32_t filling_ = 0; ///< as in MessageBase
#endif

    bool operator==(const DeviceId &) const = default;

protected:
    explicit DeviceId(vekMessageId id) : MessageBase(id) {}
};

/// 4096
class DeviceInfo : public DeviceId {
public:
    DeviceInfo() : DeviceInfo(VEK_MSG_DEVICE_INFO) {}

    std::int32_t unloadMediaType = 0;
    std::int32_t numOfCassette = 1;
    std::int32_t numLaserBeams = 1;
    Size maxDrumSize{};
    Size maxExposeSize{};
    Size align{};
    Size addition{};
    valueRange_t spinnerSpeed; ///< from -1.0 to -1.0 by default, like the next two
    valueRange_t laserInt;
    valueRange_t focusValue;
    valueRange_t resMotor;
    valueRange_t ddbDelay;

    bool operator==(const DeviceInfo &) const = default;

protected:
    explicit DeviceInfo(vekMessageId id) : DeviceId(id) {
        for (valueRange_t *range : {&spinnerSpeed, &laserInt, &focusValue}) {
            range->values().reserve(2);
            range->setInterval(-1.0, -1.0);
        }
    }
};

/// 4136
struct DeviceInfo2 : DeviceInfo {
    DeviceInfo2() : DeviceInfo(VEK_MSG_DEVICE_INFO_2) {}
};

/// 4097
struct Version : MessageBase {
    Version() : MessageBase(VEK_MSG_VERSION) {}

    double version = 0.0;
    std::int32_t hwVersion = 0;

    bool operator==(const Version &) const = default;
};

/// 4117
struct ByteId : MessageBase {
    ByteId() : MessageBase(VEK_MSG_BYTE_ID) {}

    std::uint8_t id = 0; ///< a flag, 0 or 1

    bool operator==(const ByteId &) const = default;
};

/// 4118
struct DeviceState : MessageBase {
    DeviceState() : MessageBase(VEK_MSG_DEVICE_STATE) {}

    std::int32_t deviceState = 0;

    bool operator==(const DeviceState &) const = default;
};

/// 4119
struct DataPathPort : MessageBase {
    DataPathPort() : MessageBase(VEK_MSG_DATA_PATH_PORT) {}

    growableList_t<std::int16_t> dataPathPort;

    bool operator==(const DataPathPort &) const = default;
};

/// 4132
struct NarrowMode : MessageBase {
    NarrowMode() : MessageBase(VEK_MSG_NARROW_MODE) {}

    std::uint8_t narrowMode = 0; ///< 0 or 1
    std::int32_t jobId = 0;

    bool operator==(const NarrowMode &) const = default;
};

/// 4135
struct SupportDataPorts : MessageBase {
    SupportDataPorts() : MessageBase(VEK_MSG_SUPPORT_DATA_PORTS) {}

    std::int32_t supportDataPortsId = 0;

    bool operator==(const SupportDataPorts &) const = default;
};

} // namespace vek
