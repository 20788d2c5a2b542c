#include "tests/support/structureValues.hpp"

#include "tests/support/decimalPoint.hpp"
#include "vek/records/device.hpp"
#include "vek/text/textField.hpp"
#include "vek/text/valueRange.hpp"
#include "vek/text/wideStringField.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <optional>

namespace vek::test {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// With six decimals.
std::string shownReal(double value) {
    if (std::isnan(value))
        return "nan";
    char text[400];
    std::snprintf(text, sizeof text, "%.6f", value);
    return withPoint(text);
}

// Which sign a zero has at an end of a continuous range, one too that comes of six decimals, is nobody's promise.
std::string shownRange(const valueRange_t &range) {
    if (range.isEmpty())
        return "no values";
    std::string all = std::to_string(range.kind);
    for (const double value : range) {
        const std::string text = shownReal(value);
        all += ',' + (range.kind != valueRange_t::discrete && text == "-0.000000" ? "0.000000" : text);
    }
    return all;
}

// The characters of a text in an array; -1 of any other.
std::int32_t roomOf(const fieldDescription_t &field) {
    const auto *text = field.as<arrayText_t>();
    return text != nullptr ? text->room : -1;
}

// With its length: a "," in a text is none between two.
std::string shownText(std::string_view text) {
    return std::to_string(text.size()).append(":").append(text);
}

std::string shownValue(const fieldDescription_t &field, const void *value) {
    const std::int32_t room = roomOf(field);
    const auto as = [value]<class T>(const T &) -> const T & { return *static_cast<const T *>(value); };
    switch (field.kind) {
    case fieldKind_t::float64:
        return shownReal(as(double()));
    case fieldKind_t::float32:
        return shownReal(static_cast<double>(as(float())));
    case fieldKind_t::integer16:
        return std::to_string(as(std::int16_t()));
    case fieldKind_t::boolean:
        return std::to_string(as(std::uint8_t()));
    case fieldKind_t::text16: {
        const auto &text = *static_cast<const wideStringField_t *>(value);
        std::string all = std::to_string(text.count()) + ':';
        for (const char16_t c : text.text())
            all += std::to_string(c) + ' ';
        return all;
    }
    case fieldKind_t::text:
        if (room >= 0)
            return shownText({static_cast<const char *>(value),
                              strnlen(static_cast<const char *>(value), static_cast<std::size_t>(room))});
        if (field.as<pointerText_t>() != nullptr)
            return shownText(as(static_cast<char *>(nullptr)) != nullptr ? as(static_cast<char *>(nullptr)) : "");
        return shownText({as(string_t()).c_str(), static_cast<std::size_t>(as(string_t()).length())});
    case fieldKind_t::enumeration:
        if (field.as<enumWords_t>()->title == "range type")
            return {}; // shown with the values
        break;
    default:
        break;
    }
    return std::to_string(as(std::int32_t()));
}

void *elementOf(const fieldDescription_t &field, const elementRun_t &run, std::int32_t i) {
    if (field.list->elementSize == 0)
        return static_cast<void *const *>(run.first)[i];
    return const_cast<char *>(static_cast<const char *>(run.first)) +
           static_cast<std::size_t>(i) * field.list->elementSize;
}

std::string shownField(const fieldDescription_t &field) {
    if (field.isList(listKind_t::range))
        return shownRange(*static_cast<const valueRange_t *>(field.value));
    if (!field.list)
        return field.isSet != nullptr && *field.isSet == 0 ? "not set" : shownValue(field, field.value);
    std::string all;
    const elementRun_t run = field.list->elements(field.value);
    const std::int32_t count = field.isList(listKind_t::array) && field.list->countMember != nullptr
                                   ? std::min(run.count, *static_cast<const std::int32_t *>(field.list->countMember))
                                   : run.count;
    const auto *const elementRecord = field.as<elementRecord_t>();
    std::optional<structureValues_t> record; // described once
    for (std::int32_t i = 0; i < count; ++i) {
        void *element = elementOf(field, run, i);
        if (element == nullptr) {
            all += "null";
        } else if (elementRecord == nullptr) {
            all += shownValue(field, element);
        } else {
            if (record)
                record->moveTo(element);
            else
                record.emplace(elementRecord->visit, element);
            all += record->shown();
        }
        all += ',';
    }
    return all;
}

void changeValue(const fieldDescription_t &field, void *value, std::minstd_rand &random) {
    const std::int32_t room = roomOf(field);
    static const double reals[] = {0.0, -0.0, -1.0, -2.5, 7.0, 1e-9, 1e300, infinity, -infinity, notANumber};
    static const std::string texts[] = {"",
                                        "\"",
                                        "\"x",
                                        "x\"y\"",
                                        "x\1",
                                        "abcdefg\5h",
                                        "\3",
                                        "=;,{}",
                                        " ",
                                        "TRUE",
                                        std::string("a\0b", 3),
                                        std::string("\0", 1),
                                        "\6\x7f\xff",
                                        "12345678\n",
                                        std::string(300, 'l'),
                                        std::string(400, '"'),
                                        "{}",
                                        "abcd\4"};
    const double real = reals[random() % std::size(reals)];
    const std::string &text = texts[random() % std::size(texts)];
    switch (field.kind) {
    case fieldKind_t::float64:
        *static_cast<double *>(value) = real;
        break;
    case fieldKind_t::float32:
        *static_cast<float *>(value) = std::fabs(real) == 1e300 ? 3e38F : static_cast<float>(real);
        break;
    case fieldKind_t::integer16:
        *static_cast<std::int16_t *>(value) = static_cast<std::int16_t>(random());
        break;
    case fieldKind_t::boolean:
        *static_cast<std::uint8_t *>(value) = static_cast<std::uint8_t>(random() % 4);
        break;
    case fieldKind_t::text:
        if (room >= 0)
            std::snprintf(static_cast<char *>(value), static_cast<std::size_t>(room), "%s", text.c_str());
        else if (field.as<pointerText_t>() == nullptr)
            static_cast<string_t *>(value)->replace(0, 400, text.data(), text.size());
        if (room >= 0 && text.size() > 200)
            std::fill_n(static_cast<char *>(value), room, text[0]);
        break;
    case fieldKind_t::enumeration:
        *static_cast<std::int32_t *>(value) = static_cast<std::int32_t>(random() % 12) - 1;
        break;
    case fieldKind_t::text16:
        static_cast<wideStringField_t *>(value)->clear();
        if (random() % 2 == 0)
            *static_cast<wideStringField_t *>(value) = std::u16string_view(u"\0x\xFFFF", random() % 4);
        break;
    default:
        *static_cast<std::int32_t *>(value) = static_cast<std::int32_t>(random() % 16) - 2;
        break;
    }
}

void changeField(const fieldDescription_t &field, std::minstd_rand &random) {
    auto *const value = const_cast<void *>(field.value);
    if (!field.list)
        return changeValue(field, value, random);
    if (field.isList(listKind_t::range))
        static_cast<valueRange_t *>(value)->values().resize(static_cast<std::int32_t>(random() % 4));
    else if (field.isList(listKind_t::growable) && field.kind == fieldKind_t::text)
        static_cast<growableList_t<string_t> *>(value)->resize(static_cast<std::int32_t>(random() % 4));
    const elementRun_t run = field.list->elements(value);
    if (run.count == 0)
        return;
    const auto index = static_cast<std::int32_t>(random() % static_cast<unsigned>(run.count));
    void *element = elementOf(field, run, index);
    const auto *const record = field.as<elementRecord_t>();
    if (field.isList(listKind_t::container) && record != nullptr && random() % 4 == 0) { // hosts may have null items
        delete static_cast<MessageBase *>(element);
        const_cast<void **>(static_cast<void *const *>(run.first))[index] = nullptr;
    } else if (element == nullptr) {
        return;
    } else if (record != nullptr) {
        structureValues_t(record->visit, element).changeOne(random);
    } else {
        changeValue(field, element, random);
    }
}

// To where the field is in another structure.
void move(fieldDescription_t &field, const char *from, const char *to) {
    const auto moved = [from, to](const void *at) -> const void * {
        return to + (static_cast<const char *>(at) - from);
    };
    field.value = moved(field.value);
    if (field.list && field.list->countMember != nullptr)
        field.list->countMember = moved(field.list->countMember);
    if (field.isSet != nullptr)
        field.isSet = reinterpret_cast<const std::uint8_t *>(to) + (reinterpret_cast<const char *>(field.isSet) - from);
}

} // namespace

structureValues_t::structureValues_t(void (*show)(recordVisitor_t &), void *structure)
    : base_(static_cast<const char *>(structure)) {
    struct visitor_t : recordVisitor_t {
        explicit visitor_t(structureValues_t &wanted) : values(wanted) {}
        void visit(const recordDescription_t &record) override {
            values.declared_ = static_cast<const char *>(record.address);
            values.addMembers(record.fields);
            if (record.structure.starts_with("DeviceInfo"))
                values.addInteger(static_cast<const DeviceInfo *>(record.address)->extra);
        }
        structureValues_t &values;
    } visitor(*this);
    show(visitor);
}

void structureValues_t::addMembers(const textGroup_t &group) {
    for (const textField_t *member = group.firstMember(); member != nullptr; member = member->nextMember()) {
        fieldDescription_t field;
        member->describe(field);
        if (const auto *nested = field.as<nestedRecord_t>()) {
            addMembers(*nested->group);
            continue;
        }
        move(field, declared_, base_);
        fields_.push_back(field);
    }
}

// A member that has no field.
void structureValues_t::addInteger(const std::int32_t &member) {
    fieldDescription_t field;
    field.kind = fieldKind_t::integer32;
    field.bindTo(member);
    move(field, declared_, base_);
    fields_.push_back(field);
}

void structureValues_t::moveTo(void *structure) {
    for (fieldDescription_t &field : fields_)
        move(field, base_, static_cast<const char *>(structure));
    base_ = static_cast<const char *>(structure);
}

std::string structureValues_t::shown() const {
    std::string all;
    for (const fieldDescription_t &field : fields_)
        all += shownField(field) + '\n';
    return all;
}

void structureValues_t::changeOne(std::minstd_rand &random) {
    changeField(fields_[random() % fields_.size()], random);
}

} // namespace vek::test
