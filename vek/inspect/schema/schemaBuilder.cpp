// Each record class shows itself, printed from a structure with its declared defaults: so the schema says of keys,
// members and defaults just what the conversions do, and nothing is said twice.
#include "vek/inspect/schema/private/schemaBuilder.hpp"

#include "vek/api/private/catalogue.hpp"
#include "vek/inspect/schema/members.hpp"
#include "vek/text/bodyWriter.hpp"

#include <algorithm>
#include <cstring>

namespace vek::inspect {

namespace {

// The name of an id's constant in the C header.
template <vekMessageId Id>
constexpr std::string_view constantOf() {
    std::string_view name = __PRETTY_FUNCTION__;
    name.remove_prefix(name.find("Id = ") + 5);
    return name.substr(0, name.find_first_of(";]"));
}

std::string_view constantNamed(std::int32_t id) {
    std::string_view name;
    messages_t::forEach([&]<class Message>(Message) {
        if (Message::id == id)
            name = constantOf<static_cast<vekMessageId>(Message::id)>();
    });
    return name;
}

fieldDescription_t describe(const textField_t &field) {
    fieldDescription_t description;
    field.describe(description);
    return description;
}

std::size_t distance(const void *from, const void *to) {
    return static_cast<std::size_t>(static_cast<const char *>(to) - static_cast<const char *>(from));
}

// The key of the member that counts a list's elements; of a range, of the member inside it that is its type.
const fieldSchema_t *findBound(const recordSchema_t &record, const textGroup_t &group, const void *start,
                               std::size_t size) {
    std::size_t position = 0;
    for (const textField_t *field = group.firstMember(); field != nullptr; field = field->nextMember()) {
        const fieldDescription_t description = describe(*field);
        const auto *at = static_cast<const char *>(description.member);
        if (!description.list && at >= start && at < static_cast<const char *>(start) + size)
            return &record.fields[position];
        ++position;
    }
    return nullptr;
}

void setDefault(fieldSchema_t &field, const textField_t &described, const fieldDescription_t &description,
                bool keepsItsValues) {
    const auto *bytes = static_cast<const char *>(description.member);
    const bool isZero = std::all_of(bytes, bytes + description.memberSize, [](char byte) { return byte == 0; });
    if (description.as<nestedRecord_t>() != nullptr) {
        field.defaultKind = defaultKind_t::record;
    } else if (keepsItsValues && described.isSet == 0) {
        field.defaultKind = defaultKind_t::notSet;
    } else if (const auto *words = description.as<enumWords_t>()) {
        // Also of a range without values, whose type is not written.
        std::int32_t value = 0;
        std::memcpy(&value, bytes, sizeof value);
        const bool hasName = value >= 0 && static_cast<std::size_t>(value) < words->names.size();
        field.defaultKind = defaultKind_t::value;
        field.defaultText = hasName ? words->names[static_cast<std::size_t>(value)] : std::to_string(value);
    } else if (isZero && field.member.type.ends_with('*')) {
        field.defaultKind = defaultKind_t::null;
    } else if (isZero && description.isList(listKind_t::array)) {
        field.defaultKind = defaultKind_t::zero;
    } else {
        bodyBuffer_t buffer(64);
        field.defaultText = described.toText(bodyWriter_t(buffer)).text();
        field.defaultKind = field.defaultText.empty() ? defaultKind_t::empty : defaultKind_t::value;
    }
}

} // namespace

void schemaBuilder_t::build() {
    schema_.enumerations_ = allEnumerations();
    for (const catalogueRow_t &row : catalogueRows()) {
        messageSchema_t message;
        message.id = row.id;
        message.write = row.write;
        message.release = row.release;
        message.conversion = row.conversion;
        if (row.conversion != nullptr) {
            message.constant = constantNamed(row.id);
            message.record = recordOf(visitOf(row.id));
        }
        schema_.messages_.push_back(message);
    }
}

const recordSchema_t *schemaBuilder_t::recordOf(visit_t visit) {
    if (const auto known = records_.find(visit); known != records_.end())
        return known->second;
    struct visitor_t : recordVisitor_t {
        visitor_t(schemaBuilder_t &owner, recordSchema_t &into) : builder(owner), record(into) {}
        void visit(const recordDescription_t &description) override {
            record.name = description.record;
            record.structure = description.structure;
            record.about = description.about;
            record.kind = description.kind;
            record.size = sizeOf(description.structure);
            builder.addFields(record, description.fields, description);
        }
        schemaBuilder_t &builder;
        recordSchema_t &record;
    };
    recordSchema_t &record = schema_.records_.emplace_back();
    visitor_t visitor(*this, record);
    visit(visitor);
    return records_[visit] = &record;
}

void schemaBuilder_t::addFields(recordSchema_t &record, const textGroup_t &group, const recordDescription_t &top) {
    for (const textField_t *field = group.firstMember(); field != nullptr; field = field->nextMember())
        addField(record, *field, top);
    std::size_t position = 0; // now that the fields have their places
    for (const textField_t *field = group.firstMember(); field != nullptr; field = field->nextMember()) {
        const fieldDescription_t description = describe(*field);
        fieldSchema_t &schema = record.fields[position++];
        if (description.list && description.list->countMember != nullptr)
            schema.list->counter = findBound(record, group, description.list->countMember, 1);
        if (description.isList(listKind_t::range))
            schema.list->rangeType = findBound(record, group, description.member, description.memberSize);
        record.hasCounts |= schema.counter() != nullptr || (schema.record() != nullptr && schema.record()->hasCounts);
    }
}

void schemaBuilder_t::addField(recordSchema_t &record, const textField_t &described, const recordDescription_t &top) {
    const fieldDescription_t description = describe(described);
    fieldSchema_t field;
    field.key = described.key();
    field.position = static_cast<std::int32_t>(record.fields.size());
    field.kind = description.kind;
    if (description.list)
        field.list = {.kind = description.list->kind,
                      .room = description.list->room,
                      .isCountChecked = description.list->isCountChecked};
    if (const auto *words = description.as<enumWords_t>()) {
        field.details = *words;
    } else if (const auto *text = description.as<arrayText_t>()) {
        field.details = *text;
        record.roomOfSpill = text->reach > text->room ? text->room : record.roomOfSpill;
    } else if (const auto *nested = description.as<nestedRecord_t>()) {
        field.details = nestedRecord(*nested, top);
    } else if (const auto *element = description.as<elementRecord_t>()) {
        field.details = recordOf(element->visit);
    }
    field.member =
        memberAt(layoutNamed(top.structure), distance(top.address, description.member), description.memberSize);
    setDefault(field, described, description, top.kind == structureKind_t::ownRecord);
    record.fields.push_back(std::move(field));
}

const recordSchema_t *schemaBuilder_t::nestedRecord(const nestedRecord_t &field, const recordDescription_t &top) {
    recordSchema_t &nested = schema_.records_.emplace_back();
    nested.name = nested.structure = field.structure;
    nested.isNested = true;
    nested.size = sizeOf(field.structure);
    addFields(nested, *field.group, top);
    return &nested;
}

} // namespace vek::inspect
