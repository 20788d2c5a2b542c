#include "vek/inspect/change/seal.hpp"

#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/trimming.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

bool isLineBreak(char c) {
    return c == '\n' || c == '\r';
}

// Takes the blanks at the start and at the end of a token away if there is a line break among them.
std::string_view withoutOuterLineBreaks(std::string_view token) {
    const auto first = std::find_if_not(token.begin(), token.end(), &isSpace);
    if (std::any_of(token.begin(), first, &isLineBreak))
        token.remove_prefix(static_cast<std::size_t>(first - token.begin()));
    const auto last = std::find_if_not(token.rbegin(), token.rend(), &isSpace);
    if (std::any_of(token.rbegin(), last, &isLineBreak))
        token.remove_suffix(static_cast<std::size_t>(last - token.rbegin()));
    return token;
}

// Without the line breaks that an editor or a page put in, and the indentation behind them: those between tokens and
// in keys. In a value they may be meant.
std::string withoutLineBreaks(std::string_view body) {
    std::string text;
    while (!body.empty()) {
        const std::size_t start = std::min(body.find_first_not_of(" \t\r\n"), body.size() - 1);
        const std::size_t quoteEnd = body[start] == '"' ? body.find('"', start + 1) : start;
        const std::size_t end = std::min(body.find_first_of("=;,{}", quoteEnd), body.size());
        std::string_view token = withoutOuterLineBreaks(body.substr(0, end));
        const bool isKey = end < body.size() && body[end] == '=';
        for (std::size_t at; isKey && (at = token.find_first_of("\r\n")) != std::string_view::npos;) {
            text += token.substr(0, at);
            token = withoutOuterLineBreaks(token.substr(at));
        }
        text += token;
        text += body.substr(end, 1);
        body.remove_prefix(std::min(end + 1, body.size()));
    }
    return text;
}

formResult_t sealMessage(std::string_view text, const sealOptions_t &options) {
    const envelopeParts_t parts = takeEnvelopeApart(text);
    if (!parts.id.isThere && !options.id)
        return {{}, "no message id stands behind \"@@\"; say which message it is", parts.id.place.start, true};
    const auto number = [](const envelopeNumber_t &own, std::int32_t otherwise) {
        return own.isThere ? own.value : otherwise;
    };
    const std::string_view body = parts.body.in(text);
    const bool isWrapped = !parts.isWholeForHost() && body.find('\n') != std::string_view::npos;
    return {sealed(options.id.value_or(parts.id.value), options.echoTag.value_or(number(parts.echoTag, -1)),
                   options.sequenceNumber.value_or(number(parts.sequenceNumber, 0)),
                   isWrapped ? withoutLineBreaks(body) : std::string(body)),
            {},
            0};
}

} // namespace

formResult_t seal(std::string_view text, const sealOptions_t &options) {
    using namespace std::string_view_literals;
    text = trimmed(withoutByteOrderMark(text), " \t\n\v\f\r\0"sv);
    if (text.starts_with('{') && text.ends_with('}') && options.id && formOf(text) != form_t::json)
        return {sealed(*options.id, options.echoTag.value_or(-1), options.sequenceNumber.value_or(0),
                       withoutLineBreaks(text)),
                {},
                0};
    const form_t form = formOf(text);
    if (form == form_t::none)
        return {{}, "this is no message, nor one of its forms: a message begins with \"@@\"", 0};
    formResult_t read = readForm(text, form);
    return read.isRead() ? sealMessage(read.text, options) : read;
}

} // namespace vek::inspect
