// Message structures of the media that the device knows and holds: media types, groups, cassettes.
#pragma once

#include "vek/records/container.hpp"
#include "vek/records/enumerations.hpp"
#include "vek/records/messageBase.hpp"
#include "vek/records/messages.hpp"
#include "vek/text/growableList.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <cstdint>

namespace vek {

using Size = ::vekSize;
using MediaParams = ::vekMediaParams;
using MediaContent = ::vekMediaContent;

/// The vendor of a new Media.
inline constinit const stringRep_t normalVendor = stringRep_t::constant(normalVendor, "normal");

/// 4098, and in Cassette
struct Media : MessageBase {
    Media() : MessageBase(VEK_MSG_MEDIA) {}

    enumMember_t<mediaType_t> type = VEK_MEDIA_FILM;
    enumMember_t<exposurePolarity_t> exposureType = VEK_EXPOSURE_POSITIVE;
    double thick = -1.0;
    double sensitivity = 0.0;
    string_t vendor{normalVendor};
    string_t sepName;
    Size size{};
    Size exposeSize{};

    bool operator==(const Media &) const = default;
};

/// 4100
struct Cassette : MessageBase {
    Cassette() : MessageBase(VEK_MSG_CASSETTE) {}

    string_t name;
    Size exposeOffset{};
    Size exposeStart{};
    enumMember_t<transport_t> inputType = VEK_TRANSPORT_ROLLER;
    double inputContent = 0.0;
    std::int32_t resIntTableN = 0;
    string_t mediaPosition;
    std::uint8_t isInstalled = 0;          ///< 0 or 1
    std::int32_t numAvailablePunchSys = 0; ///< at most so many names are written
    growableList_t<string_t> punchSysName;
    Media media;

    bool operator==(const Cassette &) const = default;
};

/// 4101
struct CassetteArray : MessageContainer<Cassette, VEK_MSG_CASSETTE_ARRAY> {
    using MessageContainer::MessageContainer;
};

/// 4103
struct MediaOutput : MessageBase {
    MediaOutput() : MessageBase(VEK_MSG_MEDIA_OUTPUT) {}

    double maxOutput = 0.0;
    double outContent = 0.0;
    enumMember_t<transport_t> outputType = VEK_TRANSPORT_SHEET;

    bool operator==(const MediaOutput &) const = default;
};

/// 4112
struct FocusValue : MessageBase {
    FocusValue() : MessageBase(VEK_MSG_FOCUS_VALUE) {}

    string_t mediaName;
    double focusValue = 0.0;

    bool operator==(const FocusValue &) const = default;
};

/// 4114, and an item of MediaGroupArray
struct MediaGroup : MessageBase {
    MediaGroup() : MessageBase(VEK_MSG_MEDIA_GROUP) {}

    string_t groupName;
    std::int32_t isInstalled = 0;
    std::int32_t iCount = 0; ///< a plain value; the list counts itself
    growableList_t<string_t> mediaGroup;

    bool operator==(const MediaGroup &) const = default;
};

/// 4115
struct MediaGroupArray : MessageContainer<MediaGroup, VEK_MSG_MEDIA_GROUP_ARRAY> {
    using MessageContainer::MessageContainer;

    std::int32_t groupCount = 0; ///< a plain value; the container counts itself

    bool operator==(const MediaGroupArray &) const = default;
};

/// An item of MediaArray
struct DeviceMedia : MessageBase {
    string_t deviceMediaName;
    growableList_t<string_t> colorArray;
    std::int32_t sizeArray = 0; ///< a plain value; the list counts itself

    bool operator==(const DeviceMedia &) const = default;
};

/// 4116
struct MediaArray : MessageContainer<DeviceMedia, VEK_MSG_MEDIA_ARRAY> {
    using MessageContainer::MessageContainer;

    std::int32_t sizeArray = 0; ///< a plain value; the container counts itself

    bool operator==(const MediaArray &) const = default;
};

/// 4130
struct DeviceMediaNameArray : MessageContainer<string_t, VEK_MSG_DEVICE_MEDIA_NAME_ARRAY> {
    using MessageContainer::MessageContainer;
};

} // namespace vek
