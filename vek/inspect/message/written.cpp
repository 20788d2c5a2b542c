// Everything here goes through the library's own writer, so that it can't be written in any other way.
#include "vek/inspect/message/written.hpp"

#include "vek/api/private/envelopeWriter.hpp"
#include "vek/records/conversion.hpp"

#include <memory>

namespace vek::inspect {

namespace {

// `writeBody` takes the place behind the envelope's head, and returns the one behind the body.
template <class WriteBody>
std::string withEnvelope(const envelopeNumbers_t &numbers, WriteBody writeBody) {
    bodyBuffer_t buffer(1024);
    bodyWriter_t out(buffer);
    const std::size_t length = beginEnvelope(out, numbers);
    out = writeBody(out);
    endEnvelope(out, length);
    return std::string(withoutNul(out.text()));
}

// A structure and who releases it.
using structure_t = std::unique_ptr<void, void (*)(void *)>;

std::string written(const envelopeNumbers_t &numbers, const conversion_t &conversion, const structure_t &structure) {
    return withEnvelope(numbers, [&](bodyWriter_t out) { return conversion.print(structure.get(), out); });
}

} // namespace

std::string sealed(std::int32_t id, std::int32_t echoTag, std::int32_t sequenceNumber, std::string_view body) {
    return withEnvelope({id, echoTag, sequenceNumber}, [body](bodyWriter_t out) {
        out.put(body);
        return out;
    });
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

} // namespace vek::inspect
