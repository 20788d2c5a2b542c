// Message structures of the device's calibration tables.
#pragma once

#include "vek/records/container.hpp"
#include "vek/records/messageBase.hpp"
#include "vek/records/messages.h"
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
};

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
};

/// 4106, and an item of ResIntArray
struct TableRef : MessageBase {
    TableRef() : MessageBase(VEK_MSG_TABLE_REF) {}

    std::int32_t num = 0;
    string_t name;
};

/// 4107
struct ResIntArray : Container<TableRef> {
    ResIntArray() : Container(VEK_MSG_RES_INT_ARRAY) {}
};

/// An item of DelayValueTable: the data delay of one resolution
struct DelayValue : MessageBase {
    float resolution = 0.0F;
    float delayValMic = 0.0F; ///< microseconds
};

/// 4110
struct DelayValueTable : Container<DelayValue> {
    DelayValueTable() : Container(VEK_MSG_DELAY_VALUE_TABLE) {}
};

/// An item of ResMotorTable: the resolution motor's setting for one resolution
struct ResMotorEntry : MessageBase {
    float res = 0.0F;
    float resMotor = 0.0F;
};

/// 4111
struct ResMotorTable : Container<ResMotorEntry> {
    ResMotorTable() : Container(VEK_MSG_RES_MOTOR_TABLE) {}
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
};

} // namespace vek
