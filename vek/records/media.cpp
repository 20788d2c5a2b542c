// Record classes of media and cassettes. Each line binds a key to its structure's member; the order is the text's.
#include "vek/records/media.hpp"

#include "vek/records/enumerations.hpp"
#include "vek/records/private/containerField.hpp"
#include "vek/records/private/nestedRecords.hpp"
#include "vek/records/private/record.hpp"
#include "vek/text/enumField.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/scalarFields.hpp"

#include <string_view>

namespace vek {

struct media_t : record_t<Media> {
    using record_t::record_t;
    static constexpr std::string_view about = "A media type.";

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

struct cassette_t : record_t<Cassette> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "A cassette, that is a media magazine, and the media in it, which stands under the device's own word for it.";

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
    nested_t<media_t> media{*this, "VERSION", structure.media}; // the device's own word for it
};

struct cassetteArray_t : record_t<CassetteArray> {
    using record_t::record_t;
    static constexpr std::string_view about = "All cassettes.";

    containerField_t<cassette_t> arrayCassette{*this, "ARRAY_CASSETTE", structure};
};

struct mediaOutput_t : record_t<MediaOutput> {
    using record_t::record_t;
    static constexpr std::string_view about = "The media output: its limit, its content and its transport.";

    doubleField_t maxOutput{*this, "MAX_OUTPUT", structure.maxOutput};
    doubleField_t outContent{*this, "OUT_CONTENT", structure.outContent};
    enumField_t outputType{*this, "OUTPUT_TYPE", structure.outputType, transportNames};
};

struct focusValue_t : record_t<FocusValue> {
    using record_t::record_t;
    static constexpr std::string_view about = "The focus value for one media name.";

    stringField_t mediaName{*this, "MEDIA_NAME", structure.mediaName};
    doubleField_t focusValue{*this, "FOCUS_VALUE", structure.focusValue};
};

struct mediaGroup_t : record_t<MediaGroup> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "A group of media, by their names. The list counts itself; its count is a plain value.";

    stringField_t groupName{*this, "GROUP_NAME", structure.groupName};
    longField_t isInstalled{*this, "IS_INSTALLED", structure.isInstalled};
    longField_t iCount{*this, "I_COUNT", structure.iCount};
    listField_t<stringField_t> mediaGroup{*this, "MEDIA_GROUP", structure.mediaGroup};
};

struct mediaGroupArray_t : record_t<MediaGroupArray> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "All groups of media. The container counts itself; its count is a plain value.";

    containerField_t<mediaGroup_t> mediaGroup{*this, "MEDIA_GROUP", structure};
    longField_t groupCount{*this, "GROUP_COUNT", structure.groupCount};
};

struct deviceMedia_t : record_t<DeviceMedia> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "A media name and its colours. The list counts itself; its size is a plain value.";

    stringField_t deviceMediaName{*this, "DEVICE_MEDIA_NAME", structure.deviceMediaName};
    listField_t<stringField_t> colorArray{*this, "COLOR_ARRAY", structure.colorArray};
    longField_t sizeArray{*this, "SIZE_ARRAY", structure.sizeArray};
};

struct mediaArray_t : record_t<MediaArray> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "All media with their colours. The container counts itself; its size is a plain value.";

    containerField_t<deviceMedia_t> mediaArray{*this, "MEDIA_ARRAY", structure};
    longField_t sizeArray{*this, "SIZE_ARRAY", structure.sizeArray};
};

struct deviceMediaNameArray_t : record_t<DeviceMediaNameArray> {
    using record_t::record_t;
    static constexpr std::string_view about = "The names of the media that the device knows.";

    containerField_t<stringField_t> deviceMediaNameArray{*this, "DEVICE_MEDIA_NAME_ARRAY", structure};
};

struct mediaContent_t : record_t<MediaContent> {
    using record_t::record_t;
    static constexpr std::string_view about = "The content of the media input and output, and their limits.";

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

template struct conversionOf<Media, media_t>;
template struct conversionOf<Cassette, cassette_t>;
template struct conversionOf<CassetteArray, cassetteArray_t>;
template struct conversionOf<MediaOutput, mediaOutput_t>;
template struct conversionOf<FocusValue, focusValue_t>;
template struct conversionOf<MediaGroup, mediaGroup_t>;
template struct conversionOf<MediaGroupArray, mediaGroupArray_t>;
template struct conversionOf<MediaArray, mediaArray_t>;
template struct conversionOf<DeviceMediaNameArray, deviceMediaNameArray_t>;
template struct conversionOf<MediaParams, mediaParams_t>;
template struct conversionOf<MediaContent, mediaContent_t>;

} // namespace vek
