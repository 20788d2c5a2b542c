#include "vek/inspect/check/private/checker.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>

namespace vek::inspect {

void checker_t::checkBody(const node_t &body) {
    const std::span<const node_t> children = tree_.children(body);
    if (body.parent != node_t::none)
        checkGroup(body);
    if (children.empty() && body.value.size() > 2)
        report(separators, body.value, &body, [] {
            return findingWords_t{"nothing but separators in a body", "a host reads nothing of it", {}};
        });
    const bodyTarget_t target = targetOf(tree_, body);
    const bool isKnown = target.kind != bodyTarget_t::kind_t::unknown;
    for (const node_t &child : children) {
        if (isCutOff() && std::max(child.value.end, child.lost.end) == envelope_.body.end)
            continue; // the end of it is missing
        checkBalance(child);
        if (isKnown) // else nothing is known of what should stand here
            checkPair(body, child);
        if (isDone())
            return;
    }
    if (target.kind == bodyTarget_t::kind_t::record)
        checkRecord(body, *target.record);
    else if (isKnown && body.isKeyed)
        report(keyedList, body.value, &body, [] {
            return findingWords_t{
                "a list with keys", "a host reads its elements by their keys, and writes them without", {}};
        });
}

// A known group: what stands there must be in braces, and not empty.
void checker_t::checkGroup(const node_t &node) {
    const std::string_view value = tree_.value(node);
    if (value.size() < 2 || value.front() != openBrace || value.back() != closeBrace)
        report(nestedMissing, node.value, &node, [&] {
            return findingWords_t{joined({shownValue(value), " stands where a group in braces should be"}),
                                  "a host takes its first and last characters for the braces",
                                  {}};
        });
    else if (value.size() == 2)
        report(emptyValue, node.value, &node, [] {
            return findingWords_t{"an empty group", "a host reads it as if it were not there", {}};
        });
}

// Whether the message ends inside its body. That is told, and nobody knows what stood behind.
bool checker_t::isCutOff() const {
    const std::string_view body = envelope_.body.in(tree_.text());
    return envelope_.endMarker.isEmpty() && body.starts_with(openBrace) && !body.ends_with(closeBrace);
}

void checker_t::checkBalance(const node_t &node) {
    if (!node.lost.isEmpty())
        report(unbalancedBrace, {node.lost.start, node.lost.start + 1}, &node, [] {
            return findingWords_t{
                "an opening brace without its closing one", "a host loses all that follows in this body", {}};
        });
    if (node.isQuoteOpen)
        report(openQuote, {node.value.start - 1, node.value.start}, &node, [] {
            return findingWords_t{"a double quote without its closing one",
                                  "a host takes all that follows in this body for the value",
                                  {}};
        });
}

void checker_t::checkPair(const node_t &parent, const node_t &node) {
    if (!checkUse(parent, node) || isDone())
        return;
    const bool isLast = tree_.indexOf(node) + 1 == parent.firstChild + parent.childCount;
    if (!isLast && isDecimalComma(parent, tree_.nodes()[tree_.indexOf(node) + 1]))
        return; // which is told there
    const bool isTold = checkSpelling(node);
    if (!node.isBody && node.use == pairUse_t::assigned && (!isTold || !isText(node)))
        checkScalar(node);
}

// Whether the reader uses the pair; if not, it is told.
bool checker_t::checkUse(const node_t &parent, const node_t &node) {
    switch (node.use) {
    case pairUse_t::assigned:
        return true;
    case pairUse_t::empty:
        if (!node.lost.isEmpty())
            return false; // which was told
        report(emptyValue, node.whole, &node, [&] {
            return findingWords_t{
                node.hasKey ? joined({tree_.key(node), " has no value"}) : "an element without a value",
                joined({"a host reads ", node.isElement ? "nothing into it" : valueOfAbsent(*node.field)}),
                {}};
        });
        return false;
    case pairUse_t::unknown:
        checkUnknown(parent, node);
        return false;
    case pairUse_t::duplicate:
        report(duplicateKey, node.key, &node, [&] { return wordsOfDuplicate(tree_.key(node)); });
        return false;
    case pairUse_t::noKey:
        if (!checkDecimalComma(parent, node))
            report(strayValue, node.value, &node, [&] {
                return findingWords_t{
                    joined({"the value ", shownValue(tree_.value(node)), " has no key"}), "a host ignores it", {}};
            });
        return false;
    case pairUse_t::surplus:
        report(node.isElement ? beyondRoom : surplusValue, node.value, &node, [&] {
            return findingWords_t{node.isElement
                                      ? joined({"there is room for ", std::to_string(node.field->room), " elements"})
                                      : "a value behind that of the last key",
                                  "a host ignores it",
                                  {}};
        });
        return false;
    case pairUse_t::unread:
        break;
    }
    return false;
}

void checker_t::checkUnknown(const node_t &parent, const node_t &node) {
    const recordSchema_t *record = tree_.recordOf(parent);
    const std::string_view key = tree_.key(node);
    const std::string_view word = trimmed(key);
    if (record != nullptr && word != key && record->find(word) != nullptr) {
        report(lineBreak, node.key, &node, [&] {
            return findingWords_t{
                joined({"a line break or blank is part of the key ", shownValue(key)}),
                joined({"a host ignores it; ", word, " becomes ", valueOfAbsent(*record->find(word))}),
                std::string(word)};
        });
        return;
    }
    constexpr std::size_t mostSuggestions = 50;
    report(unknownKey, node.key, &node, [&] { return wordsOfUnknown(record, key, suggestions_++ < mostSuggestions); });
}

// "3,5": the comma ends the value, and the rest is a value of its own.
bool checker_t::isDecimalComma(const node_t &parent, const node_t &node) const {
    if (node.use != pairUse_t::noKey || tree_.indexOf(node) == parent.firstChild || node.isQuoted ||
        node.value.isEmpty() || !isDigit(tree_.value(node).front()))
        return false;
    const node_t &before = tree_.nodes()[tree_.indexOf(node) - 1];
    const bool isNumber = before.field != nullptr && before.use == pairUse_t::assigned && !before.isBody &&
                          (before.field->kind == fieldKind_t::float64 || before.field->kind == fieldKind_t::float32 ||
                           before.field->kind == fieldKind_t::pixels || before.field->kind == fieldKind_t::integer32 ||
                           before.field->kind == fieldKind_t::integer16);
    return isNumber && !before.value.isEmpty() && before.value.end + 1 == node.value.start &&
           tree_.text()[before.value.end] == ',' && isDigit(tree_.value(before).back());
}

bool checker_t::checkDecimalComma(const node_t &parent, const node_t &node) {
    if (!isDecimalComma(parent, node))
        return false;
    const node_t &before = tree_.nodes()[tree_.indexOf(node) - 1];
    report(decimalComma, {before.value.start, node.value.end}, &before, [&] {
        return findingWords_t{joined({tree_.value(before), ",", tree_.value(node), " has a comma for its point"}),
                              joined({"a host reads ", tree_.value(before)}),
                              joined({tree_.value(before), ".", tree_.value(node)})};
    });
    return true;
}

// Of a pair that is used: how it is spelt. Tells whether something was told.
bool checker_t::checkSpelling(const node_t &node) {
    if (node.isCanonical)
        return false;
    const std::uint32_t keyEnd = node.key.end + (node.isKeyQuoted ? 1 : 0);
    const std::uint32_t valueStart = node.value.start - (node.isQuoted ? 1 : 0);
    const std::string_view between =
        node.hasKey ? tree_.text().substr(keyEnd, valueStart - keyEnd) : std::string_view("=");
    if (between.find_first_of(";,") != std::string_view::npos) {
        report(swallowedToken, node.value, &node, [&] {
            return findingWords_t{joined({tree_.key(node), " has no value"}),
                                  joined({"a host takes the next token for it, ", shownValue(tree_.value(node))}),
                                  {}};
        });
    } else if (node.isQuoted && isText(node)) {
        report(leadingQuote, {valueStart, node.value.end}, &node, [] {
            return findingWords_t{
                "the text begins with a double quote", "a host reads up to the next one, and keeps neither", {}};
        });
    } else if (node.isQuoted || node.isKeyQuoted) {
        report(quotedValue, {node.isKeyQuoted ? node.key.start - 1 : valueStart, node.value.end}, &node, [] {
            return findingWords_t{"double quotes", "a host reads what stands in them", {}};
        });
    } else {
        report(separators, node.whole, &node, [&] {
            return findingWords_t{node.hasKey ? "one \"=\" belongs behind the key and one \";\" behind the value"
                                              : "one \",\" belongs behind the value",
                                  "a host skips any run of \"=\", \";\" and \",\"",
                                  {}};
        });
    }
    return true;
}

void checker_t::checkScalar(const node_t &node) {
    if (valueFinding_t finding = judgeValue(*node.field, tree_.value(node), node.isElement); finding.isThere)
        report(finding.code, finding.severity, node.value, &node, [&] { return std::move(finding.words); });
}

} // namespace vek::inspect
