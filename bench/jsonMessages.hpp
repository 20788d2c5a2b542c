// The yardstick of the message benchmarks, the measured code and no samples (those are the files of bench/json): JSON
// messages read with RapidJSON's SAX reader into structures equivalent to the library's, and written from them with its
// Writer. Keys that come in order are found at once, as they are by the library.
#pragma once

#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace json {

using writer_t = rapidjson::Writer<rapidjson::StringBuffer>;

/// Where a value goes: one of these, by the type of the JSON value.
struct target_t {
    double *real = nullptr;
    std::int32_t *integer = nullptr;
    bool *flag = nullptr;
    std::string *text = nullptr;
    const std::string_view *names = nullptr; // of the enumeration that `integer` is
    std::size_t nameCount = 0;
    std::vector<double> *reals = nullptr;
    std::vector<std::string> *texts = nullptr;
    struct object_t *object = nullptr;
};

/// A JSON object that is read into and written from.
struct object_t {
    virtual ~object_t() = default;
    virtual target_t member(std::size_t key) = 0;
    virtual const std::string_view *keys() const = 0;
    virtual std::size_t keyCount() const = 0;
    virtual void write(writer_t &out) const = 0;
};

struct handler_t : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, handler_t> {
    struct level_t {
        object_t *object;
        std::size_t due;
    };

    explicit handler_t(object_t &root) { target.object = &root; }

    bool Double(double value) {
        if (target.real != nullptr)
            *target.real = value;
        else if (target.reals != nullptr)
            target.reals->push_back(value);
        return true;
    }
    bool integer(std::int64_t value) {
        if (target.integer != nullptr)
            *target.integer = static_cast<std::int32_t>(value);
        else
            Double(static_cast<double>(value));
        return true;
    }
    bool Int(int value) { return integer(value); }
    bool Uint(unsigned value) { return integer(value); }
    bool Int64(std::int64_t value) { return integer(value); }
    bool Uint64(std::uint64_t value) { return integer(static_cast<std::int64_t>(value)); }
    bool Bool(bool value) {
        if (target.flag != nullptr)
            *target.flag = value;
        return true;
    }
    bool String(const char *text, rapidjson::SizeType length, bool) {
        if (target.text != nullptr) {
            target.text->assign(text, length);
        } else if (target.texts != nullptr) {
            target.texts->emplace_back(text, length);
        } else if (target.names != nullptr) {
            for (std::size_t i = 0; i < target.nameCount; ++i)
                if (target.names[i] == std::string_view(text, length))
                    *target.integer = static_cast<std::int32_t>(i);
        }
        return true;
    }
    bool StartObject() {
        levels[depth++] = {target.object, 0};
        return target.object != nullptr && depth < levels.size();
    }
    bool EndObject(rapidjson::SizeType) {
        --depth;
        return true;
    }
    bool Key(const char *text, rapidjson::SizeType length, bool) {
        const std::string_view key(text, length);
        level_t &level = levels[depth - 1];
        const std::string_view *keys = level.object->keys();
        const std::size_t count = level.object->keyCount();
        for (std::size_t tried = 0; tried < count; ++tried) {
            const std::size_t candidate = level.due + tried < count ? level.due + tried : level.due + tried - count;
            if (keys[candidate] == key) {
                level.due = candidate + 1;
                target = level.object->member(candidate);
                return true;
            }
        }
        target = {};
        return true;
    }

    target_t target;
    std::array<level_t, 8> levels{};
    std::size_t depth = 0;
};

inline void writeKey(writer_t &out, std::string_view key) {
    out.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
}
inline void writeText(writer_t &out, std::string_view text) {
    out.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

inline constexpr std::array<std::string_view, 10> mediaTypes{
    "mediaFilm_e",  "mediaPaper_e",         "mediaPlate_e",   "mediaBlanket_e",          "mediaReceiver_e",
    "mediaProof_e", "mediaBlueLineProof_e", "mediaGravure_e", "mediaPlateProcessLess_e", "unknown_e"};
inline constexpr std::array<std::string_view, 2> polarities{"negative_e", "positive_e"};
inline constexpr std::array<std::string_view, 2> transports{"roller_e", "sheet_e"};
inline constexpr std::array<std::string_view, 2> rangeTypes{"discrete_e", "continuous_e"};

template <std::size_t Count>
target_t named(std::int32_t &value, const std::array<std::string_view, Count> &names) {
    return {.integer = &value, .names = names.data(), .nameCount = Count};
}

/// The plain members of an object, written and read in the order of its keys.
template <class Object>
struct described_t : object_t {
    const std::string_view *keys() const override { return Object::keyTable.data(); }
    std::size_t keyCount() const override { return Object::keyTable.size(); }

    void write(writer_t &out) const override {
        out.StartObject();
        for (std::size_t key = 0; key < keyCount(); ++key) {
            // The same switch serves both directions.
            const target_t source = const_cast<described_t *>(this)->member(key);
            writeKey(out, keys()[key]);
            if (source.real != nullptr) {
                out.Double(*source.real);
            } else if (source.names != nullptr) {
                writeText(out, source.names[static_cast<std::size_t>(*source.integer)]);
            } else if (source.integer != nullptr) {
                out.Int(*source.integer);
            } else if (source.flag != nullptr) {
                out.Bool(*source.flag);
            } else if (source.text != nullptr) {
                writeText(out, *source.text);
            } else if (source.object != nullptr) {
                source.object->write(out);
            } else if (source.reals != nullptr) {
                out.StartArray();
                for (const double value : *source.reals)
                    out.Double(value);
                out.EndArray();
            } else if (source.texts != nullptr) {
                out.StartArray();
                for (const std::string &text : *source.texts)
                    writeText(out, text);
                out.EndArray();
            }
        }
        out.EndObject();
    }
};

struct focusValue_t : described_t<focusValue_t> {
    static constexpr std::array<std::string_view, 2> keyTable{"MEDIA_NAME", "FOCUS_VALUE"};
    std::string mediaName;
    double focusValue = 0;

    target_t member(std::size_t key) override {
        return key == 0 ? target_t{.text = &mediaName} : target_t{.real = &focusValue};
    }
};

struct media_t : described_t<media_t> {
    static constexpr std::array<std::string_view, 10> keyTable{
        "TYPE",     "EXPOSURE_TYPE", "THICK",  "SENSITIVITY",   "VENDOR",
        "SEP_NAME", "W_SIZE",        "H_SIZE", "W_EXPOSE_SIZE", "H_EXPOSE_SIZE"};
    std::int32_t type = 0;
    std::int32_t exposureType = 0;
    double reals[2] = {};
    std::string texts[2];
    double sizes[4] = {};

    target_t member(std::size_t key) override {
        switch (key) {
        case 0:
            return named(type, mediaTypes);
        case 1:
            return named(exposureType, polarities);
        case 2:
        case 3:
            return {.real = &reals[key - 2]};
        case 4:
        case 5:
            return {.text = &texts[key - 4]};
        default:
            return {.real = &sizes[key - 6]};
        }
    }
};

struct cassette_t : described_t<cassette_t> {
    static constexpr std::array<std::string_view, 13> keyTable{
        "NAME",           "W_EXPOSE_OFFSET", "H_EXPOSE_OFFSET",         "W_EXPOSE_START",
        "H_EXPOSE_START", "INPUT_TYPE",      "INPUT_CONTENT",           "RES_INT_TABLE_N",
        "MEDIA_POSITION", "IS_INSTALLED",    "NUM_AVAILABLE_PUNCH_SYS", "PUNCH_SYS_NAME",
        "VERSION"};
    std::string name;
    double offsets[4] = {};
    std::int32_t inputType = 0;
    double inputContent = 0;
    std::int32_t resIntTableN = 0;
    std::string mediaPosition;
    bool isInstalled = false;
    std::int32_t numAvailablePunchSys = 0;
    std::vector<std::string> punchSysName;
    media_t media;

    target_t member(std::size_t key) override {
        switch (key) {
        case 0:
            return {.text = &name};
        case 5:
            return named(inputType, transports);
        case 6:
            return {.real = &inputContent};
        case 7:
            return {.integer = &resIntTableN};
        case 8:
            return {.text = &mediaPosition};
        case 9:
            return {.flag = &isInstalled};
        case 10:
            return {.integer = &numAvailablePunchSys};
        case 11:
            return {.texts = &punchSysName};
        case 12:
            return {.object = &media};
        default:
            return {.real = &offsets[key - 1]};
        }
    }
};

struct deviceId_t : described_t<deviceId_t> {
    static constexpr std::array<std::string_view, 4> keyTable{"DEVICE_NAME", "DEVICE_SERIAL_NUM", "RES_RANGE_TYPE",
                                                              "RESOLUTION"};
    std::string texts[2];
    std::int32_t resolutionType = 0;
    std::vector<double> resolution;

    target_t member(std::size_t key) override {
        return key < 2    ? target_t{.text = &texts[key]}
               : key == 2 ? named(resolutionType, rangeTypes)
                          : target_t{.reals = &resolution};
    }
};

struct deviceInfo_t : described_t<deviceInfo_t> {
    static constexpr std::array<std::string_view, 22> keyTable{"DEVICE_INFO",
                                                               "UNLOAD_MEDIA_TYPE",
                                                               "NUM_OF_CASSETTE",
                                                               "NUM_LASER_BEAMS",
                                                               "W_MAX_DRUM_SIZE",
                                                               "H_MAX_DRUM_SIZE",
                                                               "W_MAX_EXPOSE_SIZE",
                                                               "H_MAX_EXPOSE_SIZE",
                                                               "W_ALIGN",
                                                               "H_ALIGN",
                                                               "W_ADDITION",
                                                               "H_ADDITION",
                                                               "SPINNER_SPEED_RANGE_TYPE",
                                                               "SPINNER_SPEED",
                                                               "LASER_INT_RANGE_TYPE",
                                                               "LASER_INT",
                                                               "FOCUS_VALUE_RANGE_TYPE",
                                                               "FOCUS_VALUE",
                                                               "RES_MOTOR_RANGE_TYPE",
                                                               "RES_MOTOR",
                                                               "DDB_DELAY_RANGE_TYPE",
                                                               "DDB_DELAY"};
    deviceId_t identity;
    std::int32_t counts[3] = {};
    double sizes[8] = {};
    std::int32_t types[5] = {};
    std::vector<double> ranges[5];

    target_t member(std::size_t key) override {
        if (key == 0)
            return {.object = &identity};
        if (key < 4)
            return {.integer = &counts[key - 1]};
        if (key < 12)
            return {.real = &sizes[key - 4]};
        const std::size_t range = (key - 12) / 2;
        return key % 2 == 0 ? named(types[range], rangeTypes) : target_t{.reals = &ranges[range]};
    }
};

template <class Object>
std::unique_ptr<Object> read(const std::string &text) {
    auto object = std::make_unique<Object>();
    handler_t handler(*object);
    rapidjson::StringStream stream(text.c_str());
    rapidjson::Reader reader;
    reader.Parse(stream, handler);
    return object;
}

inline void write(const object_t &object, rapidjson::StringBuffer &buffer) {
    writer_t writer(buffer);
    object.write(writer);
}

} // namespace json
