// What stands around a body: first what is missing or too much at both ends, then the length relative to that.
#include "vek/inspect/check/private/checker.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/lookAlikes.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <utility>

namespace vek::inspect {

namespace {

constexpr std::string_view nothingRead = "a host reads nothing of the body: all values become 0 or empty";

// Whether it was put around a message by an editor, a shell, a program or a mail, and says nothing.
bool isWrapping(std::string_view around, std::string_view others) {
    constexpr std::string_view quotes = "\"'`\xE2\x80\x9C\xE2\x80\x9D\xE2\x80\x9E\xE2\x80\x98\xE2\x80\x99";
    while (!around.empty()) {
        const bool isSpeltOut = around.starts_with("\\n") || around.starts_with("\\r") || around.starts_with("\\0");
        const std::size_t size = isSpeltOut ? 2 : std::max<std::size_t>(utf8Size(around), 1);
        const std::string_view one = around.substr(0, size);
        if (!isSpeltOut && !isBlankOfAnyKind(one) && quotes.find(one) == std::string_view::npos &&
            others.find(one) == std::string_view::npos)
            return false;
        around.remove_prefix(size);
    }
    return true;
}

// What stands around a message, in words.
std::string inWords(std::string_view around) {
    if (around == byteOrderMark)
        return "a byte order mark";
    if (trimmed(around).empty())
        return around.find_first_of("\r\n") != std::string_view::npos ? "a line end" : "a blank";
    if (trimmed(around) == "\\n" || trimmed(around) == "\\r\\n")
        return joined({trimmed(around), ", a line end that is spelt out,"});
    if (trimmed(around).starts_with("\\0") && isWrapping(around, ""))
        return joined({trimmed(around), ", as texts end in a program,"});
    if (around == "\"" || around == "'")
        return around == "'" ? "a single quote" : "a double quote";
    if (trimmed(around).starts_with("@@"))
        return "another message";
    return shownValue(around) + oddCharacterIn(around);
}

std::string withoutShell(std::string_view body) {
    std::string text(body);
    for (std::size_t at = 0; (at = text.find("\\!", at)) != std::string::npos; ++at)
        text.erase(at, 1);
    return text;
}

} // namespace

std::vector<place_t> lineBreaksIn(std::string_view text, place_t within, std::string_view with) {
    std::vector<place_t> breaks;
    text = text.substr(0, within.end);
    for (std::size_t at = within.start; (at = text.find_first_of("\r\n", at)) != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_not_of(with, at), text.size());
        breaks.push_back({static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(end)});
        at = end;
    }
    return breaks;
}

void checker_t::checkEnvelope() {
    const std::string_view text = tree_.text();
    checkFront();
    if (const std::size_t nul = text.find('\0');
        nul != std::string_view::npos &&
        report(innerNul, {static_cast<std::uint32_t>(nul), static_cast<std::uint32_t>(nul) + 1}))
        tell("a NUL inside the text", "a host's text ends here");
    checkId();
    checkNumbers();
    checkEnd();
    checkBodyShape();
    checkLength();
}

void checker_t::checkFront() {
    const std::string_view before = envelope_.before.in(tree_.text());
    if (!before.empty()) {
        if (report(noStartMarker, envelope_.before)) {
            tell(joined({inWords(before), " stands in front of \"@@\""}), "a host reads nothing of the message");
            mend(envelope_.before, {}, isWrapping(before, "@"));
        }
    } else if (envelope_.startMarker.isEmpty() &&
               report(noStartMarker, {0, std::min<std::uint32_t>(2, envelope_.whole.end)})) {
        tell(tree_.text().starts_with('@') ? "the second \"@\" is missing at the start"
                                           : "the text does not begin with \"@@\"",
             "a host reads nothing of it");
        const std::string_view text = tree_.text();
        const std::size_t id = text.find_first_not_of("@ \t");
        if (id != std::string_view::npos && isDigit(text[id]) && !envelope_.body.isEmpty())
            mend({0, static_cast<std::uint32_t>(id)}, "@@", true);
    }
}

void checker_t::checkId() {
    const envelopeNumber_t &id = envelope_.id;
    const std::string_view text = tree_.text();
    const std::size_t end = std::min(text.find_first_of(" \t\r\n{", id.place.start), text.size());
    const std::string_view word = text.substr(id.place.start, end - id.place.start);
    if (!id.isThere) {
        if (!envelope_.startMarker.isEmpty() && report(noId, id.place))
            tell(joined(
                     {"no message id stands behind \"@@\"", word.empty() ? "" : joined({", but ", shownValue(word)})}),
                 "a host can't read the message");
    } else if (tree_.message() == nullptr || (word.size() != id.place.size() && !envelope_.length.isThere)) {
        const messageSchema_t *meant = messageWithKeys(tree_.body());
        isLengthTold_ = meant != nullptr && isLengthProof(std::to_string(meant->id), word.size());
        if (!report(unknownId, {id.place.start, static_cast<std::uint32_t>(end)}))
            return;
        const bool isOnly = meant != nullptr && isOnlyWithKeys(*meant);
        tell(joined({"no message has the id ", word.substr(0, 20), oddCharacterIn(word),
                     meant != nullptr ? joined({"; the keys of the body are those of ", std::to_string(meant->id),
                                                isOnly ? "" : " and others"})
                                      : "",
                     lacksId() ? "; perhaps the id is missing, as one number is" : ""}),
             "a host refuses it");
        if (meant != nullptr && !lacksId()) {
            const std::string right = std::to_string(meant->id);
            mend(findings_.back().place, right, isOnly && (isLengthTold_ || inspect::isPlainly(word, right, {})));
        }
    } else if (tree_.record() == nullptr && report(noStructure, id.place)) {
        tell(joined({"the id ", std::to_string(id.value), " has no structure"}), "a host makes nothing of it");
    }
}

// Whether an id in the place of one of another size makes the length right.
bool checker_t::isLengthProof(std::string_view id, std::size_t size) const {
    return id.size() != size && envelope_.sequenceNumber.isThere &&
           std::cmp_equal(envelope_.length.value, envelope_.rightLength + id.size() - size);
}

// The blanks that a message has too many, when its length is that of the message without them; else 0.
std::size_t checker_t::surplusBlanks() const {
    const std::uint32_t front = envelope_.sequenceNumber.place.end;
    if (envelope_.isBodyRead || !envelope_.sequenceNumber.isThere || envelope_.endMarker.isEmpty() ||
        envelope_.startMarker.isEmpty() || envelope_.body.start <= front)
        return 0;
    const std::size_t blanks = envelope_.id.place.start - envelope_.startMarker.end + envelope_.body.start - front - 1 +
                               envelope_.endMarker.start - envelope_.body.end;
    return std::cmp_equal(envelope_.length.value, envelope_.rightLength - blanks) ? blanks : 0;
}

// Whether the length may have been taken for the id.
bool checker_t::lacksId() const {
    return tree_.message() == nullptr && envelope_.echoTag.isThere && !envelope_.sequenceNumber.isThere;
}

// What a host whose length is right takes for the body, although it is none.
std::string checker_t::whatHostTakes() const {
    if (!envelope_.isBodyRead)
        return std::string(nothingRead);
    const std::string_view body = envelope_.hostBody.in(tree_.text());
    return body.starts_with(openBrace) && body.ends_with(closeBrace)
               ? "a host reads the body all the same"
               : joined({"a host takes ", shownValue(body), " for the body"});
}

void checker_t::checkNumbers() {
    if (!envelope_.id.isThere || isCutInHead() || lacksId())
        return;
    const std::string_view text = tree_.text();
    const std::pair<std::string_view, const envelopeNumber_t *> all[] = {
        {"length", &envelope_.length},
        {"echo tag", &envelope_.echoTag},
        {"sequence number", &envelope_.sequenceNumber}};
    const envelopeNumber_t *before = &envelope_.id;
    std::string_view nameBefore = "id";
    for (const auto &[called, number] : all) {
        const std::string_view digits = number->place.in(text);
        if (number->isThere && readReal(digits) == static_cast<double>(number->value)) {
            before = number;
            nameBefore = called;
            continue;
        }
        if (number->isThere) {
            if (report(headerNumber, number->place))
                tell(joined({"the ", called, " does not fit 32 bits"}),
                     joined({"a host reads ", std::to_string(number->value)}));
            continue;
        }
        if (number->place.start == envelope_.id.place.end && number->place.start < text.size() &&
            text[number->place.start] != openBrace)
            return; // part of an id that is none
        if (report(headerNumber, number->place)) {
            const std::size_t end = std::min(text.find_first_of(" {", number->place.start), text.size());
            const std::string_view word = text.substr(number->place.start, end - number->place.start);
            const bool goesOn = !word.empty() && before->place.end == number->place.start;
            tell(goesOn ? joined({shownValue(word), " stands behind the ", nameBefore, " ", before->place.in(text)})
                 : !word.empty()      ? joined({shownValue(word), " stands where the ", called, " should be"})
                 : called == "length" ? std::string("length, echo tag and sequence number are missing")
                                      : joined({"of length, echo tag and sequence number ",
                                                called == "echo tag" ? "two are missing" : "one is missing"}),
                 joined({envelope_.isBodyRead ? "a host keeps its own number; " : "", whatHostTakes()}));
            mendHead();
        }
        return; // behind it no other one is found
    }
}

// Whether the message ends inside its body. That is told, and nobody knows what stood behind.
bool checker_t::isCutOff() const {
    const std::string_view body = envelope_.body.in(tree_.text());
    return envelope_.endMarker.isEmpty() && body.starts_with(openBrace) && !body.ends_with(closeBrace);
}

bool checker_t::isCutInHead() const {
    return envelope_.endMarker.isEmpty() && envelope_.body.isEmpty();
}

std::size_t checker_t::missingBraces() const {
    const std::string_view body = envelope_.body.in(tree_.text());
    return body.empty() ? 0U : (body.starts_with(openBrace) ? 0U : 1U) + (body.ends_with(closeBrace) ? 0U : 1U);
}

void checker_t::checkEnd() {
    const std::string_view text = tree_.text();
    const place_t behind = envelope_.behind;
    if (!envelope_.endMarker.isEmpty()) {
        if (!behind.isEmpty() && report(trailingText, behind)) {
            tell(joined({inWords(behind.in(text)), " stands behind \"!!\""}),
                 envelope_.isBodyRead ? whatHostTakes() : joined({"the length is wrong with it: ", nothingRead}));
            mend(behind, {}, isWrapping(behind.in(text), ";,.!"));
        }
        return;
    }
    // A shell's marks against the expansion of its history, which it leaves there.
    const std::string_view rest = trimmed(behind.in(text)), body = envelope_.body.in(text);
    const bool isOfShell = rest == "\\!\\!" || rest == "\\!!";
    const std::string typed = isOfShell ? withoutShell(body) : std::string();
    const bool isAlsoInside = isOfShell && typed.size() < body.size();
    const bool isProven =
        isAlsoInside && std::cmp_equal(envelope_.length.value, envelope_.rightLength + typed.size() - body.size());
    isLengthTold_ = isLengthTold_ || isProven;
    if (report(noEndMarker, envelope_.endMarker)) {
        const std::size_t size = text.size() - envelope_.startMarker.start + 1;
        const auto said = static_cast<std::size_t>(std::max(envelope_.length.value, 0));
        const std::string_view tail = trimmed(text.substr(std::min(text.rfind(closeBrace), text.size() - 1) + 1));
        const bool isOdd =
            tail.size() > 1 && std::all_of(tail.begin(), tail.end(), [](char c) { return (c & 0x80) != 0; });
        const std::string missing =
            said > size ? joined({"; by its length ", std::to_string(said - size), " characters are missing"}) : "";
        tell(isCutInHead() ? std::string("the message ends in front of its body")
             : isOdd ? joined({shownValue(tail), " stands at the end, where \"!!\" should be", oddCharacterIn(tail)})
             : isCutOff() ? joined({"the message ends inside its body", missing})
             : isOfShell
                 ? joined({"a shell wrote ", rest, " for \"!!\" at the end; in single quotes it leaves \"!\" alone"})
             : rest == "!"  ? "the second \"!\" is missing at the end"
             : rest.empty() ? "\"!!\" is missing at the end"
                            : joined({shownValue(rest), " stands at the end, where \"!!\" should be"}),
             joined({(isCutOff() && !isOdd) || isCutInHead() ? "it was cut off; " : "", whatHostTakes()}));
        constexpr std::size_t mostOfMarker = 4;
        if (isProven)
            mend({envelope_.body.start, envelope_.whole.end}, typed + "!!", true);
        else if (!isCutOff() && !isCutInHead() && missingBraces() == 0)
            mend({envelope_.endMarker.start, envelope_.whole.end}, "!!",
                 rest == joined({wideMark, wideMark}) ||
                     (rest.size() <= mostOfMarker &&
                      (isOfShell ? !isAlsoInside : rest.find_first_not_of("!?1 .;,'\"") == std::string_view::npos)));
    }
}

// Between one blank and "!!", in braces.
void checker_t::checkBodyShape() {
    const place_t body = envelope_.body;
    const std::string_view value = body.in(tree_.text());
    const std::uint32_t front = envelope_.sequenceNumber.place.end;
    const bool areNumbersThere = envelope_.sequenceNumber.isThere;
    if (envelope_.startMarker.isEmpty() && !envelope_.id.isThere)
        return; // this is no message
    if (missingBraces() > 0 && !isCutOff()) {
        const bool hasOpen = value.starts_with(openBrace), hasClose = value.ends_with(closeBrace);
        if (report(bodyShape, body))
            tell(hasOpen    ? "the closing brace of the body is missing"
                 : hasClose ? "the opening brace of the body is missing"
                            : "the body does not stand in braces",
                 joined({"a host takes ", shownValue(value.substr(0, 1)), " and ",
                         shownValue(value.substr(value.size() - 1)), " for the braces"}));
    } else if (envelope_.isBodyRead && !envelope_.isWholeForHost() && !value.empty() && areNumbersThere &&
               envelope_.behind.isEmpty() && !envelope_.endMarker.isEmpty()) {
        if (report(bodyShape, {front, std::max(front, body.start)})) {
            tell("other characters than one blank in front of the body, or some behind it", whatHostTakes());
            mendBlanks();
        }
    } else if (areNumbersThere && !value.empty() &&
               (body.start != front + 1 || tree_.text()[front] != ' ' || envelope_.endMarker.start != body.end)) {
        const bool isWrong = surplusBlanks() > 0;
        if (report(bodyShape, isWrong ? error : warning, {front, body.start})) {
            tell(joined({"one blank belongs in front of the body, and nothing behind it",
                         isWrong ? "; so the length would be right" : ""}),
                 isWrong                      ? std::string(nothingRead)
                 : envelope_.isWholeForHost() ? "a host reads it, and writes it so"
                                              : "");
            mendBlanks();
        }
    }
}

// Only relative to a message that has its markers, its braces and nothing around it.
void checker_t::checkLength() {
    const envelopeNumber_t &length = envelope_.length;
    const std::size_t right = envelope_.rightLength + (isCutOff() ? 0 : missingBraces());
    const auto said = static_cast<std::size_t>(std::max(length.value, 0));
    const bool isTooLong = right > longestReadableMessage;
    if (isTooLong && report(tooLong, envelope_.isBodyRead ? warning : error, length.place))
        tell(joined({"the message has ", std::to_string(right), " characters with its NUL, ",
                     std::to_string(longestReadableMessage), " are the most"}),
             envelope_.isBodyRead ? "a host reads it, but can't write such a length, which has five places"
                                  : std::string(nothingRead));
    if (surplusBlanks() > 0) {
        const place_t blank{envelope_.startMarker.end, envelope_.id.place.start};
        if (!blank.isEmpty() && report(bodyShape, blank)) {
            tell("a blank stands behind \"@@\", and the length is right without it", std::string(nothingRead));
            mend(blank, {}, true);
        }
        return; // which was told
    }
    if (isLengthTold_ || !length.isThere || !envelope_.sequenceNumber.isThere || isCutOff() || isCutInHead() ||
        envelope_.isBodyRead || said == right || (isTooLong && std::to_string(right).starts_with(std::to_string(said))))
        return;
    const std::vector<node_t> &nodes = tree_.nodes();
    const auto hasNode = [&nodes](auto isIt) { return std::any_of(nodes.begin(), nodes.end(), isIt); };
    const bool isTorn = hasNode([this](const node_t &node) {
        return !node.lost.isEmpty() || (node.isBody && node.use == pairUse_t::assigned && lacksBraces(node));
    });
    const bool hasSurplus = hasNode([this](const node_t &node) { return isSurplusBrace(node); });
    if ((isTorn && (said == right + 1 || said + 1 == right)) || (hasSurplus && said + 1 == right))
        return; // for the brace that is told
    if (report(wrongLength, length.place)) {
        const bool isMended = right != tree_.text().size() + 1;
        const bool isOfUnbroken = isLengthWithoutLineBreaks();
        tell(joined({"the length says ", std::to_string(length.value), ", the message has ", std::to_string(right),
                     " characters with its NUL", isMended ? " once its ends are right" : "",
                     isOfUnbroken ? "; without its line breaks the length is right" : ""}),
             std::string(nothingRead), isOfUnbroken ? std::string() : std::to_string(right));
        if (!isOfUnbroken)
            mendHead();
    }
}

// Whether an editor, or a mail, has broken the body, or put a line end in the place of a blank.
bool checker_t::isLengthWithoutLineBreaks() const {
    for (const std::string_view with : {"\r\n", "\r\n >"}) {
        const std::vector<place_t> breaks = lineBreaksIn(tree_.text(), envelope_.body, with);
        std::size_t size = envelope_.rightLength;
        for (const place_t place : breaks)
            size -= place.size();
        if (!breaks.empty() && (std::cmp_equal(envelope_.length.value, size) ||
                                std::cmp_equal(envelope_.length.value, size + breaks.size())))
            return true;
    }
    return false;
}

// One blank in front of the body, and nothing behind it.
void checker_t::mendBlanks() {
    const place_t front{envelope_.sequenceNumber.place.end, envelope_.body.start};
    const place_t behind{envelope_.body.end, envelope_.endMarker.start};
    const std::string_view text = tree_.text();
    const bool isFrontRight = front.in(text) == " ";
    if (!isFrontRight && !behind.isEmpty())
        mend({front.start, behind.end}, joined({" ", envelope_.body.in(text)}),
             isBlankOfAnyKind(front.in(text)) && isBlankOfAnyKind(behind.in(text)));
    else if (!isFrontRight)
        mend(front, " ", isBlankOfAnyKind(front.in(text)));
    else
        mend(behind, {}, isBlankOfAnyKind(behind.in(text)));
}

// The numbers anew, as far as it is certain which they are: of four words in front of the body the second is the
// length, whatever it is; of three it is missing, unless the first stands in its places or is near what it should be.
void checker_t::mendHead() {
    const std::string_view text = tree_.text();
    const place_t body = envelope_.body;
    const std::uint32_t start = envelope_.startMarker.end;
    if (envelope_.startMarker.isEmpty() || body.start < start || envelope_.rightLength > longestReadableMessage)
        return;
    std::vector<std::string_view> words;
    std::string_view rest = text.substr(start, body.start - start);
    constexpr std::string_view between = " \t,;";
    while (!(rest = rest.substr(std::min(rest.find_first_not_of(between), rest.size()))).empty()) {
        words.push_back(rest.substr(0, rest.find_first_of(between)));
        rest.remove_prefix(words.back().size());
    }
    const bool hasLength = words.size() == 4;
    if (words.size() == 3)
        words.insert(words.begin() + 1, std::string_view());
    const auto numberIn = [&words](std::size_t index) {
        const std::string_view word = index < words.size() ? words[index] : std::string_view();
        const std::int32_t value = readInteger(word);
        return words.size() == 4 && word == std::to_string(value) ? std::optional(value) : std::nullopt;
    };
    const std::optional<std::int32_t> id = numberIn(0), echoTag = numberIn(2), sequenceNumber = numberIn(3);
    if (!id || !echoTag || !sequenceNumber || schema().find(*id) == nullptr)
        return;
    const std::string whole = sealed(*id, *echoTag, *sequenceNumber, body.in(text));
    constexpr std::int64_t near = 16; // what a number takes, and an edit
    const bool isInItsPlaces =
        words[2].data() + words[2].size() == words[0].data() + words[0].size() + 1 + lengthDigits;
    if (!hasLength && (isInItsPlaces || std::abs(static_cast<std::int64_t>(whole.size()) - *echoTag) <= near))
        return; // or it is the echo tag that is missing
    mend({start, body.start},
         whole.substr(startMarker.size(), whole.size() - body.size() - startMarker.size() - endMarker.size()), true);
}

} // namespace vek::inspect
