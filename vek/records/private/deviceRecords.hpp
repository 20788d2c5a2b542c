// Record classes of the device itself. Each line binds a key to its structure's member; the order is the text's.
#pragma once

#include "vek/records/device.hpp"
#include "vek/records/private/record.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/private/rangeFields.hpp"
#include "vek/text/scalarFields.hpp"

namespace vek {

class deviceId_t : public record_t<DeviceId> {
public:
    using record_t::record_t;

    stringField_t deviceName{*this, "DEVICE_NAME", structure.deviceName};
    stringField_t deviceSerialNum{*this, "DEVICE_SERIAL_NUM", structure.deviceSerialNum};
    rangeTypeField_t resRangeType{*this, "RES_RANGE_TYPE", structure.resolution};
    rangeValuesField_t resolution{*this, "RESOLUTION", structure.resolution};
};

/// The identity in 4136
class deviceId2_t : public deviceId_t {
public:
    using deviceId_t::deviceId_t;
};

/// What 4096 and 4136 read and write alike; each has an identity record of its own.
template <class Identity>
class deviceInfoFields_t : public record_t<DeviceInfo> {
public:
    using record_t::record_t;

    Identity deviceInfo{*this, "DEVICE_INFO", structure};
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
class deviceInfo_t : public deviceInfoFields_t<deviceId_t> {
public:
    using deviceInfoFields_t::deviceInfoFields_t;
};

/// 4136
class deviceInfo2_t : public deviceInfoFields_t<deviceId2_t> {
public:
    using structure_t = DeviceInfo2;
    using deviceInfoFields_t::deviceInfoFields_t;
};

class version_t : public record_t<Version> {
public:
    using record_t::record_t;

    doubleField_t version{*this, "VERSION", structure.version};
    longField_t hwVersion{*this, "HW_VERSION", structure.hwVersion};
};

class byteId_t : public record_t<ByteId> {
public:
    using record_t::record_t;

    boolField_t id{*this, "ID", structure.id};
};

class deviceState_t : public record_t<DeviceState> {
public:
    using record_t::record_t;

    longField_t deviceState{*this, "DEVICE_STATE", structure.deviceState};
};

class dataPathPort_t : public record_t<DataPathPort> {
public:
    using record_t::record_t;

    listField_t<shortField_t> dataPathPort{*this, "DATA_PATH_PORT", structure.dataPathPort};
};

class narrowMode_t : public record_t<NarrowMode> {
public:
    using record_t::record_t;

    boolField_t narrowMode{*this, "NARROW_MODE", structure.narrowMode};
    longField_t jobId{*this, "JOB_ID", structure.jobId};
};

class supportDataPorts_t : public record_t<SupportDataPorts> {
public:
    using record_t::record_t;

    longField_t supportDataPortsId{*this, "SUPPORT_DATA_PORTS_ID", structure.supportDataPortsId};
};

} // namespace vek
