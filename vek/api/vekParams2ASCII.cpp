// The four exported calls.
#include "vek/api/vekParams2ASCII.h"

#include "vek/api/private/catalogue.hpp"
#include "vek/api/private/envelopeWriter.hpp"
#include "vek/api/private/headerNumbers.hpp"
#include "vek/api/private/plainEnvelope.hpp"
#include "vek/text/bodyWriter.hpp"
#include "vek/vek_std/std_sys/private/vek_floatingPoint.hpp"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>

namespace {

using namespace vek;

constexpr std::int32_t failure = -1;

// The room that a text handed out has at least: so much behind its body, or so much without a body.
constexpr std::size_t roomBehindBody = 256;
constexpr std::size_t roomWithoutBody = 40960;
constexpr std::size_t firstRoom = 1024;

// Flushed at once: a host that ends on the refusal, if by a fault, has still said why.
std::int32_t refuseId(const char *line, std::int32_t id) {
    std::printf("%s%d\n", line, static_cast<int>(id));
    std::fflush(stdout);
    return failure;
}

std::int32_t refuseReading(std::int32_t id) {
    return refuseId("vekStrToVal: InvalidMsgId = ", id);
}

// Whatever goes wrong from here on, nothing leaks and the caller's pointer is null.
void readStructure(const conversion_t &conversion, const char *text, std::string_view body, void **msgStruct) {
    *msgStruct = nullptr;
    std::unique_ptr<void, void (*)(void *)> structure(conversion.create(), conversion.destroy);
    if (text != nullptr)
        conversion.parse(structure.get(), body);
    *msgStruct = structure.release();
}

[[gnu::always_inline]] inline std::int32_t readMessage(const char *text, std::int32_t id, std::string_view body,
                                                       const readHeaderNumbers_t &numbers, std::int32_t *msgId,
                                                       void **msgStruct) {
    const catalogueRow_t *row = findInCatalogue(id);
    if (row != nullptr && row->conversion != nullptr)
        readStructure(*row->conversion, text, body, msgStruct);
    *msgId = id; // from here on nothing fails
    numbers.takeOver();
    return row != nullptr ? 0 : refuseReading(id);
}

// Of a text whose envelope is not plain, or without a text.
[[gnu::noinline]] std::int32_t readOtherMessage(const char *text, std::string_view all, std::int32_t *msgId,
                                                void **msgStruct) {
    const envelope_t envelope = readEnvelope(all);
    const std::int32_t id = envelope.head.hasStartMarker ? envelope.head.id.valueOr(*msgId) : *msgId;
    return readMessage(text, id, envelope.body, readHeaderNumbers_t(envelope), msgId, msgStruct);
}

// A text that holds the empty string, in the room that a message without a body has.
char *emptyText() {
    bodyBuffer_t buffer(roomWithoutBody);
    bodyWriter_t(buffer).put('\0');
    return buffer.release();
}

// The sequence number is taken when the text is whole: a message that there was no memory for has not been sent, and
// takes none. When others have read or written meanwhile, the message comes behind them.
char *writeMessage(std::int32_t id, const catalogueRow_t *row, const void *msgStruct) {
    bodyBuffer_t buffer(msgStruct == nullptr ? roomWithoutBody : firstRoom);
    bodyWriter_t out(buffer);
    headerNumbers_t before = headerNumbers, own = before.countedUp();
    const std::size_t lengthPosition = beginEnvelope(out, {id, own.echoTag(), own.sequenceNumber()});
    if (msgStruct != nullptr) {
        const std::size_t bodyStart = out.size();
        out = row->conversion->print(msgStruct, out);
        out.room(bodyStart < roomBehindBody ? roomBehindBody - bodyStart : 1);
    }
    endEnvelope(out, lengthPosition);
    while (!headerNumbers.replace(before, own)) {
        own = before.countedUp();
        out = renumberEnvelope(out, lengthPosition, own.echoTag(), own.sequenceNumber());
    }
    return buffer.release();
}

} // namespace

// No exception leaves the four calls: hosts may be in C, or built by another compiler. Only memory can run out below
// them.
extern "C" {

std::int32_t VEK_CALL vekStrToVal(const char *text, std::int32_t *msgId, void **msgStruct) try {
    const floatingPointGuard_t guard;
    if (msgId == nullptr || msgStruct == nullptr || (text != nullptr && *text == '\0'))
        return failure;
    const std::string_view all = text != nullptr ? std::string_view(text) : std::string_view();
    plainEnvelope_t plain;
    if (!plain.read(all))
        return readOtherMessage(text, all, msgId, msgStruct);
    return readMessage(text, plain.id, plain.body,
                       readHeaderNumbers_t(headerNumbers_t(plain.echoTag, plain.sequenceNumber)), msgId, msgStruct);
} catch (const std::bad_alloc &) {
    return failure;
}

std::int32_t VEK_CALL vekValToStr(std::int32_t msgId, const void *msgStruct, char **text) try {
    const floatingPointGuard_t guard;
    if (text == nullptr)
        return failure;
    *text = nullptr;
    const catalogueRow_t *row = findInCatalogue(msgId);
    if (msgStruct == nullptr || (row != nullptr && row->conversion != nullptr)) {
        *text = writeMessage(msgId, row, msgStruct);
        return 0;
    }
    // A structure for an id that has none: the caller gets a text to release, also when the id is refused.
    *text = emptyText();
    return row != nullptr && row->write == service_t::nothing ? 0 : refuseId("vekValToStr: Invalid msg ID = ", msgId);
} catch (const std::bad_alloc &) {
    return failure;
}

void VEK_CALL vekParamsDelete(void *text) {
    std::free(text);
}

std::int32_t VEK_CALL vekParamsDeleteStruct(std::int32_t msgId, void **msgStruct) {
    if (msgStruct == nullptr)
        return failure;
    const catalogueRow_t *row = findInCatalogue(msgId);
    if (row == nullptr || row->release == service_t::refused)
        return refuseReading(msgId);
    // Where nothing is released the pointer is taken from the caller all the same; where it is, the pointer stays as it
    // is.
    if (row->release == service_t::nothing)
        *msgStruct = nullptr;
    else if (*msgStruct != nullptr)
        row->conversion->destroy(*msgStruct);
    return 0;
}

} // extern "C"
