// The envelope is made anew from what is certain of the old one; what would be a guess is refused with a question.
#include "vek/inspect/change/seal.hpp"

#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/lookAlikes.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/characters.hpp"

#include <algorithm>
#include <tuple>

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

// What stands around a message in a file, with its NUL.
constexpr std::string_view around("\0 \t\n\v\f\r", 7);

// Where the body ends of a message whose "!!" may be cut off, or half there.
std::string_view bodyOf(std::string_view text, const envelopeParts_t &parts) {
    if (!parts.endMarker.isEmpty())
        return parts.body.in(text);
    std::string_view body = trimmed(text.substr(parts.body.start), around);
    while (body.ends_with('!') || body.ends_with(wideMark))
        body.remove_suffix(body.ends_with('!') ? 1 : wideMark.size());
    return body;
}

// What nobody but the sender knows; empty when all is certain.
std::string guessIn(std::string_view text, const envelopeParts_t &parts, std::string_view body,
                    const sealOptions_t &options) {
    const bool isGiven = options.echoTag && options.sequenceNumber;
    if (!isGiven && parts.length.isThere && !parts.sequenceNumber.isThere)
        return "of length, echo tag and sequence number not all are there: say the two others";
    if (body.empty() && parts.endMarker.isEmpty() && parts.id.isThere)
        return "the message ends in front of its body: it may have been cut off";
    if (!body.empty() && !body.starts_with(openBrace))
        return joined({shownValue(body.substr(0, body.find(openBrace))),
                       " stands in front of the body, where a number or \"{\" should be"});
    if (!body.empty() && (body.size() < 2 || !body.ends_with(closeBrace)))
        return "the body does not end with \"}\": the message may have been cut off";
    if (!trimmed(parts.behind.in(text)).empty() && !parts.endMarker.isEmpty())
        return joined({shownValue(trimmed(parts.behind.in(text))), " stands behind \"!!\""});
    for (std::size_t at = 0; (at = body.find('\n', at)) != std::string_view::npos; ++at)
        if (body.substr(at + 1).starts_with('>')) // or they are part of a text
            return isClean(tree_t(text), tolerance_t::warnings)
                       ? ""
                       : "its lines are quoted with \">\": take these marks away first";
    return {};
}

formResult_t judged(std::string text, const sealOptions_t &options) {
    if (options.strictness == strictness_t::judged)
        if (std::vector<refusal_t> refusals = refusalsOf(tree_t(text)); !refusals.empty())
            return refused(std::move(refusals));
    return {std::move(text)};
}

formResult_t sealMessage(std::string_view text, const sealOptions_t &options) {
    const envelopeParts_t parts = takeEnvelopeApart(text);
    if (!parts.id.isThere && !options.id)
        return {{},
                "no message id stands behind \"@@\"; say which message it is",
                parts.id.place.start,
                {},
                false,
                missing_t::id};
    const auto number = [](const envelopeNumber_t &own, std::int32_t otherwise) {
        return own.isThere ? own.value : otherwise;
    };
    const std::string_view body = bodyOf(text, parts);
    if (options.strictness != strictness_t::forced)
        if (std::string guess = guessIn(text, parts, body, options); !guess.empty())
            return {{},
                    std::move(guess),
                    parts.body.start,
                    {},
                    false,
                    parts.length.isThere && !parts.sequenceNumber.isThere ? missing_t::numbers : missing_t::nothing};
    const bool isWrapped = !parts.isWholeForHost() && body.find('\n') != std::string_view::npos;
    return judged(sealed(options.id.value_or(parts.id.value), options.echoTag.value_or(number(parts.echoTag, -1)),
                         options.sequenceNumber.value_or(number(parts.sequenceNumber, 0)),
                         isWrapped ? withoutLineBreaks(body) : std::string(body)),
                  options);
}

} // namespace

formResult_t seal(std::string_view text, const sealOptions_t &options) {
    text = trimmed(withoutByteOrderMark(text), around);
    const form_t form = formOf(text);
    if (text.starts_with(openBrace) && text.ends_with(closeBrace) && options.id && form != form_t::json)
        return judged(sealed(*options.id, options.echoTag.value_or(-1), options.sequenceNumber.value_or(0),
                             withoutLineBreaks(text)),
                      options);
    if (const std::size_t first = text.find_first_not_of("[{ \t\r\n");
        form == form_t::none && text.find('{') < first && text.find(':') != std::string_view::npos &&
        otherQuoteSize(text.substr(std::min(first, text.size()))) > 0)
        return {{}, "JSON has its names and texts in double quotes, not in others", first};
    if (form == form_t::none)
        return {{}, "this is no message, nor one of its forms: a message begins with \"@@\""};
    formResult_t read = readForm(text, form, {options.id, options.strictness == strictness_t::forced});
    return read.isRead() ? sealMessage(read.text, options) : read;
}

std::string changesOf(std::string_view before, std::string_view sealed) {
    const envelopeParts_t old = takeEnvelopeApart(before), now = takeEnvelopeApart(sealed);
    std::string words;
    const auto say = [&](std::string_view what) { words += joined({words.empty() ? "" : ", ", what}); };
    const std::tuple<const char *, const envelopeNumber_t *, const envelopeNumber_t *> numbers[] = {
        {"id", &old.id, &now.id},
        {"length", &old.length, &now.length},
        {"echo tag", &old.echoTag, &now.echoTag},
        {"sequence number", &old.sequenceNumber, &now.sequenceNumber}};
    for (const auto &[name, was, is] : numbers)
        if (!was->isThere || was->value != is->value)
            say(joined({name, " ", was->isThere ? std::to_string(was->value) : "(nothing)", " -> ",
                        std::to_string(is->value)}));
    if (const std::string_view front = trimmed(withoutByteOrderMark(old.before.in(before))); !front.empty())
        say(joined({shownValue(front), " in front taken off"}));
    if (old.startMarker.isEmpty())
        say("\"@@\" added");
    if (old.endMarker.isEmpty())
        say("\"!!\" added");
    if (bodyOf(before, old) != now.body.in(sealed))
        say("line breaks taken out");
    if (words.empty() && before != sealed)
        say("blanks put right");
    return words;
}

} // namespace vek::inspect
