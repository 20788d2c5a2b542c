// The structures of the comparison, and the tables of their members.
#include "bench/content.hpp"

#include <array>

namespace bench {

namespace {

using namespace std::string_view_literals;

// The kind of a member by its C++ type.
template <class Value>
constexpr kind_t kindOf = kind_t::object;
template <>
constexpr kind_t kindOf<double> = kind_t::real;
template <>
constexpr kind_t kindOf<std::int32_t> = kind_t::integer;
template <>
constexpr kind_t kindOf<bool> = kind_t::flag;
template <>
constexpr kind_t kindOf<std::string> = kind_t::text;
template <>
constexpr kind_t kindOf<std::vector<double>> = kind_t::reals;
template <>
constexpr kind_t kindOf<std::vector<std::string>> = kind_t::texts;
template <>
constexpr kind_t kindOf<std::vector<std::int16_t>> = kind_t::codes;
template <>
constexpr kind_t kindOf<std::vector<std::vector<std::int16_t>>> = kind_t::codeLists;
template <class Object>
constexpr kind_t kindOf<std::vector<Object>> = kind_t::objects;

template <class Object>
const objectType_t &typeOf();

template <class Object, class Value>
member_t member(std::string_view key, Value Object::*place) {
    static const Object probe{};
    const auto offset = static_cast<std::size_t>(reinterpret_cast<const char *>(&(probe.*place)) -
                                                 reinterpret_cast<const char *>(&probe));
    member_t made{.key = key, .kind = kindOf<Value>, .offset = offset};
    if constexpr (kindOf<Value> == kind_t::object) {
        made.type = &typeOf<Value>();
    } else if constexpr (kindOf<Value> == kind_t::objects) {
        made.type = &typeOf<typename Value::value_type>();
        made.append = [](void *list) -> void * { return &static_cast<Value *>(list)->emplace_back(); };
        made.bytes = [](const void *list) {
            const auto &objects = *static_cast<const Value *>(list);
            return std::span(reinterpret_cast<const char *>(objects.data()),
                             objects.size() * sizeof(typename Value::value_type));
        };
    }
    return made;
}

template <class Object>
member_t named(std::string_view key, std::int32_t Object::*place, std::span<const std::string_view> names) {
    member_t made = member(key, place);
    made.kind = kind_t::name;
    made.names = names;
    return made;
}

template <class Object>
const objectType_t &typeOf() {
    static const objectType_t type{
        Object::name,
        sizeof(Object),
        Object::members(),
        []() -> void * { return new Object(); },
        [](const void *object) -> void * { return new Object(*static_cast<const Object *>(object)); },
        [](void *object) { delete static_cast<Object *>(object); }};
    return type;
}

constexpr std::array mediaTypes{
    "mediaFilm_e"sv,  "mediaPaper_e"sv,         "mediaPlate_e"sv,   "mediaBlanket_e"sv,          "mediaReceiver_e"sv,
    "mediaProof_e"sv, "mediaBlueLineProof_e"sv, "mediaGravure_e"sv, "mediaPlateProcessLess_e"sv, "unknown_e"sv};
constexpr std::array polarities{"negative_e"sv, "positive_e"sv};
constexpr std::array transports{"roller_e"sv, "sheet_e"sv};
constexpr std::array rangeTypes{"discrete_e"sv, "continuous_e"sv};

struct media_t {
    static constexpr std::string_view name = "Media";
    std::int32_t type = 0, exposureType = 0;
    double thick = 0, sensitivity = 0;
    std::string vendor, sepName;
    double wSize = 0, hSize = 0, wExposeSize = 0, hExposeSize = 0;

    static std::vector<member_t> members() {
        return {named("TYPE", &media_t::type, mediaTypes),
                named("EXPOSURE_TYPE", &media_t::exposureType, polarities),
                member("THICK", &media_t::thick),
                member("SENSITIVITY", &media_t::sensitivity),
                member("VENDOR", &media_t::vendor),
                member("SEP_NAME", &media_t::sepName),
                member("W_SIZE", &media_t::wSize),
                member("H_SIZE", &media_t::hSize),
                member("W_EXPOSE_SIZE", &media_t::wExposeSize),
                member("H_EXPOSE_SIZE", &media_t::hExposeSize)};
    }
};

struct cassette_t {
    static constexpr std::string_view name = "Cassette";
    std::string text;
    double wExposeOffset = 0, hExposeOffset = 0, wExposeStart = 0, hExposeStart = 0;
    std::int32_t inputType = 0;
    double inputContent = 0;
    std::int32_t resIntTableN = 0;
    std::string mediaPosition;
    bool isInstalled = false;
    std::int32_t numAvailablePunchSys = 0;
    std::vector<std::string> punchSysName;
    media_t media;

    static std::vector<member_t> members() {
        return {member("NAME", &cassette_t::text),
                member("W_EXPOSE_OFFSET", &cassette_t::wExposeOffset),
                member("H_EXPOSE_OFFSET", &cassette_t::hExposeOffset),
                member("W_EXPOSE_START", &cassette_t::wExposeStart),
                member("H_EXPOSE_START", &cassette_t::hExposeStart),
                named("INPUT_TYPE", &cassette_t::inputType, transports),
                member("INPUT_CONTENT", &cassette_t::inputContent),
                member("RES_INT_TABLE_N", &cassette_t::resIntTableN),
                member("MEDIA_POSITION", &cassette_t::mediaPosition),
                member("IS_INSTALLED", &cassette_t::isInstalled),
                member("NUM_AVAILABLE_PUNCH_SYS", &cassette_t::numAvailablePunchSys),
                member("PUNCH_SYS_NAME", &cassette_t::punchSysName),
                member("VERSION", &cassette_t::media)};
    }
};

struct cassetteArray_t {
    static constexpr std::string_view name = "CassetteArray";
    std::vector<cassette_t> cassettes;

    static std::vector<member_t> members() { return {member("ARRAY_CASSETTE", &cassetteArray_t::cassettes)}; }
};

struct deviceId_t {
    static constexpr std::string_view name = "DeviceId";
    std::string deviceName, serialNumber;
    std::int32_t resolutionType = 0;
    std::vector<double> resolution;

    static std::vector<member_t> members() {
        return {member("DEVICE_NAME", &deviceId_t::deviceName), member("DEVICE_SERIAL_NUM", &deviceId_t::serialNumber),
                named("RES_RANGE_TYPE", &deviceId_t::resolutionType, rangeTypes),
                member("RESOLUTION", &deviceId_t::resolution)};
    }
};

struct deviceInfo_t {
    static constexpr std::string_view name = "DeviceInfo";
    deviceId_t identity;
    std::int32_t unloadMediaType = 0, numOfCassette = 0, numLaserBeams = 0;
    double wMaxDrum = 0, hMaxDrum = 0, wMaxExpose = 0, hMaxExpose = 0, wAlign = 0, hAlign = 0, wAddition = 0,
           hAddition = 0;
    std::int32_t speedType = 0, intensityType = 0, focusType = 0, motorType = 0, delayType = 0;
    std::vector<double> speed, intensity, focus, motor, delay;

    static std::vector<member_t> members() {
        return {member("DEVICE_INFO", &deviceInfo_t::identity),
                member("UNLOAD_MEDIA_TYPE", &deviceInfo_t::unloadMediaType),
                member("NUM_OF_CASSETTE", &deviceInfo_t::numOfCassette),
                member("NUM_LASER_BEAMS", &deviceInfo_t::numLaserBeams),
                member("W_MAX_DRUM_SIZE", &deviceInfo_t::wMaxDrum),
                member("H_MAX_DRUM_SIZE", &deviceInfo_t::hMaxDrum),
                member("W_MAX_EXPOSE_SIZE", &deviceInfo_t::wMaxExpose),
                member("H_MAX_EXPOSE_SIZE", &deviceInfo_t::hMaxExpose),
                member("W_ALIGN", &deviceInfo_t::wAlign),
                member("H_ALIGN", &deviceInfo_t::hAlign),
                member("W_ADDITION", &deviceInfo_t::wAddition),
                member("H_ADDITION", &deviceInfo_t::hAddition),
                named("SPINNER_SPEED_RANGE_TYPE", &deviceInfo_t::speedType, rangeTypes),
                member("SPINNER_SPEED", &deviceInfo_t::speed),
                named("LASER_INT_RANGE_TYPE", &deviceInfo_t::intensityType, rangeTypes),
                member("LASER_INT", &deviceInfo_t::intensity),
                named("FOCUS_VALUE_RANGE_TYPE", &deviceInfo_t::focusType, rangeTypes),
                member("FOCUS_VALUE", &deviceInfo_t::focus),
                named("RES_MOTOR_RANGE_TYPE", &deviceInfo_t::motorType, rangeTypes),
                member("RES_MOTOR", &deviceInfo_t::motor),
                named("DDB_DELAY_RANGE_TYPE", &deviceInfo_t::delayType, rangeTypes),
                member("DDB_DELAY", &deviceInfo_t::delay)};
    }
};

struct resIntEntry_t {
    static constexpr std::string_view name = "ResIntEntry";
    double res = 0, intensity = 0, speed = 0, defInt = 0, defSpeed = 0;
    bool deletable = false;

    static std::vector<member_t> members() {
        return {member("RES", &resIntEntry_t::res),
                member("INT", &resIntEntry_t::intensity),
                member("SPEED", &resIntEntry_t::speed),
                member("DEF_INT", &resIntEntry_t::defInt),
                member("DEF_SPEED", &resIntEntry_t::defSpeed),
                member("DELETABLE", &resIntEntry_t::deletable)};
    }
};

struct resIntTable_t {
    static constexpr std::string_view name = "ResIntTable";
    std::string deviceType, portType, tableName;
    std::int32_t tableId = 0;
    std::string type, vendor;
    std::int32_t numColumns = 0, numEntries = 0;
    std::vector<resIntEntry_t> entries;
    std::int32_t genNumOfTables = 0;

    static std::vector<member_t> members() {
        return {member("DEVICE_TYPE", &resIntTable_t::deviceType),
                member("PORT_TYPE", &resIntTable_t::portType),
                member("TABLE_NAME", &resIntTable_t::tableName),
                member("TABLE_ID", &resIntTable_t::tableId),
                member("TYPE", &resIntTable_t::type),
                member("VENDOR", &resIntTable_t::vendor),
                member("NUM_COLUMNS", &resIntTable_t::numColumns),
                member("NUM_ENTRIES", &resIntTable_t::numEntries),
                member("RES_INT_TABLE", &resIntTable_t::entries),
                member("GEN_NUM_OF_TABLES", &resIntTable_t::genNumOfTables)};
    }
};

struct exposeParams_t {
    static constexpr std::string_view name = "ExposeParams";
    std::int32_t drumId = 0, exposeId = 0;
    double spinnerSpeed = 0, dataFreq = 0, ld = 0, ls = 0;
    std::int32_t laserIntensity = 0, negative = 0, mirror = 0, bitmapByPass = 0;
    double focus = 0, resMotor = 0, ddbDelay = 0;
    std::int32_t firstLaserNum = 0, lastLaserNum = 0;
    double wSizePixel = 0, hSizePixel = 0, wSize = 0, hSize = 0, wOffset = 0, hOffset = 0, wRes = 0, hRes = 0;
    std::string ctMapFile, lwMapFile, oliMapFile, screenType;

    static std::vector<member_t> members() {
        return {member("DRUM_ID", &exposeParams_t::drumId),
                member("EXPOSE_ID", &exposeParams_t::exposeId),
                member("SPINNER_SPEED", &exposeParams_t::spinnerSpeed),
                member("DATA_FREQ", &exposeParams_t::dataFreq),
                member("LD", &exposeParams_t::ld),
                member("LS", &exposeParams_t::ls),
                member("LASER_INTENSITY", &exposeParams_t::laserIntensity),
                member("NEGATIVE", &exposeParams_t::negative),
                member("MIRROR", &exposeParams_t::mirror),
                member("BITMAP_BY_PASS", &exposeParams_t::bitmapByPass),
                member("FOCUS", &exposeParams_t::focus),
                member("RES_MOTOR", &exposeParams_t::resMotor),
                member("DDB_DELAY", &exposeParams_t::ddbDelay),
                member("FIRST_LASER_NUM", &exposeParams_t::firstLaserNum),
                member("LAST_LASER_NUM", &exposeParams_t::lastLaserNum),
                member("W_SIZE_PIXEL", &exposeParams_t::wSizePixel),
                member("H_SIZE_PIXEL", &exposeParams_t::hSizePixel),
                member("W_SIZE", &exposeParams_t::wSize),
                member("H_SIZE", &exposeParams_t::hSize),
                member("W_OFFSET", &exposeParams_t::wOffset),
                member("H_OFFSET", &exposeParams_t::hOffset),
                member("W_RES", &exposeParams_t::wRes),
                member("H_RES", &exposeParams_t::hRes),
                member("CT_MAP_FILE", &exposeParams_t::ctMapFile),
                member("LW_MAP_FILE", &exposeParams_t::lwMapFile),
                member("OLI_MAP_FILE", &exposeParams_t::oliMapFile),
                member("SCREEN_TYPE", &exposeParams_t::screenType)};
    }
};

struct colorValue_t {
    static constexpr std::string_view name = "ColorValue";
    double value = 0;
    std::int32_t flags = 0;

    static std::vector<member_t> members() {
        return {member("VALUE", &colorValue_t::value), member("FLAGS", &colorValue_t::flags)};
    }
};

struct colorTable_t {
    static constexpr std::string_view name = "ColorTable";
    std::int32_t drumId = 0, index = 0;
    std::vector<colorValue_t> colors;

    static std::vector<member_t> members() {
        return {member("DRUM_ID", &colorTable_t::drumId), member("INDEX", &colorTable_t::index),
                member("COLOR_TABLE", &colorTable_t::colors)};
    }
};

struct jobSepList_t {
    static constexpr std::string_view name = "JobSepList";
    std::vector<std::int16_t> jobName;
    std::vector<std::vector<std::int16_t>> sepList;

    static std::vector<member_t> members() {
        return {member("JOB_NAME", &jobSepList_t::jobName), member("SEP_LIST", &jobSepList_t::sepList)};
    }
};

} // namespace

const member_t *objectType_t::find(std::string_view key, std::size_t &due) const {
    for (std::size_t tried = 0; tried < members.size(); ++tried) {
        const std::size_t candidate = due + tried < members.size() ? due + tried : due + tried - members.size();
        if (members[candidate].key == key) {
            due = candidate + 1;
            return &members[candidate];
        }
    }
    return nullptr;
}

const objectType_t &cassetteType() {
    return typeOf<cassette_t>();
}
const objectType_t &cassetteArrayType() {
    return typeOf<cassetteArray_t>();
}
const objectType_t &deviceInfoType() {
    return typeOf<deviceInfo_t>();
}
const objectType_t &resIntTableType() {
    return typeOf<resIntTable_t>();
}
const objectType_t &exposeParamsType() {
    return typeOf<exposeParams_t>();
}
const objectType_t &colorTableType() {
    return typeOf<colorTable_t>();
}
const objectType_t &jobSepListType() {
    return typeOf<jobSepList_t>();
}

} // namespace bench
