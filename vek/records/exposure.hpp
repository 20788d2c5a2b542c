// Message structures of exposures: resolution set-up, bitmap type, cylinder size; and the plain ones by their C++
// names.
#pragma once

#include "vek/api/vekParams2ASCII.h"
#include "vek/records/messageBase.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <cstdint>

namespace vek {

using ExposeJob = ::vekExposeJob;
using ExposeParams = ::vekExposeParams;
using ImageTopLeft = ::vekImageTopLeft;
using Layout = ::vekLayout;

/// 4104
class ExposeResolution : public MessageBase {
public:
    ExposeResolution() : MessageBase(8) {}

    ::vekSize res{};
    double dataFreq = 0.0;
    double spinnerSpeed = 0.0;
    std::int16_t laserIntensity = 0; ///< 16 bits here, 32 in ExposeParams
    double exposeMhz = 0.0;
};

/// 4131. Four numbers, height first, and no sizes.
class CylinderSize : public MessageBase {
public:
    CylinderSize() : MessageBase(35) {}

    double cylinderSizeMaxH = 0.0;
    double cylinderSizeMaxW = 0.0;
    double cylinderSizeMinH = 0.0;
    double cylinderSizeMinW = 0.0;
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
};

} // namespace vek
