// Everything here goes through the library's own writer, so that it can't be written in any other way.
#include "vek/inspect/message/written.hpp"

#include "vek/api/private/envelopeWriter.hpp"
#include "vek/records/conversion.hpp"

#include <memory>

namespace vek::inspect {

namespace {

// `writeBody` takes the place behind the envelope's head, and returns the one behind the body.
template <class WriteBody>
std::string_view withEnvelope(bodyBuffer_t &buffer, const envelopeNumbers_t &numbers, WriteBody writeBody) {
    bodyWriter_t out(buffer);
    const std::size_t length = beginEnvelope(out, numbers);
    out = writeBody(out);
    endEnvelope(out, length);
    return withoutNul(out.text());
}

// A structure and who releases it.
using structure_t = std::unique_ptr<void, void (*)(void *)>;

constexpr std::size_t firstRoom = 1024;

std::string_view written(bodyBuffer_t &buffer, const envelopeNumbers_t &numbers, const conversion_t &conversion,
                         const structure_t &structure) {
    return withEnvelope(buffer, numbers, [&](bodyWriter_t out) { return conversion.print(structure.get(), out); });
}

std::string written(const envelopeNumbers_t &numbers, const conversion_t &conversion, const structure_t &structure) {
    bodyBuffer_t buffer(firstRoom);
    return std::string(written(buffer, numbers, conversion, structure));
}

} // namespace

std::string sealed(std::int32_t id, std::int32_t echoTag, std::int32_t sequenceNumber, std::string_view body) {
    bodyBuffer_t buffer(firstRoom);
    return std::string(withEnvelope(buffer, {id, echoTag, sequenceNumber}, [body](bodyWriter_t out) {
        out.put(body);
        return out;
    }));
}

std::optional<std::string> newMessage(std::int32_t id, std::int32_t echoTag, std::int32_t sequenceNumber) {
    const messageSchema_t *message = schema().find(id);
    if (message == nullptr || message->conversion == nullptr)
        return {};
    const structure_t structure(message->conversion->create(), message->conversion->destroy);
    return written({id, echoTag, sequenceNumber}, *message->conversion, structure);
}

std::optional<std::string> asRead(const tree_t &tree) {
    const messageSchema_t *message = tree.message();
    if (message == nullptr || message->conversion == nullptr)
        return {};
    const envelope_t envelope = readEnvelope(tree.text().substr(0, tree.text().find('\0')));
    const envelopeNumbers_t numbers = envelope.numbersForHost({});
    const structure_t structure(message->conversion->create(), message->conversion->destroy);
    message->conversion->parse(structure.get(), envelope.body);
    return written({message->id, numbers.echoTag, numbers.sequenceNumber}, *message->conversion, structure);
}

std::optional<writtenMessage_t> writtenMessage(std::string_view text) {
    const envelope_t envelope = readEnvelope(text);
    const messageSchema_t *message = schema().find(envelope.head.id.value);
    if (envelope.result != envelopeResult_t::correct || message == nullptr || message->conversion == nullptr)
        return {};
    const structure_t structure(message->conversion->create(), message->conversion->destroy);
    message->conversion->parse(structure.get(), envelope.body);
    bodyBuffer_t buffer(text.size() + firstRoom);
    const bool isSame = written(buffer, envelope.head.numbers(), *message->conversion, structure) == text;
    return isSame ? std::optional<writtenMessage_t>({text, envelope, message->record}) : std::nullopt;
}

} // namespace vek::inspect
