// Message structures of exposures: resolution set-up, bitmap type, cylinder size; and the plain ones by their C++
// names.
#pragma once

#include "vek/records/messageBase.hpp"
#include "vek/records/messages.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <cstdint>

namespace vek {

using ExposeJob = ::vekExposeJob;
using ExposeParams = ::vekExposeParams;
using ImageTopLeft = ::vekImageTopLeft;
using Layout = ::vekLayout;

/// 4104
struct ExposeResolution : MessageBase {
    ExposeResolution() : MessageBase(VEK_MSG_EXPOSE_RESOLUTION) {}

    ::vekSize res{};
    double dataFreq = 0.0;
    double spinnerSpeed = 0.0;
    std::int16_t laserIntensity = 0; ///< 16 bits here, 32 in ExposeParams
    double exposeMhz = 0.0;

    bool operator==(const ExposeResolution &) const = default;
};

/// 4131. Four numbers, height first, and no sizes.
struct CylinderSize : MessageBase {
    CylinderSize() : MessageBase(VEK_MSG_CYLINDER_SIZE) {}

    double cylinderSizeMaxH = 0.0;
    double cylinderSizeMaxW = 0.0;
    double cylinderSizeMinH = 0.0;
    double cylinderSizeMinW = 0.0;

    bool operator==(const CylinderSize &) const = default;
};

/// 4188. Has a virtual destructor but, unlike the others, no kind word.
class BitmapType {
public:
    BitmapType() = default;
    BitmapType(const BitmapType &) = default;
    BitmapType &operator=(const BitmapType &) = default;
    virtual ~BitmapType() = default;

    std::int32_t bitMapType = -1;
    string_t scrUnitType;
    string_t deviceType;
    string_t exposeType;

    bool operator==(const BitmapType &) const = default;
};

} // namespace vek
