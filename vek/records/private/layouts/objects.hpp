// Layouts of the polymorphic structures. The virtual table and the members of a base come before their own.
#pragma once

#include "vek/records/device.hpp"
#include "vek/records/exposure.hpp"
#include "vek/records/jobs.hpp"
#include "vek/records/media.hpp"
#include "vek/records/private/layouts/foundation.hpp"
#include "vek/records/private/layouts/plain.hpp"
#include "vek/records/punch.hpp"
#include "vek/records/tables.hpp"

// offsetof in classes with a virtual table or hidden members is left to compilers; all that build this support it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace vek {

// clang-format off: one line a member

// vek/records/device.hpp

template <>
struct layoutOf<DeviceId> : pinned_t<DeviceId, MessageBase, 36, 64> {
    static constexpr std::array members{
        VEK_MEMBER(string_t, deviceName, 8, 16),
        VEK_MEMBER(string_t, deviceSerialNum, 12, 24),
        VEK_MEMBER(valueRange_t, resolution, 16, 32),
        VEK_MEMBER(int32_t, extra, 32, 56),
    };
};

template <>
struct layoutOf<DeviceInfo> : pinned_t<DeviceInfo, DeviceId, 192, 256> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, unloadMediaType, 36, 60), VEK_MEMBER(int32_t, numOfCassette, 40, 64),
        VEK_MEMBER(int32_t, numLaserBeams, 44, 68),   VEK_MEMBER(vekSize, maxDrumSize, 48, 72),
        VEK_MEMBER(vekSize, maxExposeSize, 64, 88),   VEK_MEMBER(vekSize, align, 80, 104),
        VEK_MEMBER(vekSize, addition, 96, 120),       VEK_MEMBER(valueRange_t, spinnerSpeed, 112, 136),
        VEK_MEMBER(valueRange_t, laserInt, 128, 160), VEK_MEMBER(valueRange_t, focusValue, 144, 184),
        VEK_MEMBER(valueRange_t, resMotor, 160, 208), VEK_MEMBER(valueRange_t, ddbDelay, 176, 232),
    };
};

template <>
struct layoutOf<DeviceInfo2> : pinned_t<DeviceInfo2, DeviceInfo, 192, 256> {};

template <>
struct layoutOf<Version> : pinned_t<Version, MessageBase, 24, 32> {
    static constexpr std::array members{
        VEK_MEMBER(double, version, 8, 16),
        VEK_MEMBER(int32_t, hwVersion, 16, 24),
    };
};

template <>
struct layoutOf<ByteId> : pinned_t<ByteId, MessageBase, 12, 16> {
    static constexpr std::array members{
        VEK_MEMBER(uint8_t, id, 8, 12),
    };
};

template <>
struct layoutOf<DeviceState> : pinned_t<DeviceState, MessageBase, 12, 16> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, deviceState, 8, 12),
    };
};

template <>
struct layoutOf<DataPathPort> : pinned_t<DataPathPort, MessageBase, 20, 32> {
    static constexpr std::array members{
        VEK_MEMBER(growableList_t<int16_t>, dataPathPort, 8, 16),
    };
};

template <>
struct layoutOf<NarrowMode> : pinned_t<NarrowMode, MessageBase, 16, 24> {
    static constexpr std::array members{
        VEK_MEMBER(uint8_t, narrowMode, 8, 12),
        VEK_MEMBER(int32_t, jobId, 12, 16),
    };
};

template <>
struct layoutOf<SupportDataPorts> : pinned_t<SupportDataPorts, MessageBase, 12, 16> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, supportDataPortsId, 8, 12),
    };
};

// vek/records/media.hpp

template <>
struct layoutOf<Media> : pinned_t<Media, MessageBase, 72, 88> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, type, 8, 12),     VEK_MEMBER(int32_t, exposureType, 12, 16),
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

// vek/records/punch.hpp

template <>
struct layoutOf<PunchSystem> : pinned_t<PunchSystem, MessageBase, 80, 104> {
    static constexpr std::array members{
        VEK_MEMBER(vekSize, center, 8, 16),
        VEK_MEMBER(double, minFilmFeed, 24, 32),
        VEK_MEMBER(double, pitch, 32, 40),
        VEK_MEMBER(string_t, position, 40, 48),
        VEK_MEMBER(string_t, system, 44, 56),
        VEK_MEMBER(int32_t, index, 48, 64),
        VEK_MEMBER(int32_t, numOfUnits, 52, 68),
        VEK_MEMBER(growableList_t<double>, wUnitLocation, 56, 72),
        VEK_MEMBER(growableList_t<double>, hUnitLocation, 68, 88),
    };
};

template <>
struct layoutOf<PunchArray> : pinned_t<PunchArray, Container<PunchSystem>, 12, 24> {};

// vek/records/tables.hpp

template <>
struct layoutOf<ResIntEntry> : pinned_t<ResIntEntry, MessageBase, 32, 40> {
    static constexpr std::array members{
        VEK_MEMBER(float, res, 8, 12),     VEK_MEMBER(float, intensity, 12, 16), VEK_MEMBER(float, speed, 16, 20),
        VEK_MEMBER(float, defInt, 20, 24), VEK_MEMBER(float, defSpeed, 24, 28),  VEK_MEMBER(uint8_t, deletable, 28, 32),
    };
};

template <>
struct layoutOf<ResIntTable> : pinned_t<ResIntTable, MessageBase, 56, 96> {
    static constexpr std::array members{
        VEK_MEMBER(string_t, deviceType, 8, 16),
        VEK_MEMBER(string_t, portType, 12, 24),
        VEK_MEMBER(string_t, tableName, 16, 32),
        VEK_MEMBER(int32_t, tableId, 20, 40),
        VEK_MEMBER(string_t, type, 24, 48),
        VEK_MEMBER(string_t, vendor, 28, 56),
        VEK_MEMBER(int32_t, numColumns, 32, 64),
        VEK_MEMBER(int32_t, numEntries, 36, 68),
        VEK_MEMBER(growableList_t<ResIntEntry>, resIntTable, 40, 72),
        VEK_MEMBER(int32_t, genNumOfTables, 52, 88),
    };
};

template <>
struct layoutOf<TableRef> : pinned_t<TableRef, MessageBase, 16, 24> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, num, 8, 12),
        VEK_MEMBER(string_t, name, 12, 16),
    };
};

template <>
struct layoutOf<ResIntArray> : pinned_t<ResIntArray, Container<TableRef>, 12, 24> {};

template <>
struct layoutOf<DelayValue> : pinned_t<DelayValue, MessageBase, 16, 24> {
    static constexpr std::array members{
        VEK_MEMBER(float, resolution, 8, 12),
        VEK_MEMBER(float, delayValMic, 12, 16),
    };
};

template <>
struct layoutOf<DelayValueTable> : pinned_t<DelayValueTable, Container<DelayValue>, 12, 24> {};

template <>
struct layoutOf<ResMotorEntry> : pinned_t<ResMotorEntry, MessageBase, 16, 24> {
    static constexpr std::array members{
        VEK_MEMBER(float, res, 8, 12),
        VEK_MEMBER(float, resMotor, 12, 16),
    };
};

template <>
struct layoutOf<ResMotorTable> : pinned_t<ResMotorTable, Container<ResMotorEntry>, 12, 24> {};

template <>
struct layoutOf<ResIntSpeed> : pinned_t<ResIntSpeed, MessageBase, 48, 56> {
    static constexpr std::array members{
        VEK_MEMBER(string_t, tableName, 8, 16), VEK_MEMBER(int32_t, tableId, 12, 24),
        VEK_MEMBER(int32_t, tableType, 16, 28), VEK_MEMBER(double, resolution, 24, 32),
        VEK_MEMBER(double, intensity, 32, 40),  VEK_MEMBER(double, spiralSpeed, 40, 48),
    };
};

// vek/records/exposure.hpp

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

// vek/records/jobs.hpp

template <>
struct layoutOf<CylinderJob> : pinned_t<CylinderJob, MessageBase, 276, 280> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, cylinderId, 8, 12),
        VEK_MEMBER(uint8_t, isEndlessScreen, 12, 16),
        VEK_MEMBER(int32_t, jobId, 16, 20),
        VEK_MEMBER(char[256], deviceMediaNameId, 20, 24),
    };
};

// clang-format on

} // namespace vek

#pragma GCC diagnostic pop
