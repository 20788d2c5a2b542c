// Layouts of the plain structures, those of the C header.
#pragma once

#include "vek/api/vekParams2ASCII.h"
#include "vek/records/private/layouts/layout.hpp"

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
struct layoutOf<vekHeightWidth> : pinned_t<vekHeightWidth, void, 8, 8> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, height, 0, 0),
        VEK_MEMBER(int32_t, width, 4, 4),
    };
};

template <>
struct layoutOf<vekPixelSize> : pinned_t<vekPixelSize, void, 8, 8> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, width, 0, 0),
        VEK_MEMBER(int32_t, height, 4, 4),
    };
};

template <>
struct layoutOf<vekIdRecord> : pinned_t<vekIdRecord, void, 4, 4> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, id, 0, 0),
    };
};

template <>
struct layoutOf<vekDeviceStatus> : pinned_t<vekDeviceStatus, void, 2568, 2568> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, status, 0, 0),       VEK_MEMBER(int32_t, lowStatus, 4, 4),
        VEK_MEMBER(int32_t, severity, 8, 8),     VEK_MEMBER(int32_t, numOfMessages, 12, 12),
        VEK_MEMBER(char[10][255], msgs, 16, 16),
    };
};

template <>
struct layoutOf<vekLayout> : pinned_t<vekLayout, void, 520, 520> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, layoutNum, 0, 0),
        VEK_MEMBER(int32_t, jobId, 4, 4),
        VEK_MEMBER(char[256], jobticketName, 8, 8),
        VEK_MEMBER(char[256], sepsArray, 264, 264),
    };
};

template <>
struct layoutOf<vekMediaParams> : pinned_t<vekMediaParams, void, 56, 56> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, mediaType, 0, 0),       VEK_MEMBER(int32_t, unloadMediaType, 4, 4),
        VEK_MEMBER(int32_t, unloadPolicy, 8, 8),    VEK_MEMBER(double, filmFeed, 16, 16),
        VEK_MEMBER(char[32], cassetteName, 24, 24),
    };
};

template <>
struct layoutOf<vekPunchParams> : pinned_t<vekPunchParams, void, 48, 48> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, numSystems, 0, 0),
        VEK_MEMBER(int32_t, align, 4, 4),
        VEK_MEMBER(int32_t[10], activeSystems, 8, 8),
    };
};

template <>
struct layoutOf<vekExposeJob> : pinned_t<vekExposeJob, void, 464, 464> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, drumId, 0, 0),
        VEK_MEMBER(int32_t, numPasses, 4, 4),
        VEK_MEMBER(int32_t, endlessScreen, 8, 8),
        VEK_MEMBER(int32_t, loadFlag, 12, 12),
        VEK_MEMBER(int32_t, unloadFlag, 16, 16),
        VEK_MEMBER(char[256], bitmapFilename, 20, 20),
        VEK_MEMBER(double, marginTop, 280, 280),
        VEK_MEMBER(double, marginLeft, 288, 288),
        VEK_MEMBER(double, marginBottom, 296, 296),
        VEK_MEMBER(double, marginRight, 304, 304),
        VEK_MEMBER(vekSize, offset, 312, 312),
        VEK_MEMBER(vekSize, size, 328, 328),
        VEK_MEMBER(vekSize, cylinderSize, 344, 344),
        VEK_MEMBER(vekMediaParams, mediaParams, 360, 360),
        VEK_MEMBER(vekPunchParams, punchParams, 416, 416),
    };
};

template <>
struct layoutOf<vekExposeParams> : pinned_t<vekExposeParams, void, 1168, 1168> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, drumId, 0, 0),
        VEK_MEMBER(int32_t, exposeId, 4, 4),
        VEK_MEMBER(double, spinnerSpeed, 8, 8),
        VEK_MEMBER(double, dataFreq, 16, 16),
        VEK_MEMBER(double, ld, 24, 24),
        VEK_MEMBER(double, ls, 32, 32),
        VEK_MEMBER(int32_t, laserIntensity, 40, 40),
        VEK_MEMBER(int32_t, negative, 44, 44),
        VEK_MEMBER(int32_t, mirror, 48, 48),
        VEK_MEMBER(int32_t, bitmapByPass, 52, 52),
        VEK_MEMBER(double, focus, 56, 56),
        VEK_MEMBER(double, resMotor, 64, 64),
        VEK_MEMBER(double, ddbDelay, 72, 72),
        VEK_MEMBER(int32_t, firstLaserNum, 80, 80),
        VEK_MEMBER(int32_t, lastLaserNum, 84, 84),
        VEK_MEMBER(vekPixelSize, sizePixel, 88, 88),
        VEK_MEMBER(vekSize, size, 96, 96),
        VEK_MEMBER(vekSize, offset, 112, 112),
        VEK_MEMBER(vekSize, res, 128, 128),
        VEK_MEMBER(char[256], ctMapFile, 144, 144),
        VEK_MEMBER(char[256], lwMapFile, 400, 400),
        VEK_MEMBER(char[256], oliMapFile, 656, 656),
        VEK_MEMBER(char[256], screenType, 912, 912),
    };
};

template <>
struct layoutOf<vekColorValue> : pinned_t<vekColorValue, void, 16, 16> {
    static constexpr std::array members{
        VEK_MEMBER(double, value, 0, 0),
        VEK_MEMBER(int32_t, flags, 8, 8),
    };
};

template <>
struct layoutOf<vekColorTable> : pinned_t<vekColorTable, void, 4104, 4104> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, drumId, 0, 0),
        VEK_MEMBER(int32_t, index, 4, 4),
        VEK_MEMBER(vekColorValue[256], colorTable, 8, 8),
    };
};

template <>
struct layoutOf<vekImageTopLeft> : pinned_t<vekImageTopLeft, void, 420, 420> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, drumId, 0, 0),           VEK_MEMBER(int32_t, index, 4, 4),
        VEK_MEMBER(vekHeightWidth, topLeft, 8, 8),   VEK_MEMBER(vekHeightWidth, imageTopLeft, 16, 16),
        VEK_MEMBER(vekHeightWidth, mirror, 24, 24),  VEK_MEMBER(char[256], name, 32, 32),
        VEK_MEMBER(char[132], separation, 288, 288),
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

template <>
struct layoutOf<vekInfo> : pinned_t<vekInfo, void, 8, 16> {
    static constexpr std::array members{
        VEK_MEMBER(uint8_t, type, 0, 0),
        VEK_MEMBER(char *, info, 4, 8),
    };
};

// clang-format on

} // namespace vek

#pragma GCC diagnostic pop
