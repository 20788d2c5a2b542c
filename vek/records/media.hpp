// Message structures of the media that the device knows and holds: media types, groups, cassettes.
#pragma once

#include "vek/api/vekParams2ASCII.h"
#include "vek/records/container.hpp"
#include "vek/records/messageBase.hpp"
#include "vek/text/growableList.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <cstdint>

namespace vek {

using Size = ::vekSize;
using MediaParams = ::vekMediaParams;
using MediaContent = ::vekMediaContent;

/// 4098, and in Cassette
class Media : public MessageBase {
public:
    Media() : MessageBase(2) {}

    std::int32_t type = 0;         ///< media type
    std::int32_t exposureType = 1; ///< exposure polarity
    double thick = -1.0;
    double sensitivity = 0.0;
    string_t vendor{"normal"};
    string_t sepName;
    Size size{};
    Size exposeSize{};
};

/// 4100
class Cassette : public MessageBase {
public:
    Cassette() : MessageBase(4) {}

    string_t name;
    Size exposeOffset{};
    Size exposeStart{};
    std::int32_t inputType = 0; ///< transport
    double inputContent = 0.0;
    std::int32_t resIntTableN = 0;
    string_t mediaPosition;
    std::uint8_t isInstalled = 0;          ///< 0 or 1
    std::int32_t numAvailablePunchSys = 0; ///< at most so many names are written
    growableList_t<string_t> punchSysName;
    Media media;
};

/// 4101
class CassetteArray : public Container<Cassette> {
public:
    CassetteArray() : Container(5) {}
};

/// 4103
class MediaOutput : public MessageBase {
public:
    MediaOutput() : MessageBase(7) {}

    double maxOutput = 0.0;
    double outContent = 0.0;
    std::int32_t outputType = 1; ///< transport
};

/// 4112
class FocusValue : public MessageBase {
public:
    FocusValue() : MessageBase(16) {}

    string_t mediaName;
    double focusValue = 0.0;
};

/// 4114, and an item of MediaGroupArray
class MediaGroup : public MessageBase {
public:
    MediaGroup() : MessageBase(18) {}

    string_t groupName;
    std::int32_t isInstalled = 0;
    std::int32_t iCount = 0; ///< a plain value; the list counts itself
    growableList_t<string_t> mediaGroup;
};

/// 4115
class MediaGroupArray : public Container<MediaGroup> {
public:
    MediaGroupArray() : Container(19) {}

    std::int32_t groupCount = 0; ///< a plain value; the container counts itself
};

/// An item of MediaArray
class DeviceMedia : public MessageBase {
public:
    string_t deviceMediaName;
    growableList_t<string_t> colorArray;
    std::int32_t sizeArray = 0; ///< a plain value; the list counts itself
};

/// 4116
class MediaArray : public Container<DeviceMedia> {
public:
    MediaArray() : Container(20) {}

    std::int32_t sizeArray = 0; ///< a plain value; the container counts itself
};

/// 4130
class DeviceMediaNameArray : public Container<string_t> {
public:
    DeviceMediaNameArray() : Container(34) {}
};

} // namespace vek
