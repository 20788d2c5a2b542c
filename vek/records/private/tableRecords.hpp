// Record classes of the calibration tables. Each line binds a key to its structure's member; the order is the text's.
#pragma once

#include "vek/records/private/containerField.hpp"
#include "vek/records/private/record.hpp"
#include "vek/records/tables.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/scalarFields.hpp"

namespace vek {

class resIntEntry_t : public record_t<ResIntEntry> {
public:
    using record_t::record_t;

    floatField_t res{*this, "RES", structure.res};
    floatField_t intensity{*this, "INT", structure.intensity};
    floatField_t speed{*this, "SPEED", structure.speed};
    floatField_t defInt{*this, "DEF_INT", structure.defInt};
    floatField_t defSpeed{*this, "DEF_SPEED", structure.defSpeed};
    boolField_t deletable{*this, "DELETABLE", structure.deletable};
};

class resIntTable_t : public record_t<ResIntTable> {
public:
    using record_t::record_t;

    stringField_t deviceType{*this, "DEVICE_TYPE", structure.deviceType};
    stringField_t portType{*this, "PORT_TYPE", structure.portType};
    stringField_t tableName{*this, "TABLE_NAME", structure.tableName};
    longField_t tableId{*this, "TABLE_ID", structure.tableId};
    stringField_t type{*this, "TYPE", structure.type};
    stringField_t vendor{*this, "VENDOR", structure.vendor};
    longField_t numColumns{*this, "NUM_COLUMNS", structure.numColumns};
    longField_t numEntries{*this, "NUM_ENTRIES", structure.numEntries};
    listField_t<resIntEntry_t> resIntTable{*this, "RES_INT_TABLE", structure.resIntTable, structure.numEntries};
    longField_t genNumOfTables{*this, "GEN_NUM_OF_TABLES", structure.genNumOfTables};
};

class tableRef_t : public record_t<TableRef> {
public:
    using record_t::record_t;

    longField_t num{*this, "NUM", structure.num};
    stringField_t name{*this, "NAME", structure.name};
};

class resIntArray_t : public record_t<ResIntArray> {
public:
    using record_t::record_t;

    containerField_t<tableRef_t> arrayResInt{*this, "ARRAY_RES_INT", structure};
};

class delayValue_t : public record_t<DelayValue> {
public:
    using record_t::record_t;

    floatField_t resolution{*this, "RESOLUTION", structure.resolution};
    floatField_t delayValMic{*this, "DELAY_VAL_MIC", structure.delayValMic};
};

class delayValueTable_t : public record_t<DelayValueTable> {
public:
    using record_t::record_t;

    containerField_t<delayValue_t> delayValueTable{*this, "DELAY_VALUE_TABLE", structure};
};

class resMotorEntry_t : public record_t<ResMotorEntry> {
public:
    using record_t::record_t;

    floatField_t res{*this, "RES", structure.res};
    floatField_t resMotor{*this, "RES_MOTOR", structure.resMotor};
};

class resMotorTable_t : public record_t<ResMotorTable> {
public:
    using record_t::record_t;

    containerField_t<resMotorEntry_t> resMotorTable{*this, "RES_MOTOR_TABLE", structure};
};

class resIntSpeed_t : public record_t<ResIntSpeed> {
public:
    using record_t::record_t;

    stringField_t tableName{*this, "TABLE_NAME", structure.tableName};
    longField_t tableId{*this, "TABLE_ID", structure.tableId};
    longField_t tableType{*this, "TABLE_TYPE", structure.tableType};
    doubleField_t resolution{*this, "RESOLUTION", structure.resolution};
    doubleField_t intensity{*this, "INTENSITY", structure.intensity};
    doubleField_t spiralSpeed{*this, "SPIRAL_SPEED", structure.spiralSpeed};
};

class colorValue_t : public record_t<ColorValue> {
public:
    using record_t::record_t;

    doubleField_t value{*this, "VALUE", structure.value};
    longField_t flags{*this, "FLAGS", structure.flags};
};

class colorTable_t : public record_t<ColorTable> {
public:
    using record_t::record_t;

    longField_t drumId{*this, "DRUM_ID", structure.drumId};
    longField_t index{*this, "INDEX", structure.index};
    roomField_t<colorValue_t, 256, counting_t::all> colorTable{*this, "COLOR_TABLE", structure.colorTable};
};

} // namespace vek
