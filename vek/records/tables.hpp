// Message structures of the device's calibration tables.
#pragma once

#include "vek/records/container.hpp"
#include "vek/records/messageBase.hpp"
#include "vek/records/messages.hpp"
#include "vek/text/growableList.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <cstdint>

namespace vek {

using ColorTable = ::vekColorTable;
using ColorValue = ::vekColorValue;

/// An entry of ResIntTable: laser intensity and spinner speed of one resolution
struct ResIntEntry : MessageBase {
    float res = 0.0F;
    float intensity = 0.0F; ///< INT in the text
    float speed = 0.0F;
    float defInt = 0.0F;
    float defSpeed = 0.0F;
    std::uint8_t deletable = 0; ///< 0 or 1

    bool operator==(const ResIntEntry &) const = default;
};
/// Numbers, and a pointer to the class's table, which is the same wherever an entry lies.
template <>
inline constexpr bool isMovableAsMemory<ResIntEntry> = true;

/// 4105
struct ResIntTable : MessageBase {
    ResIntTable() : MessageBase(VEK_MSG_RES_INT_TABLE) {}

    string_t deviceType;
    string_t portType;
    string_t tableName;
    std::int32_t tableId = -1;
    string_t type;
    string_t vendor;
    std::int32_t numColumns = 0;
    std::int32_t numEntries = 0; ///< at most so many entries are written
    growableList_t<ResIntEntry> resIntTable;
    std::int32_t genNumOfTables = 0;

    bool operator==(const ResIntTable &) const = default;
};

/// 4106, and an item of ResIntArray
struct TableRef : MessageBase {
    TableRef() : MessageBase(VEK_MSG_TABLE_REF) {}

    std::int32_t num = 0;
    string_t name;

    bool operator==(const TableRef &) const = default;
};

/// 4107
struct ResIntArray : MessageContainer<TableRef, VEK_MSG_RES_INT_ARRAY> {
    using MessageContainer::MessageContainer;
};

/// An item of DelayValueTable: the data delay of one resolution
struct DelayValue : MessageBase {
    float resolution = 0.0F;
    float delayValMic = 0.0F; ///< microseconds

    bool operator==(const DelayValue &) const = default;
};

/// 4110
struct DelayValueTable : MessageContainer<DelayValue, VEK_MSG_DELAY_VALUE_TABLE> {
    using MessageContainer::MessageContainer;
};

/// An item of ResMotorTable: the resolution motor's setting for one resolution
struct ResMotorEntry : MessageBase {
    float res = 0.0F;
    float resMotor = 0.0F;

    bool operator==(const ResMotorEntry &) const = default;
};

/// 4111
struct ResMotorTable : MessageContainer<ResMotorEntry, VEK_MSG_RES_MOTOR_TABLE> {
    using MessageContainer::MessageContainer;
};

/// 4113
struct ResIntSpeed : MessageBase {
    ResIntSpeed() : MessageBase(VEK_MSG_RES_INT_SPEED) {}

    string_t tableName;
    std::int32_t tableId = -1;
    std::int32_t tableType = 0;
    double resolution = 0.0;
    double intensity = 0.0;
    double spiralSpeed = 0.0;

    bool operator==(const ResIntSpeed &) const = default;
};

} // namespace vek
