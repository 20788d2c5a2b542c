// Layouts of the message structures of exposures.
#pragma once

#include "vek/records/exposure.hpp"
#include "vek/records/private/layouts/foundation.hpp"
#include "vek/records/private/layouts/media.hpp"
#include "vek/records/private/layouts/punch.hpp"

// offsetof in classes with a virtual table or hidden members is left to compilers; all that build this support it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace vek {

// clang-format off: one line a member

template <>
struct layoutOf<ExposeResolution> : pinned_t<ExposeResolution, MessageBase, 56, 64> {
    static constexpr std::array members{
        VEK_MEMBER(vekSize, res, 8, 16),          VEK_MEMBER(double, dataFreq, 24, 32),
        VEK_MEMBER(double, spinnerSpeed, 32, 40), VEK_MEMBER(int16_t, laserIntensity, 40, 48),
        VEK_MEMBER(double, exposeMhz, 48, 56),
    };
};

template <>
struct layoutOf<CylinderSize> : pinned_t<CylinderSize, MessageBase, 40, 48> {
    static constexpr std::array members{
        VEK_MEMBER(double, cylinderSizeMaxH, 8, 16),
        VEK_MEMBER(double, cylinderSizeMaxW, 16, 24),
        VEK_MEMBER(double, cylinderSizeMinH, 24, 32),
        VEK_MEMBER(double, cylinderSizeMinW, 32, 40),
    };
};

template <>
struct layoutOf<BitmapType> : pinned_t<BitmapType, void, 20, 40> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, bitMapType, 4, 8),
        VEK_MEMBER(string_t, scrUnitType, 8, 16),
        VEK_MEMBER(string_t, deviceType, 12, 24),
        VEK_MEMBER(string_t, exposeType, 16, 32),
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
struct layoutOf<vekPixelSize> : pinned_t<vekPixelSize, void, 8, 8> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, width, 0, 0),
        VEK_MEMBER(int32_t, height, 4, 4),
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
struct layoutOf<vekHeightWidth> : pinned_t<vekHeightWidth, void, 8, 8> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, height, 0, 0),
        VEK_MEMBER(int32_t, width, 4, 4),
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

// clang-format on

inline constexpr layoutFamily_t exposureLayouts{
    "vek/records/exposure.hpp", layouts<ExposeResolution, CylinderSize, BitmapType, vekLayout, vekExposeJob,
                                        vekPixelSize, vekExposeParams, vekHeightWidth, vekImageTopLeft>};

} // namespace vek

#pragma GCC diagnostic pop
