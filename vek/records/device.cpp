// Record classes of the device itself. Each line binds a key to its structure's member; the order is the text's.
#include "vek/records/device.hpp"

#include "vek/records/private/record.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/private/rangeFields.hpp"
#include "vek/text/scalarFields.hpp"

#include <string_view>

namespace vek {

struct deviceId_t : record_t<DeviceId> {
    using record_t::record_t;

    stringField_t deviceName{*this, "DEVICE_NAME", structure.deviceName};
    stringField_t deviceSerialNum{*this, "DEVICE_SERIAL_NUM", structure.deviceSerialNum};
    rangeTypeField_t resRangeType{*this, "RES_RANGE_TYPE", structure.resolution};
    rangeValuesField_t resolution{*this, "RESOLUTION", structure.resolution};
};

/// The identity in 4136
struct deviceId2_t : deviceId_t {
    using deviceId_t::deviceId_t;
};

/// What 4096 and 4136 read and write alike; each has an identity record of its own.
template <class Identity>
struct deviceInfoFields_t : record_t<DeviceInfo> {
    using record_t::record_t;

    nested_t<Identity> deviceInfo{*this, "DEVICE_INFO", structure};
    longField_t unloadMediaType{*this, "UNLOAD_MEDIA_TYPE", structure.unloadMediaType};
    longField_t numOfCassette{*this, "NUM_OF_CASSETTE", structure.numOfCassette};
    longField_t numLaserBeams{*this, "NUM_LASER_BEAMS", structure.numLaserBeams};
    doubleField_t wMaxDrumSize{*this, "W_MAX_DRUM_SIZE", structure.maxDrumSize.width};
    doubleField_t hMaxDrumSize{*this, "H_MAX_DRUM_SIZE", structure.maxDrumSize.height};
    doubleField_t wMaxExposeSize{*this, "W_MAX_EXPOSE_SIZE", structure.maxExposeSize.width};
    doubleField_t hMaxExposeSize{*this, "H_MAX_EXPOSE_SIZE", structure.maxExposeSize.height};
    doubleField_t wAlign{*this, "W_ALIGN", structure.align.width};
    doubleField_t hAlign{*this, "H_ALIGN", structure.align.height};
    doubleField_t wAddition{*this, "W_ADDITION", structure.addition.width};
    doubleField_t hAddition{*this, "H_ADDITION", structure.addition.height};
    rangeTypeField_t spinnerSpeedRangeType{*this, "SPINNER_SPEED_RANGE_TYPE", structure.spinnerSpeed};
    rangeValuesField_t spinnerSpeed{*this, "SPINNER_SPEED", structure.spinnerSpeed};
    rangeTypeField_t laserIntRangeType{*this, "LASER_INT_RANGE_TYPE", structure.laserInt};
    rangeValuesField_t laserInt{*this, "LASER_INT", structure.laserInt};
    rangeTypeField_t focusValueRangeType{*this, "FOCUS_VALUE_RANGE_TYPE", structure.focusValue};
    rangeValuesField_t focusValue{*this, "FOCUS_VALUE", structure.focusValue};
    rangeTypeField_t resMotorRangeType{*this, "RES_MOTOR_RANGE_TYPE", structure.resMotor};
    rangeValuesField_t resMotor{*this, "RES_MOTOR", structure.resMotor};
    rangeTypeField_t ddbDelayRangeType{*this, "DDB_DELAY_RANGE_TYPE", structure.ddbDelay};
    rangeValuesField_t ddbDelay{*this, "DDB_DELAY", structure.ddbDelay};
};

/// 4096
struct deviceInfo_t : deviceInfoFields_t<deviceId_t> {
    using deviceInfoFields_t::deviceInfoFields_t;
    static constexpr std::string_view about = "The device: its identity, its limits, and the ranges of its parameters.";
};

/// 4136
struct deviceInfo2_t : deviceInfoFields_t<deviceId2_t> {
    using structure_t = DeviceInfo2;
    using like_t = deviceInfo_t;
    using deviceInfoFields_t::deviceInfoFields_t;
    static constexpr std::string_view about = "The device, in a structure of its own that is like that of 4096.";
};

struct version_t : record_t<Version> {
    using record_t::record_t;
    static constexpr std::string_view about = "The versions of the device's software and hardware.";

    doubleField_t version{*this, "VERSION", structure.version};
    longField_t hwVersion{*this, "HW_VERSION", structure.hwVersion};
};

struct byteId_t : record_t<ByteId> {
    using record_t::record_t;
    static constexpr std::string_view about = "An id that is a flag.";

    boolField_t id{*this, "ID", structure.id};
};

struct deviceState_t : record_t<DeviceState> {
    using record_t::record_t;
    static constexpr std::string_view about = "The device's state.";

    longField_t deviceState{*this, "DEVICE_STATE", structure.deviceState};
};

struct dataPathPort_t : record_t<DataPathPort> {
    using record_t::record_t;
    static constexpr std::string_view about = "The ports of the data path.";

    listField_t<shortField_t> dataPathPort{*this, "DATA_PATH_PORT", structure.dataPathPort};
};

struct narrowMode_t : record_t<NarrowMode> {
    using record_t::record_t;
    static constexpr std::string_view about = "The narrow mode of a job.";

    boolField_t narrowMode{*this, "NARROW_MODE", structure.narrowMode};
    longField_t jobId{*this, "JOB_ID", structure.jobId};
};

struct supportDataPorts_t : record_t<SupportDataPorts> {
    using record_t::record_t;
    static constexpr std::string_view about = "The data ports that are supported.";

    longField_t supportDataPortsId{*this, "SUPPORT_DATA_PORTS_ID", structure.supportDataPortsId};
};

template struct conversionOf<DeviceInfo, deviceInfo_t>;
template struct conversionOf<DeviceInfo2, deviceInfo2_t>;
template struct conversionOf<Version, version_t>;
template struct conversionOf<ByteId, byteId_t>;
template struct conversionOf<DeviceState, deviceState_t>;
template struct conversionOf<DataPathPort, dataPathPort_t>;
template struct conversionOf<NarrowMode, narrowMode_t>;
template struct conversionOf<SupportDataPorts, supportDataPorts_t>;

} // namespace vek
