// Layouts of the message structures of the calibration tables.
#pragma once

#include "vek/records/private/layouts/foundation.hpp"
#include "vek/records/tables.hpp"

// offsetof in classes with a virtual table or hidden members is left to compilers; all that build this support it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace vek {

// clang-format off: one line a member

template <>
struct layoutOf<ResIntEntry> : pinned_t<ResIntEntry, MessageBase, 32, 40> {
    static constexpr std::array members{
        VEK_MEMBER(float, res, 8, 12, 16),       VEK_MEMBER(float, intensity, 12, 16, 20),
        VEK_MEMBER(float, speed, 16, 20, 24),    VEK_MEMBER(float, defInt, 20, 24, 28),
        VEK_MEMBER(float, defSpeed, 24, 28, 32), VEK_MEMBER(uint8_t, deletable, 28, 32, 36),
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
struct layoutOf<TableRef> : pinned_t<TableRef, MessageBase, 16, 24, 32> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, num, 8, 12, 16),
        VEK_MEMBER(string_t, name, 12, 16, 24),
    };
};

template <>
struct layoutOf<ResIntArray> : pinned_t<ResIntArray, Container<TableRef>, 12, 24> {};

template <>
struct layoutOf<DelayValue> : pinned_t<DelayValue, MessageBase, 16, 24> {
    static constexpr std::array members{
        VEK_MEMBER(float, resolution, 8, 12, 16),
        VEK_MEMBER(float, delayValMic, 12, 16, 20),
    };
};

template <>
struct layoutOf<DelayValueTable> : pinned_t<DelayValueTable, Container<DelayValue>, 12, 24> {};

template <>
struct layoutOf<ResMotorEntry> : pinned_t<ResMotorEntry, MessageBase, 16, 24> {
    static constexpr std::array members{
        VEK_MEMBER(float, res, 8, 12, 16),
        VEK_MEMBER(float, resMotor, 12, 16, 20),
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

// clang-format on

inline constexpr layoutFamily_t tableLayouts{
    "vek/records/tables.hpp", layouts<ResIntEntry, ResIntTable, TableRef, ResIntArray, DelayValue, DelayValueTable,
                                      ResMotorEntry, ResMotorTable, ResIntSpeed, vekColorValue, vekColorTable>};

} // namespace vek

#pragma GCC diagnostic pop
