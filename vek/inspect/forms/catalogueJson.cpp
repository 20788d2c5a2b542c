// The catalogue as JSON: what generators of types and documents need of the schema.
#include "vek/inspect/forms/forms.hpp"

#include <algorithm>
#include <string_view>

namespace vek::inspect {

namespace {

// In order of defaultKind_t and of structureKind_t.
constexpr std::string_view defaultNames[] = {"value", "empty", "zero", "null", "not set", "record"};
constexpr std::string_view structureNames[] = {"polymorphic", "plain", "own record"};

class catalogueWriter_t {
public:
    explicit catalogueWriter_t(std::string &out) : json_(out) {}

    void write() {
        json_.open('{');
        json_.member("version", jsonVersion);
        json_.list("messages", schema().messages(), [this](const messageSchema_t &one) { writeMessage(one); });
        json_.list("enumerations", schema().enumerations(),
                   [this](const enumeration_t &one) { writeEnumeration(one); });
        json_.list("records", schema().records(), [this](const recordSchema_t *one) {
            json_.open('{');
            writeRecord(*one);
            json_.close('}');
        });
        json_.close('}');
    }

private:
    void writeMessage(const messageSchema_t &message) {
        json_.open('{');
        json_.member("id", message.id);
        if (message.record != nullptr) {
            json_.member("constant", message.constant);
            json_.member("record", message.record->name);
        }
        json_.close('}');
    }

    void writeEnumeration(const enumeration_t &enumeration) {
        json_.open('{');
        json_.member("name", enumeration.name);
        json_.member("words", enumeration.words);
        json_.name("values");
        json_.open('[');
        for (std::size_t value = 0; value < enumeration.names.size(); ++value) {
            json_.open('{');
            json_.member("value", value);
            json_.member("name", enumeration.names[value]);
            json_.member("constant", enumeration.constants[value]);
            json_.close('}');
        }
        json_.close(']');
        json_.close('}');
    }

    void writeRecord(const recordSchema_t &record) {
        json_.member("name", record.name);
        json_.member("structure", record.structure);
        if (!record.isNested) {
            json_.member("about", record.about);
            json_.member("kind", structureNames[static_cast<std::size_t>(record.kind)]);
        }
        writeBytes("size", record.size);
        json_.list("keys", record.fields, [this](const fieldSchema_t &field) { writeField(field); });
    }

    void writeField(const fieldSchema_t &field) {
        json_.open('{');
        json_.member("key", field.key);
        json_.member("kind", kindName(field.kind));
        json_.member("words", kindInWords(field));
        json_.member("list", field.isList());
        if (field.isList())
            json_.member("listKind", listName(field.list->kind));
        if (const enumeration_t *enumeration = schema().enumerationOf(field))
            json_.member("enumeration", enumeration->name);
        if (field.record() != nullptr && field.isList())
            json_.member("record", field.record()->name);
        if (const auto room = field.list ? field.list->room : field.textRoom())
            json_.member("room", *room);
        if (const auto room = field.textRoom(); room && field.list)
            json_.member("elementRoom", *room);
        if (field.counter() != nullptr) {
            json_.member("count", field.counter()->key);
            json_.member("countIsChecked", field.list->isCountChecked);
        }
        if (field.rangeType() != nullptr)
            json_.member("rangeType", field.rangeType()->key);
        json_.object("member", [&] {
            json_.member("path", field.member.path);
            json_.member("type", field.member.type);
            writeBytes("offset", field.member.offset);
            writeBytes("size", field.member.size);
        });
        writeDefault(field);
        if (field.record() != nullptr && !field.isList())
            json_.object("of", [&] { writeRecord(*field.record()); });
        json_.close('}');
    }

    void writeBytes(std::string_view name, const targetBytes_t &bytes) {
        json_.object(name, [&] {
            json_.member("windows32", bytes.windows32);
            json_.member("windows64", bytes.windows64);
            json_.member("linux64", bytes.linux64);
        });
    }

    void writeDefault(const fieldSchema_t &field) {
        json_.member("defaultKind", defaultNames[static_cast<std::size_t>(field.defaultKind)]);
        if (field.defaultKind == defaultKind_t::record)
            return; // its own keys have theirs
        json_.name("default");
        if (field.defaultKind == defaultKind_t::notSet || field.defaultKind == defaultKind_t::null)
            json_.ready("null");
        else if (field.isList() || field.kind == fieldKind_t::text16)
            writeElements(field);
        else
            writeScalar(field, field.defaultText);
    }

    // "{-1.000000,-1.000000,}", or nothing.
    void writeElements(const fieldSchema_t &field) {
        json_.open('[');
        std::string_view rest = field.defaultText;
        rest.remove_prefix(std::min<std::size_t>(rest.size(), 1));
        for (std::size_t end = rest.find(','); end != std::string_view::npos; end = rest.find(',')) {
            writeScalar(field, rest.substr(0, end));
            rest.remove_prefix(end + 1);
        }
        json_.close(']');
    }

    void writeScalar(const fieldSchema_t &field, std::string_view text) {
        if (isNumber(field.kind))
            json_.ready(text);
        else if (field.kind == fieldKind_t::boolean)
            json_.value(text == "TRUE");
        else
            json_.value(text);
    }

    jsonAppender_t json_;
};

} // namespace

void appendCatalogueJson(std::string &out) {
    catalogueWriter_t(out).write();
}

} // namespace vek::inspect
