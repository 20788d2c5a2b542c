// Record classes of the calibration tables. Each line binds a key to its structure's member; the order is the text's.
#include "vek/records/tables.hpp"

#include "vek/records/private/containerField.hpp"
#include "vek/records/private/record.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/scalarFields.hpp"

#include <string_view>

namespace vek {

struct resIntEntry_t : record_t<ResIntEntry> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "Laser intensity and spinner speed of one resolution, as set and by default.";

    floatField_t res{*this, "RES", structure.res};
    floatField_t intensity{*this, "INT", structure.intensity};
    floatField_t speed{*this, "SPEED", structure.speed};
    floatField_t defInt{*this, "DEF_INT", structure.defInt};
    floatField_t defSpeed{*this, "DEF_SPEED", structure.defSpeed};
    boolField_t deletable{*this, "DELETABLE", structure.deletable};
};

struct resIntTable_t : record_t<ResIntTable> {
    using record_t::record_t;
    static constexpr std::string_view about = "A calibration table: laser intensity and spinner speed by resolution.";

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

struct tableRef_t : record_t<TableRef> {
    using record_t::record_t;
    static constexpr std::string_view about = "The number and the name of a calibration table.";

    longField_t num{*this, "NUM", structure.num};
    stringField_t name{*this, "NAME", structure.name};
};

struct resIntArray_t : record_t<ResIntArray> {
    using record_t::record_t;
    static constexpr std::string_view about = "The calibration tables there are.";

    containerField_t<tableRef_t> arrayResInt{*this, "ARRAY_RES_INT", structure};
};

struct delayValue_t : record_t<DelayValue> {
    using record_t::record_t;
    static constexpr std::string_view about = "The data delay in microseconds for one resolution.";

    floatField_t resolution{*this, "RESOLUTION", structure.resolution};
    floatField_t delayValMic{*this, "DELAY_VAL_MIC", structure.delayValMic};
};

struct delayValueTable_t : record_t<DelayValueTable> {
    using record_t::record_t;
    static constexpr std::string_view about = "The data delay by resolution.";

    containerField_t<delayValue_t> delayValueTable{*this, "DELAY_VALUE_TABLE", structure};
};

struct resMotorEntry_t : record_t<ResMotorEntry> {
    using record_t::record_t;
    static constexpr std::string_view about = "The setting of the resolution motor for one resolution.";

    floatField_t res{*this, "RES", structure.res};
    floatField_t resMotor{*this, "RES_MOTOR", structure.resMotor};
};

struct resMotorTable_t : record_t<ResMotorTable> {
    using record_t::record_t;
    static constexpr std::string_view about = "The setting of the resolution motor by resolution.";

    containerField_t<resMotorEntry_t> resMotorTable{*this, "RES_MOTOR_TABLE", structure};
};

struct resIntSpeed_t : record_t<ResIntSpeed> {
    using record_t::record_t;
    static constexpr std::string_view about = "Laser intensity and spiral speed of one resolution, in one table.";

    stringField_t tableName{*this, "TABLE_NAME", structure.tableName};
    longField_t tableId{*this, "TABLE_ID", structure.tableId};
    longField_t tableType{*this, "TABLE_TYPE", structure.tableType};
    doubleField_t resolution{*this, "RESOLUTION", structure.resolution};
    doubleField_t intensity{*this, "INTENSITY", structure.intensity};
    doubleField_t spiralSpeed{*this, "SPIRAL_SPEED", structure.spiralSpeed};
};

struct colorValue_t : record_t<ColorValue> {
    using record_t::record_t;
    static constexpr std::string_view about = "A colour's value and flags.";

    doubleField_t value{*this, "VALUE", structure.value};
    longField_t flags{*this, "FLAGS", structure.flags};
};

struct colorTable_t : record_t<ColorTable> {
    using record_t::record_t;
    static constexpr std::string_view about = "A colour table of a drum. All entries are written.";

    longField_t drumId{*this, "DRUM_ID", structure.drumId};
    longField_t index{*this, "INDEX", structure.index};
    roomField_t<colorValue_t, 256, counting_t::all> colorTable{*this, "COLOR_TABLE", structure.colorTable};
};

template struct conversionOf<ResIntTable, resIntTable_t>;
template struct conversionOf<TableRef, tableRef_t>;
template struct conversionOf<ResIntArray, resIntArray_t>;
template struct conversionOf<DelayValueTable, delayValueTable_t>;
template struct conversionOf<ResMotorTable, resMotorTable_t>;
template struct conversionOf<ResIntSpeed, resIntSpeed_t>;
template struct conversionOf<ColorTable, colorTable_t>;

} // namespace vek
