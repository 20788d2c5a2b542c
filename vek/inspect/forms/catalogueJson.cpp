#include "vek/inspect/forms/forms.hpp"

#include <string_view>

namespace vek::inspect {

namespace {

constexpr std::string_view defaultNames[] = {"value", "empty", "zero", "null", "not set", "record"};

class catalogueWriter_t {
public:
    explicit catalogueWriter_t(std::string &out) : out_(out) {}

    void write() {
        list(schema().messages(), [this](const messageSchema_t &message) { writeMessage(message); });
    }

private:
    void name(std::string_view member) {
        if (out_.back() != '{')
            out_ += ',';
        appendJsonString(out_, member);
        out_ += ':';
    }
    void text(std::string_view member, std::string_view value) {
        if (value.empty())
            return;
        name(member);
        appendJsonString(out_, value);
    }
    template <class Number>
    void number(std::string_view member, Number value) {
        name(member);
        out_ += std::to_string(value);
    }
    template <class List, class Write>
    void list(const List &values, Write write) {
        out_ += '[';
        for (const auto &value : values) {
            if (out_.back() != '[')
                out_ += ',';
            write(value);
        }
        out_ += ']';
    }

    void writeMessage(const messageSchema_t &message) {
        out_ += '{';
        number("id", message.id);
        text("constant", message.constant);
        if (message.record != nullptr)
            writeRecord(*message.record);
        out_ += '}';
    }

    void writeRecord(const recordSchema_t &record) {
        text("record", record.name);
        text("structure", record.structure);
        text("about", record.about);
        name("keys");
        list(record.fields, [this](const fieldSchema_t &field) { writeField(field); });
    }

    void writeField(const fieldSchema_t &field) {
        out_ += '{';
        text("key", field.key);
        text("kind", kindName(field.kind));
        text("words", kindInWords(field));
        if (field.isList())
            text("list", "true");
        if (field.room >= 0)
            number("room", field.room);
        if (field.elementRoom >= 0)
            number("elementRoom", field.elementRoom);
        if (field.countField != nullptr)
            text("count", field.countField->key);
        if (!field.names.empty()) {
            name("names");
            list(field.names, [this](const char *one) { appendJsonString(out_, one); });
        }
        text("member", field.member.path);
        text("type", field.member.type);
        text("default", field.defaultText);
        text("defaultKind", defaultNames[static_cast<std::size_t>(field.defaultKind)]);
        if (field.record != nullptr) {
            name("of");
            out_ += '{';
            writeRecord(*field.record);
            out_ += '}';
        }
        out_ += '}';
    }

    std::string &out_;
};

} // namespace

void appendCatalogueJson(std::string &out) {
    catalogueWriter_t(out).write();
}

} // namespace vek::inspect
