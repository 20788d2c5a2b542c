#include "vek/inspect/check/check.hpp"

#include "vek/inspect/check/private/checker.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

constexpr std::string_view nothingRead = "a host reads nothing of the body: all values become 0 or empty";

} // namespace

std::string finding_t::inWords() const {
    return withSuggestion(joined({message, consequence.empty() ? "" : ": ", consequence}), suggestion);
}

std::string finding_t::inShort() const {
    return withSuggestion(message, suggestion);
}

std::vector<finding_t> check(const tree_t &tree) {
    checker_t checker(tree);
    checker.run();
    std::vector<finding_t> findings = checker.take();
    std::stable_sort(findings.begin(), findings.end(),
                     [](const auto &one, const auto &other) { return one.place.start < other.place.start; });
    return findings;
}

bool isClean(const tree_t &tree, tolerance_t tolerance) {
    checker_t checker(tree, true, tolerance);
    checker.run();
    return checker.isClean();
}

bool checker_t::isTolerated(findingCode_t code, severity_t severity) const {
    switch (tolerance_) {
    case tolerance_t::nothing:
        return false;
    case tolerance_t::warnings:
        return severity == warning;
    case tolerance_t::whatIsBuilt:
        break;
    }
    return severity == warning &&
           (code == noStructure || code == missingKey || code == controlCharacter || code == lineBreak);
}

void checker_t::run() {
    checkEnvelope();
    for (const node_t &node : tree_.nodes()) {
        if (isDone())
            return;
        if (node.isBody && node.use == pairUse_t::assigned)
            checkBody(node);
    }
}

void checker_t::checkEnvelope() {
    const std::string_view text = tree_.text();
    if (envelope_.startMarker.isEmpty())
        report(noStartMarker, {0, std::min<std::uint32_t>(2, envelope_.whole.end)}, nullptr, [] {
            return findingWords_t{"the text does not begin with \"@@\"", "a host reads nothing of it", {}};
        });
    if (const std::size_t nul = text.find('\0'); nul != std::string_view::npos)
        report(innerNul, {static_cast<std::uint32_t>(nul), static_cast<std::uint32_t>(nul) + 1}, nullptr, [] {
            return findingWords_t{"a NUL inside the text", "a host's text ends here", {}};
        });
    checkNumbers();
    checkLength();
    checkEnd();
    checkBodyShape();
}

void checker_t::checkNumbers() {
    const envelopeNumber_t &id = envelope_.id;
    if (!id.isThere)
        report(noId, id.place, nullptr, [] {
            return findingWords_t{"no message id stands behind \"@@\"", "a host can't read the message", {}};
        });
    else if (tree_.message() == nullptr)
        report(unknownId, id.place, nullptr, [&] {
            return findingWords_t{
                joined({"no message has the id ", id.place.in(tree_.text()).substr(0, 20)}), "a host refuses it", {}};
        });
    else if (tree_.record() == nullptr)
        report(noStructure, id.place, nullptr, [&] {
            return findingWords_t{
                joined({"the id ", std::to_string(id.value), " has no structure"}), "a host makes nothing of it", {}};
        });
    const std::pair<std::string_view, const envelopeNumber_t *> all[] = {
        {"length", &envelope_.length},
        {"echo tag", &envelope_.echoTag},
        {"sequence number", &envelope_.sequenceNumber}};
    for (const auto &[name, number] : all) {
        const std::string_view digits = number->place.in(tree_.text());
        if (!number->isThere)
            report(headerNumber, number->place, nullptr, [&, called = name] {
                return findingWords_t{joined({"the ", called, " is missing"}),
                                      called == "length" ? std::string(nothingRead)
                                                         : "a host keeps its own, and may cut the body wrongly",
                                      {}};
            });
        else if (readReal(digits) != static_cast<double>(number->value))
            report(headerNumber, number->place, nullptr, [&, called = name, value = number->value] {
                return findingWords_t{joined({"the ", called, " does not fit 32 bits"}),
                                      joined({"a host reads ", std::to_string(value)}),
                                      {}};
            });
    }
}

// A line end behind the message is told for itself: then the length may be right without it.
void checker_t::checkLength() {
    const std::size_t right = envelope_.rightLength - envelope_.behind.size();
    if (right > longestReadableMessage)
        report(tooLong, envelope_.length.place, nullptr, [&] {
            return findingWords_t{joined({"the message has ", std::to_string(right), " characters with its NUL, ",
                                          std::to_string(longestReadableMessage), " are the most"}),
                                  std::string(nothingRead),
                                  {}};
        });
    const envelopeNumber_t &length = envelope_.length;
    if (!length.isThere || (length.value >= 0 && static_cast<std::size_t>(length.value) == right))
        return;
    report(wrongLength, length.place, nullptr, [&] {
        return findingWords_t{
            joined({"the length says ", std::to_string(length.value), ", the message has ", std::to_string(right),
                    " characters with ", envelope_.startMarker.isEmpty() ? "\"@@\" and " : "", "its NUL"}),
            std::string(nothingRead), std::to_string(right)};
    });
}

void checker_t::checkEnd() {
    if (envelope_.endMarker.isEmpty())
        report(noEndMarker, envelope_.endMarker, nullptr, [&] {
            return findingWords_t{"the text does not end with \"!!\"", "the message may have been cut off", {}};
        });
    else if (!envelope_.behind.isEmpty())
        report(trailingText, envelope_.behind, nullptr, [&] {
            const std::string_view behind = envelope_.behind.in(tree_.text());
            const bool isSpaceOnly = std::all_of(behind.begin(), behind.end(), [](char c) { return isSpace(c); });
            return findingWords_t{isSpaceOnly ? "a line end or blank behind \"!!\""
                                              : joined({shownValue(behind), " behind \"!!\""}),
                                  envelope_.isBodyRead ? "a host cuts the body wrongly"
                                                       : joined({"the length is wrong with it: ", nothingRead}),
                                  {}};
        });
}

// Between one blank and "!!", in braces.
void checker_t::checkBodyShape() {
    const place_t body = envelope_.body;
    const std::string_view value = body.in(tree_.text());
    const bool isBraced = value.size() >= 2 && value.front() == openBrace && value.back() == closeBrace;
    const std::uint32_t front = envelope_.sequenceNumber.place.end;
    if (!value.empty() && !isBraced && !isCutOff())
        report(bodyShape, body, nullptr, [] {
            return findingWords_t{
                "the body does not stand in braces", "a host takes its first and last characters for them", {}};
        });
    else if (envelope_.isBodyRead && !envelope_.isWholeForHost() && !value.empty())
        report(bodyShape, {front, std::max(front, body.start)}, nullptr, [&] {
            return findingWords_t{
                "other characters than one blank in front of the body, or some behind it",
                joined({"a host takes ", shownValue(envelope_.hostBody.in(tree_.text())), " for the body"}),
                {}};
        });
    else if (envelope_.sequenceNumber.isThere && !value.empty() &&
             (body.start != front + 1 || tree_.text()[front] != ' ' || envelope_.endMarker.start != body.end))
        report(bodyShape, warning, {front, body.start}, nullptr, [] {
            return findingWords_t{
                "one blank belongs in front of the body, and nothing behind it", "a host may cut it wrongly", {}};
        });
}

} // namespace vek::inspect
