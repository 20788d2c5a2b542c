// Layouts of the message structures of media and cassettes.
#pragma once

#include "vek/records/media.hpp"
#include "vek/records/private/layouts/foundation.hpp"

// offsetof in classes with a virtual table or hidden members is left to compilers; all that build this support it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace vek {

// clang-format off: one line a member

template <>
struct layoutOf<Media> : pinned_t<Media, MessageBase, 72, 88> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, type, 8, 12, 16), VEK_MEMBER(int32_t, exposureType, 12, 16, 20),
        VEK_MEMBER(double, thick, 16, 24),    VEK_MEMBER(double, sensitivity, 24, 32),
        VEK_MEMBER(string_t, vendor, 32, 40), VEK_MEMBER(string_t, sepName, 36, 48),
        VEK_MEMBER(vekSize, size, 40, 56),    VEK_MEMBER(vekSize, exposeSize, 56, 72),
    };
};

template <>
struct layoutOf<Cassette> : pinned_t<Cassette, MessageBase, 168, 200> {
    static constexpr std::array members{
        VEK_MEMBER(string_t, name, 8, 16),
        VEK_MEMBER(vekSize, exposeOffset, 16, 24),
        VEK_MEMBER(vekSize, exposeStart, 32, 40),
        VEK_MEMBER(int32_t, inputType, 48, 56),
        VEK_MEMBER(double, inputContent, 56, 64),
        VEK_MEMBER(int32_t, resIntTableN, 64, 72),
        VEK_MEMBER(string_t, mediaPosition, 68, 80),
        VEK_MEMBER(uint8_t, isInstalled, 72, 88),
        VEK_MEMBER(int32_t, numAvailablePunchSys, 76, 92),
        VEK_MEMBER(growableList_t<string_t>, punchSysName, 80, 96),
        VEK_MEMBER(Media, media, 96, 112),
    };
};

template <>
struct layoutOf<CassetteArray> : pinned_t<CassetteArray, Container<Cassette>, 12, 24> {};

template <>
struct layoutOf<MediaOutput> : pinned_t<MediaOutput, MessageBase, 32, 40> {
    static constexpr std::array members{
        VEK_MEMBER(double, maxOutput, 8, 16),
        VEK_MEMBER(double, outContent, 16, 24),
        VEK_MEMBER(int32_t, outputType, 24, 32),
    };
};

template <>
struct layoutOf<FocusValue> : pinned_t<FocusValue, MessageBase, 24, 32> {
    static constexpr std::array members{
        VEK_MEMBER(string_t, mediaName, 8, 16),
        VEK_MEMBER(double, focusValue, 16, 24),
    };
};

template <>
struct layoutOf<MediaGroup> : pinned_t<MediaGroup, MessageBase, 32, 48> {
    static constexpr std::array members{
        VEK_MEMBER(string_t, groupName, 8, 16),
        VEK_MEMBER(int32_t, isInstalled, 12, 24),
        VEK_MEMBER(int32_t, iCount, 16, 28),
        VEK_MEMBER(growableList_t<string_t>, mediaGroup, 20, 32),
    };
};

template <>
struct layoutOf<MediaGroupArray> : pinned_t<MediaGroupArray, Container<MediaGroup>, 16, 32> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, groupCount, 12, 24),
    };
};

template <>
struct layoutOf<DeviceMedia> : pinned_t<DeviceMedia, MessageBase, 28, 48> {
    static constexpr std::array members{
        VEK_MEMBER(string_t, deviceMediaName, 8, 16),
        VEK_MEMBER(growableList_t<string_t>, colorArray, 12, 24),
        VEK_MEMBER(int32_t, sizeArray, 24, 40),
    };
};

template <>
struct layoutOf<MediaArray> : pinned_t<MediaArray, Container<DeviceMedia>, 16, 32> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, sizeArray, 12, 24),
    };
};

template <>
struct layoutOf<DeviceMediaNameArray> : pinned_t<DeviceMediaNameArray, Container<string_t>, 12, 24> {};

template <>
struct layoutOf<vekMediaParams> : pinned_t<vekMediaParams, void, 56, 56> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, mediaType, 0, 0),       VEK_MEMBER(int32_t, unloadMediaType, 4, 4),
        VEK_MEMBER(int32_t, unloadPolicy, 8, 8),    VEK_MEMBER(double, filmFeed, 16, 16),
        VEK_MEMBER(char[32], cassetteName, 24, 24),
    };
};

template <>
struct layoutOf<vekMediaContent> : pinned_t<vekMediaContent, void, 64, 64> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, mediaType, 0, 0),      VEK_MEMBER(double, inputContent, 8, 8),
        VEK_MEMBER(double, outputContent, 16, 16), VEK_MEMBER(double, maxInput, 24, 24),
        VEK_MEMBER(double, maxOutput, 32, 32),     VEK_MEMBER(double, oneExposeMaxSize, 40, 40),
        VEK_MEMBER(double, inOutRatio, 48, 48),    VEK_MEMBER(int32_t, inputType, 56, 56),
        VEK_MEMBER(int32_t, outputType, 60, 60),
    };
};

// clang-format on

inline constexpr layoutFamily_t mediaLayouts{
    "vek/records/media.hpp",
    layouts<Media, Cassette, CassetteArray, MediaOutput, FocusValue, MediaGroup, MediaGroupArray, DeviceMedia,
            MediaArray, DeviceMediaNameArray, vekMediaParams, vekMediaContent>};

} // namespace vek

#pragma GCC diagnostic pop
