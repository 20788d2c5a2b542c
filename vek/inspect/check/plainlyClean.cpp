// Whether a message can be told to have nothing wrong with it without being gone over pair by pair: nearly all messages
// of a log are as the library writes them.
#include "vek/inspect/check/check.hpp"

#include "vek/inspect/message/written.hpp"
#include "vek/text/characterBlock.hpp"
#include "vek/text/numberText.hpp"
#include "vek/text/tolerantTokenizer.hpp"

#include <algorithm>
#include <array>

namespace vek::inspect {

namespace {

// That would be told of: a control character, or a blank at a text's beginning. Another stands in front.
bool isOdd(const char &c) {
    const char before = *(&c - 1);
    return (static_cast<unsigned char>(c) < 0x20 && !isEscapeCode(c)) || c == 0x7F ||
           (c == ' ' && (isSeparator(before) || before == openBrace));
}

// The body of a message, which begins with its brace.
bool hasOdd(std::string_view body) {
    if (body.empty())
        return false;
    const char *at = body.data() + 1, *const end = body.data() + body.size();
#ifdef __SSE2__
    for (; end - at >= characterBlock_t::size; at += characterBlock_t::size)
        if (const characterBlock_t block(at);
            (block.between('\0', ' ') | block.equal(0x7F)) != 0 && std::any_of(at, at + characterBlock_t::size, &isOdd))
            return true;
#endif
    return std::any_of(at, end, &isOdd);
}

// The lists of a group that the library wrote, beside the keys that count them.
class listCounts_t {
public:
    // Whether each has as many elements as its count says.
    static bool areRight(const recordSchema_t &record, std::string_view group) {
        values_t values{};
        if (record.fields.size() > values.size())
            return false;
        tolerantTokenizer_t tokens = inside(group);
        for (const fieldSchema_t &field : record.fields) {
            if (!tokens.skipKey(field.key))
                continue;
            const std::string_view value = values[static_cast<std::size_t>(field.position)] = tokens.token();
            tokens.delimiter();
            if (field.record() != nullptr && field.record()->hasCounts && !areRightIn(field, value))
                return false;
        }
        return std::all_of(record.fields.begin(), record.fields.end(), [&values](const fieldSchema_t &field) {
            return field.counter() == nullptr ||
                   readInteger(values[static_cast<std::size_t>(field.counter()->position)]) ==
                       elementsOf(values[static_cast<std::size_t>(field.position)]);
        });
    }

private:
    using values_t = std::array<std::string_view, 40>; // by the fields' positions; empty of those that are not there

    static tolerantTokenizer_t inside(std::string_view group) {
        return tolerantTokenizer_t(group.size() > 2 ? group.substr(1, group.size() - 2) : std::string_view());
    }

    static bool areRightIn(const fieldSchema_t &field, std::string_view value) {
        if (!field.isList())
            return areRight(*field.record(), value);
        for (tolerantTokenizer_t tokens = inside(value); !tokens.atEnd(); tokens.delimiter())
            if (!areRight(*field.record(), tokens.token()))
                return false;
        return true;
    }

    static std::int32_t elementsOf(std::string_view list) {
        std::int32_t count = 0;
        for (tolerantTokenizer_t tokens = inside(list); !tokens.atEnd(); tokens.delimiter()) {
            tokens.token();
            ++count;
        }
        return count;
    }
};

} // namespace

bool isPlainlyClean(std::string_view text) {
    const std::optional<writtenMessage_t> message = writtenMessage(text);
    return message && !hasOdd(message->body) &&
           (!message->record->hasCounts || message->body.empty() ||
            listCounts_t::areRight(*message->record, message->body));
}

} // namespace vek::inspect
