// Record classes of media and cassettes. Each line binds a key to its structure's member; the order is the text's.
#pragma once

#include "vek/records/enumerations.hpp"
#include "vek/records/media.hpp"
#include "vek/records/private/containerField.hpp"
#include "vek/records/private/record.hpp"
#include "vek/text/enumField.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/scalarFields.hpp"

namespace vek {

class media_t : public record_t<Media> {
public:
    using record_t::record_t;

    enumField_t type{*this, "TYPE", structure.type, mediaTypeNames};
    enumField_t exposureType{*this, "EXPOSURE_TYPE", structure.exposureType, exposurePolarityNames};
    doubleField_t thick{*this, "THICK", structure.thick};
    doubleField_t sensitivity{*this, "SENSITIVITY", structure.sensitivity};
    stringField_t vendor{*this, "VENDOR", structure.vendor};
    stringField_t sepName{*this, "SEP_NAME", structure.sepName};
    doubleField_t wSize{*this, "W_SIZE", structure.size.width};
    doubleField_t hSize{*this, "H_SIZE", structure.size.height};
    doubleField_t wExposeSize{*this, "W_EXPOSE_SIZE", structure.exposeSize.width};
    doubleField_t hExposeSize{*this, "H_EXPOSE_SIZE", structure.exposeSize.height};
};

class cassette_t : public record_t<Cassette> {
public:
    using record_t::record_t;

    stringField_t name{*this, "NAME", structure.name};
    doubleField_t wExposeOffset{*this, "W_EXPOSE_OFFSET", structure.exposeOffset.width};
    doubleField_t hExposeOffset{*this, "H_EXPOSE_OFFSET", structure.exposeOffset.height};
    doubleField_t wExposeStart{*this, "W_EXPOSE_START", structure.exposeStart.width};
    doubleField_t hExposeStart{*this, "H_EXPOSE_START", structure.exposeStart.height};
    enumField_t inputType{*this, "INPUT_TYPE", structure.inputType, transportNames};
    doubleField_t inputContent{*this, "INPUT_CONTENT", structure.inputContent};
    longField_t resIntTableN{*this, "RES_INT_TABLE_N", structure.resIntTableN};
    stringField_t mediaPosition{*this, "MEDIA_POSITION", structure.mediaPosition};
    boolField_t isInstalled{*this, "IS_INSTALLED", structure.isInstalled};
    longField_t numAvailablePunchSys{*this, "NUM_AVAILABLE_PUNCH_SYS", structure.numAvailablePunchSys};
    listField_t<stringField_t> punchSysName{*this, "PUNCH_SYS_NAME", structure.punchSysName,
                                            structure.numAvailablePunchSys};
    media_t media{*this, "VERSION", structure.media}; // the device's own word for it
};

class cassetteArray_t : public record_t<CassetteArray> {
public:
    using record_t::record_t;

    containerField_t<cassette_t> arrayCassette{*this, "ARRAY_CASSETTE", structure};
};

class mediaOutput_t : public record_t<MediaOutput> {
public:
    using record_t::record_t;

    doubleField_t maxOutput{*this, "MAX_OUTPUT", structure.maxOutput};
    doubleField_t outContent{*this, "OUT_CONTENT", structure.outContent};
    enumField_t outputType{*this, "OUTPUT_TYPE", structure.outputType, transportNames};
};

class focusValue_t : public record_t<FocusValue> {
public:
    using record_t::record_t;

    stringField_t mediaName{*this, "MEDIA_NAME", structure.mediaName};
    doubleField_t focusValue{*this, "FOCUS_VALUE", structure.focusValue};
};

class mediaGroup_t : public record_t<MediaGroup> {
public:
    using record_t::record_t;

    stringField_t groupName{*this, "GROUP_NAME", structure.groupName};
    longField_t isInstalled{*this, "IS_INSTALLED", structure.isInstalled};
    longField_t iCount{*this, "I_COUNT", structure.iCount};
    listField_t<stringField_t> mediaGroup{*this, "MEDIA_GROUP", structure.mediaGroup};
};

class mediaGroupArray_t : public record_t<MediaGroupArray> {
public:
    using record_t::record_t;

    containerField_t<mediaGroup_t> mediaGroup{*this, "MEDIA_GROUP", structure};
    longField_t groupCount{*this, "GROUP_COUNT", structure.groupCount};
};

class deviceMedia_t : public record_t<DeviceMedia> {
public:
    using record_t::record_t;

    stringField_t deviceMediaName{*this, "DEVICE_MEDIA_NAME", structure.deviceMediaName};
    listField_t<stringField_t> colorArray{*this, "COLOR_ARRAY", structure.colorArray};
    longField_t sizeArray{*this, "SIZE_ARRAY", structure.sizeArray};
};

class mediaArray_t : public record_t<MediaArray> {
public:
    using record_t::record_t;

    containerField_t<deviceMedia_t> mediaArray{*this, "MEDIA_ARRAY", structure};
    longField_t sizeArray{*this, "SIZE_ARRAY", structure.sizeArray};
};

class deviceMediaNameArray_t : public record_t<DeviceMediaNameArray> {
public:
    using record_t::record_t;

    containerField_t<stringField_t> deviceMediaNameArray{*this, "DEVICE_MEDIA_NAME_ARRAY", structure};
};

class mediaParams_t : public record_t<MediaParams> {
public:
    using record_t::record_t;

    enumField_t mediaType{*this, "MEDIA_TYPE", structure.mediaType, mediaTypeNames};
    longField_t unloadMediaType{*this, "UNLOAD_MEDIA_TYPE", structure.unloadMediaType};
    longField_t unloadPolicy{*this, "UNLOAD_POLICY", structure.unloadPolicy};
    doubleField_t filmFeed{*this, "FILM_FEED", structure.filmFeed};
    fixedTextField_t<32> cassetteName{*this, "CASSETTE_NAME", structure.cassetteName};

    static void setDefaults(MediaParams &defaults) {
        defaults.unloadMediaType = -1;
        defaults.unloadPolicy = -1;
        defaults.filmFeed = -1.0;
    }
};

class mediaContent_t : public record_t<MediaContent> {
public:
    using record_t::record_t;

    enumField_t mediaType{*this, "MEDIA_TYPE", structure.mediaType, mediaTypeNames};
    doubleField_t inputContent{*this, "INPUT_CONTENT", structure.inputContent};
    doubleField_t outputContent{*this, "OUTPUT_CONTENT", structure.outputContent};
    doubleField_t maxInput{*this, "MAX_INPUT", structure.maxInput};
    doubleField_t maxOutput{*this, "MAX_OUTPUT", structure.maxOutput};
    doubleField_t oneExposeMaxSize{*this, "ONE_EXPOSE_MAX_SIZE", structure.oneExposeMaxSize};
    doubleField_t inOutRatio{*this, "IN_OUT_RATIO", structure.inOutRatio};
    longField_t inputType{*this, "INPUT_TYPE", structure.inputType};
    longField_t outputType{*this, "OUTPUT_TYPE", structure.outputType};

    static void setDefaults(MediaContent &defaults) {
        defaults.inputContent = 1000.0;
        defaults.maxInput = 1000.0;
        defaults.maxOutput = 1000.0;
        defaults.oneExposeMaxSize = 1.0;
        defaults.inOutRatio = 1.0;
    }
};

} // namespace vek
