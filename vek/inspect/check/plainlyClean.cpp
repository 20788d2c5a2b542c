// Whether a message can be told to have nothing wrong with it without being gone over pair by pair: nearly all messages
// of a log are as the library writes them.
#include "vek/inspect/check/plainlyClean.hpp"

#include "vek/inspect/check/check.hpp"
#include "vek/inspect/message/writtenPairs.hpp"
#include "vek/text/characterBlock.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <array>

namespace vek::inspect {

namespace {

// A typographic quote, among others: the first byte of a character from U+2000 to U+2FFF.
constexpr char wideQuote = '\xE2';

// That may be told of: a control character, or a blank or a quote at a text's beginning. Another stands in front.
bool isOdd(const char &c) {
    const char before = *(&c - 1);
    return (static_cast<unsigned char>(c) < 0x20 && !isEscapeCode(c)) || c == 0x7F ||
           ((c == ' ' || c == '\'' || c == wideQuote) && (isSeparator(before) || before == openBrace));
}

// The body of a message, which begins with its brace.
bool hasOdd(std::string_view body) {
    if (body.empty())
        return false;
    const char *at = body.data() + 1, *const end = body.data() + body.size();
#ifdef __SSE2__
    for (; end - at >= characterBlock_t::size; at += characterBlock_t::size) {
        const characterBlock_t block(at), before(at - 1);
        const unsigned fronts =
            block.equalAny(' ', '\'', wideQuote) & before.equalAny(equalsSign, semicolon, comma, openBrace);
        if ((fronts | block.between('\0', 0x1F) | block.equal(0x7F)) != 0 &&
            std::any_of(at, at + characterBlock_t::size, &isOdd))
            return true;
    }
#endif
    return std::any_of(at, end, &isOdd);
}

// Whether each list of a group that the library wrote has as many elements as the key says that counts it.
bool areCountsRight(const recordSchema_t &record, std::string_view group) {
    std::array<std::string_view, 40> values{}; // by the fields' positions; empty of those that are not there
    if (record.fields.size() > values.size())
        return false;
    bool areRight = true;
    forEachWrittenPair(record, group, [&](const fieldSchema_t &field, std::string_view value) {
        values[static_cast<std::size_t>(field.position)] = value;
        const recordSchema_t *const nested = field.record();
        if (nested == nullptr || !nested->hasCounts)
            return;
        if (field.isList())
            forEachWrittenElement(
                value, [&](std::string_view element) { areRight = areRight && areCountsRight(*nested, element); });
        else
            areRight = areRight && areCountsRight(*nested, value);
    });
    return areRight && std::all_of(record.fields.begin(), record.fields.end(), [&values](const fieldSchema_t &field) {
               if (field.counter() == nullptr)
                   return true;
               std::int32_t elements = 0;
               forEachWrittenElement(values[static_cast<std::size_t>(field.position)],
                                     [&elements](std::string_view) { ++elements; });
               return readInteger(values[static_cast<std::size_t>(field.counter()->position)]) == elements;
           });
}

// Whether a text may run on into other members: it does beyond its room.
bool mayRunOn(const writtenMessage_t &message) {
    const auto room = static_cast<std::size_t>(message.record->roomOfSpill);
    return room > 0 && message.envelope.body.size() >= room;
}

} // namespace

std::optional<writtenMessage_t> plainlyClean(std::string_view text) {
    std::optional<writtenMessage_t> message = writtenMessage(text);
    if (message && (hasOdd(message->envelope.body) || mayRunOn(*message) ||
                    (message->record->hasCounts && !areCountsRight(*message->record, message->envelope.body))))
        message.reset();
    return message;
}

bool isPlainlyClean(std::string_view text) {
    return plainlyClean(text).has_value();
}

} // namespace vek::inspect
