// The plain message structures in C++: compared with `==`, member by member. Texts in character arrays are compared up
// to their NUL or the array's end, whatever lies behind; the text that Info points to is compared, not the pointer.
//
// The comparisons are in the structures' own namespace, the global one, where they are found. Pure functions, safe for
// concurrent use.
#pragma once

#include "vek/records/messages.h"
#include "vek/vek_std/std_sys/vek_cpp20.hpp"

#include <cstddef>
#include <cstring>

namespace vek::detail {

template <class Value>
bool isSame(const Value &a, const Value &b) {
    return a == b;
}
template <class Value, std::size_t Count>
bool isSame(const Value (&a)[Count], const Value (&b)[Count]) {
    for (std::size_t i = 0; i < Count; ++i)
        if (!isSame(a[i], b[i]))
            return false;
    return true;
}
template <std::size_t Room>
bool isSame(const char (&a)[Room], const char (&b)[Room]) {
    return std::strncmp(a, b, Room) == 0;
}

template <class Structure, class... Members>
bool areSame(const Structure &a, const Structure &b, Members Structure::*...members) {
    return (isSame(a.*members, b.*members) && ...);
}

} // namespace vek::detail

inline bool operator==(const vekSize &a, const vekSize &b) {
    return a.width == b.width && a.height == b.height;
}

inline bool operator==(const vekHeightWidth &a, const vekHeightWidth &b) {
    return a.height == b.height && a.width == b.width;
}

inline bool operator==(const vekPixelSize &a, const vekPixelSize &b) {
    return a.width == b.width && a.height == b.height;
}

inline bool operator==(const vekColorValue &a, const vekColorValue &b) {
    return a.value == b.value && a.flags == b.flags;
}

inline bool operator==(const vekIdRecord &a, const vekIdRecord &b) {
    return a.id == b.id;
}

inline bool operator==(const vekDeviceStatus &a, const vekDeviceStatus &b) {
    using s = vekDeviceStatus;
    return vek::detail::areSame(a, b, &s::status, &s::lowStatus, &s::severity, &s::numOfMessages, &s::msgs);
}

inline bool operator==(const vekLayout &a, const vekLayout &b) {
    using s = vekLayout;
    return vek::detail::areSame(a, b, &s::layoutNum, &s::jobId, &s::jobticketName, &s::sepsArray);
}

inline bool operator==(const vekMediaParams &a, const vekMediaParams &b) {
    using s = vekMediaParams;
    return vek::detail::areSame(a, b, &s::mediaType, &s::unloadMediaType, &s::unloadPolicy, &s::filmFeed,
                                &s::cassetteName);
}

inline bool operator==(const vekPunchParams &a, const vekPunchParams &b) {
    using s = vekPunchParams;
    return vek::detail::areSame(a, b, &s::numSystems, &s::align, &s::activeSystems);
}

inline bool operator==(const vekExposeJob &a, const vekExposeJob &b) {
    using s = vekExposeJob;
    return vek::detail::areSame(a, b, &s::drumId, &s::numPasses, &s::endlessScreen, &s::loadFlag, &s::unloadFlag,
                                &s::bitmapFilename, &s::marginTop, &s::marginLeft, &s::marginBottom, &s::marginRight,
                                &s::offset, &s::size, &s::cylinderSize, &s::mediaParams, &s::punchParams);
}

inline bool operator==(const vekExposeParams &a, const vekExposeParams &b) {
    using s = vekExposeParams;
    return vek::detail::areSame(a, b, &s::drumId, &s::exposeId, &s::spinnerSpeed, &s::dataFreq, &s::ld, &s::ls,
                                &s::laserIntensity, &s::negative, &s::mirror, &s::bitmapByPass, &s::focus, &s::resMotor,
                                &s::ddbDelay, &s::firstLaserNum, &s::lastLaserNum, &s::sizePixel, &s::size, &s::offset,
                                &s::res, &s::ctMapFile, &s::lwMapFile, &s::oliMapFile, &s::screenType);
}

inline bool operator==(const vekColorTable &a, const vekColorTable &b) {
    using s = vekColorTable;
    return vek::detail::areSame(a, b, &s::drumId, &s::index, &s::colorTable);
}

inline bool operator==(const vekImageTopLeft &a, const vekImageTopLeft &b) {
    using s = vekImageTopLeft;
    return vek::detail::areSame(a, b, &s::drumId, &s::index, &s::topLeft, &s::imageTopLeft, &s::mirror, &s::name,
                                &s::separation);
}

inline bool operator==(const vekMediaContent &a, const vekMediaContent &b) {
    using s = vekMediaContent;
    return vek::detail::areSame(a, b, &s::mediaType, &s::inputContent, &s::outputContent, &s::maxInput, &s::maxOutput,
                                &s::oneExposeMaxSize, &s::inOutRatio, &s::inputType, &s::outputType);
}

/// A null text equals only another.
inline bool operator==(const vekInfo &a, const vekInfo &b) {
    return a.type == b.type &&
           (a.info == b.info || (a.info != nullptr && b.info != nullptr && std::strcmp(a.info, b.info) == 0));
}
