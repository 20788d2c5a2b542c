// One pass over a body that is known to be as the library writes it; what JSON looks like is said in json.cpp.
#include "vek/inspect/forms/writtenJson.hpp"

#include "vek/inspect/forms/private/jsonScalar.hpp"
#include "vek/inspect/forms/private/jsonText.hpp"
#include "vek/inspect/message/wideText.hpp"
#include "vek/inspect/message/writtenPairs.hpp"
#include "vek/text/bodyWriter.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"

namespace vek::inspect {

namespace {

// Numbers that were written are JSON's too: integers all, reals but for "inf", "nan" and the longest.
bool isPlainNumber(fieldKind_t kind, std::string_view value) {
    constexpr std::size_t longest = 300;
    return isInteger(kind) || kind == fieldKind_t::text16 ||
           (isReal(kind) && !value.empty() && value.size() < longest && isDigit(value.back()));
}

class writtenJson_t {
public:
    explicit writtenJson_t(bodyBuffer_t &buffer) : out_(buffer) {}

    std::string_view json() const { return out_.text(); }

    void writeRecord(const recordSchema_t &record, std::string_view group) {
        char before = '{';
        forEachWrittenPair(record, group, [&](const fieldSchema_t &field, std::string_view value) {
            writeName(before, field.key);
            if (field.isList())
                writeList(value, [&](std::string_view element) { writeValue(field, element); });
            else
                writeValue(field, value);
        });
        close(before, '{', '}');
    }

private:
    // `before` is what stands in front: the opening bracket, and then commas.
    void writeName(char &before, std::string_view key) {
        char *to = out_.room(key.size() + 4);
        *to++ = before;
        *to++ = '"';
        copyShort(key.data(), key.size(), to);
        to += key.size();
        *to++ = '"';
        *to++ = ':';
        out_.advance(to);
        before = ',';
    }

    template <class Write>
    void writeList(std::string_view list, Write write) {
        char before = '[';
        forEachWrittenElement(list, [&](std::string_view element) {
            out_.put(before);
            before = ',';
            write(element);
        });
        close(before, '[', ']');
    }

    void close(char before, char opening, char closing) {
        if (before == opening)
            out_.put(opening);
        out_.put(closing);
    }

    // Of a list, an element.
    void writeValue(const fieldSchema_t &field, std::string_view value) {
        if (field.record() != nullptr)
            writeRecord(*field.record(), value);
        else if (field.kind != fieldKind_t::text16)
            writeScalar(field.kind, value);
        else if (const std::optional<std::string> text = wideText(value))
            writeText(*text);
        else
            writeList(value, [&](std::string_view code) { writeScalar(field.kind, code); });
    }

    void writeScalar(fieldKind_t kind, std::string_view value) {
        if (isPlainNumber(kind, value))
            return out_.put(value);
        if (kind == fieldKind_t::enumeration || (kind == fieldKind_t::text && isPlainAscii(value)))
            return writeQuoted(value);
        if (kind == fieldKind_t::boolean)
            return out_.put(value == "TRUE" ? std::string_view("true") : std::string_view("false"));
        std::string words;
        jsonAppender_t json(words);
        appendScalar(json, kind, value);
        out_.put(words);
    }

    void writeText(std::string_view text) {
        if (isPlainAscii(text))
            return writeQuoted(text);
        std::string words;
        appendJsonString(words, text);
        out_.put(words);
    }

    void writeQuoted(std::string_view text) {
        out_.put('"');
        out_.put(text);
        out_.put('"');
    }

    bodyWriter_t out_;
};

} // namespace

void appendWrittenMembers(jsonAppender_t &json, const writtenMessage_t &message) {
    const envelopeHead_t &head = message.envelope.head;
    const auto writeNumber = [&](std::string_view name, const envelopeField_t &number) {
        json.name(name);
        json.ready(message.text.substr(number.start, number.end - number.start));
    };
    writeNumber("id", head.id);
    json.member("name", message.record->name);
    writeNumber("echo", head.echoTag);
    writeNumber("seq", head.sequenceNumber);
    writeNumber("length", head.length);
    json.name(message.record->name);
    bodyBuffer_t buffer(message.text.size() * 3 / 2);
    writtenJson_t body(buffer);
    body.writeRecord(*message.record, message.envelope.body);
    json.ready(body.json());
}

} // namespace vek::inspect
