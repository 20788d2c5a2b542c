// Message structures of the device itself: identity and limits, version, state, ports.
//
// Sizes are pairs of width and height. A message's structure has its members in the order of its keys.
#pragma once

#include "vek/api/vekParams2ASCII.h"
#include "vek/records/messageBase.hpp"
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

protected:
    explicit DeviceId(std::int32_t messageKind) : MessageBase(messageKind) {}
};

/// 4096
class DeviceInfo : public DeviceId {
public:
    DeviceInfo() : DeviceInfo(0) {}

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

protected:
    explicit DeviceInfo(std::int32_t messageKind) : DeviceId(messageKind) {
        for (valueRange_t *range : {&spinnerSpeed, &laserInt, &focusValue}) {
            range->values().reserve(2);
            range->setInterval(-1.0, -1.0);
        }
    }
};

/// 4136
class DeviceInfo2 : public DeviceInfo {
public:
    DeviceInfo2() : DeviceInfo(40) {}
};

/// 4097
class Version : public MessageBase {
public:
    Version() : MessageBase(1) {}

    double version = 0.0;
    std::int32_t hwVersion = 0;
};

/// 4117
class ByteId : public MessageBase {
public:
    ByteId() : MessageBase(21) {}

    std::uint8_t id = 0; ///< a flag, 0 or 1
};

/// 4118
class DeviceState : public MessageBase {
public:
    DeviceState() : MessageBase(22) {}

    std::int32_t deviceState = 0;
};

/// 4119
class DataPathPort : public MessageBase {
public:
    DataPathPort() : MessageBase(23) {}

    growableList_t<std::int16_t> dataPathPort;
};

/// 4132
class NarrowMode : public MessageBase {
public:
    NarrowMode() : MessageBase(36) {}

    std::uint8_t narrowMode = 0; ///< 0 or 1
    std::int32_t jobId = 0;
};

/// 4135
class SupportDataPorts : public MessageBase {
public:
    SupportDataPorts() : MessageBase(39) {}

    std::int32_t supportDataPortsId = 0;
};

} // namespace vek
