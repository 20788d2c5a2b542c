// Message structures of the device's calibration tables.
#pragma once

#include "vek/api/vekParams2ASCII.h"
#include "vek/records/container.hpp"
#include "vek/records/messageBase.hpp"
#include "vek/text/growableList.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <cstdint>

namespace vek {

using ColorTable = ::vekColorTable;
using ColorValue = ::vekColorValue;

/// An entry of ResIntTable: laser intensity and spinner speed of one resolution
class ResIntEntry : public MessageBase {
public:
    float res = 0.0F;
    float intensity = 0.0F; ///< INT in the text
    float speed = 0.0F;
    float defInt = 0.0F;
    float defSpeed = 0.0F;
    std::uint8_t deletable = 0; ///< 0 or 1
};

/// 4105
class ResIntTable : public MessageBase {
public:
    ResIntTable() : MessageBase(9) {}

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
class TableRef : public MessageBase {
public:
    TableRef() : MessageBase(10) {}

    std::int32_t num = 0;
    string_t name;
};

/// 4107
class ResIntArray : public Container<TableRef> {
public:
    ResIntArray() : Container(11) {}
};

/// An item of DelayValueTable: the data delay of one resolution
class DelayValue : public MessageBase {
public:
    float resolution = 0.0F;
    float delayValMic = 0.0F; ///< microseconds
};

/// 4110
class DelayValueTable : public Container<DelayValue> {
public:
    DelayValueTable() : Container(14) {}
};

/// An item of ResMotorTable: the resolution motor's setting for one resolution
class ResMotorEntry : public MessageBase {
public:
    float res = 0.0F;
    float resMotor = 0.0F;
};

/// 4111
class ResMotorTable : public Container<ResMotorEntry> {
public:
    ResMotorTable() : Container(15) {}
};

/// 4113
class ResIntSpeed : public MessageBase {
public:
    ResIntSpeed() : MessageBase(17) {}

    string_t tableName;
    std::int32_t tableId = -1;
    std::int32_t tableType = 0;
    double resolution = 0.0;
    double intensity = 0.0;
    double spiralSpeed = 0.0;
};

} // namespace vek
