// Pair by pair: whether a host uses it, and how it is spelt.
#include "vek/inspect/check/private/checker.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/text/characters.hpp"

#include <algorithm>

namespace vek::inspect {

void checker_t::checkBody(const node_t &body) {
    const std::span<const node_t> children = tree_.children(body);
    const bool isRoot = body.parent == node_t::none;
    if (!isRoot)
        checkGroup(body);
    if (lacksBraces(body))
        return; // which is told
    if (children.empty() && body.value.size() > 2 && !(isRoot && isCutOff()) &&
        report(separators, warning, body.value, &body))
        tell("nothing but separators in a body", "a host reads nothing of it");
    const bodyTarget_t target = targetOf(tree_, body);
    const bool isKnown = target.kind != bodyTarget_t::kind_t::unknown;
    isTorn_ = false;
    told_ = 0;
    if (target.kind == bodyTarget_t::kind_t::record) {
        gather(body, *target.record);
        if (isRoot && checkOtherId(body))
            return;
    }
    for (const node_t &child : children) {
        if (std::max(child.value.end, child.lost.end) == envelope_.body.end && isCutOff())
            continue; // the end of it is missing
        checkBalance(child);
        if (isKnown) // else nothing is known of what should stand here
            checkPair(body, child);
        if (isDone())
            return;
    }
    if (target.kind == bodyTarget_t::kind_t::record)
        checkRecord(body, *target.record);
    else if (isKnown && body.isKeyed && report(keyedList, body.value, &body))
        tell("a list with keys", "a host reads its elements by their keys, and writes them without");
}

// A known group: what stands there must be in braces, and not empty.
void checker_t::checkGroup(const node_t &node) {
    const std::string_view value = tree_.value(node);
    if (!lacksBraces(node)) {
        if (value.size() == 2 && report(emptyValue, node.value, &node))
            tell("an empty group", node.isElement ? "a host reads an element with zeros and empty texts"
                                                  : "a host reads it as if it were not there");
    } else if (report(nestedMissing, node.value, &node)) {
        const bool isWide = node.valueKind() == fieldKind_t::text16;
        const node_t *behind = next(tree_.nodes()[node.parent], node);
        const bool isWhole = value.size() <= 100 && (behind == nullptr || behind->use != pairUse_t::noKey);
        const recordSchema_t *record = node.field != nullptr ? node.field->record() : nullptr;
        const bool isKey = record != nullptr && record->find(value) != nullptr;
        tell(joined({shownValue(value), " stands where a group in braces should be",
                     isWide  ? ", as a 16-bit text is written by its codes"
                     : isKey ? ": \"{\" is missing in front of this key"
                             : ""}),
             "a host takes its first and last characters for the braces",
             isWide && isWhole ? wideCodes(value).value_or("") : std::string());
        if (const std::string &codes = findings_.back().suggestion; !codes.empty())
            mend(node.value, codes, true);
        else
            mendList(node);
    }
}

// Numbers of a list without its braces, or in square brackets.
void checker_t::mendList(const node_t &node) {
    const node_t &parent = tree_.nodes()[node.parent];
    if (node.field == nullptr || node.isElement || !node.field->isList() || !isNumber(node.field->kind))
        return;
    std::string list = "{";
    std::uint32_t end = node.value.end;
    for (const node_t *one = &node; one == &node || (one != nullptr && one->use == pairUse_t::noKey);
         one = next(parent, *one)) {
        if (one != &node && tree_.text().substr(end, one->value.start - end) != ",")
            return;
        end = one->value.end;
        const std::string_view value = trimmed(tree_.value(*one), "[] ");
        if (value.empty() && tree_.value(*one) == "]")
            continue;
        if (one->isQuoted || judgeValue(*node.field, value).isThere)
            return;
        list.append(value).append(1, comma);
    }
    list += closeBrace;
    findings_.back().suggestion = list.size() <= 100 ? list : std::string();
    mend({node.value.start, end}, std::move(list), true);
}

bool checker_t::lacksBraces(const node_t &node) const {
    const std::string_view value = tree_.value(node);
    return node.parent != node_t::none &&
           (value.size() < 2 || value.front() != openBrace || value.back() != closeBrace);
}

bool checker_t::isSurplusBrace(const node_t &node) const {
    return node.use == pairUse_t::noKey && tree_.value(node) == "}";
}

// A pair that is told, and the values without a key that follow from it.
void checker_t::tellWithStrays(const node_t &parent, const node_t &node) {
    told_ = tree_.indexOf(node);
    for (const node_t *behind = next(parent, node);
         behind != nullptr && behind->use == pairUse_t::noKey && !isSurplusBrace(*behind);
         behind = next(parent, *behind))
        told_ = tree_.indexOf(*behind);
    if (const std::uint32_t brace = told_ + 1;
        brace < parent.firstChild + parent.childCount && isSurplusBrace(tree_.nodes()[brace]))
        told_ = brace;
}

void checker_t::checkBalance(const node_t &node) {
    isTorn_ |= !node.lost.isEmpty() || node.isQuoteOpen;
    if (!node.lost.isEmpty() && report(unbalancedBrace, {node.lost.start, node.lost.start + 1}, &node))
        tell("an opening brace without its closing one", "a host loses all that follows in this body");
    if (node.isQuoteOpen && report(openQuote, {node.value.start - 1, node.value.start}, &node))
        tell("a double quote without its closing one", "a host takes all that follows in this body for the value");
}

const node_t *checker_t::next(const node_t &parent, const node_t &node) const {
    const std::uint32_t index = tree_.indexOf(node) + 1;
    return index < parent.firstChild + parent.childCount ? &tree_.nodes()[index] : nullptr;
}

const node_t *checker_t::previous(const node_t &parent, const node_t &node) const {
    const std::uint32_t index = tree_.indexOf(node);
    return index > parent.firstChild ? &tree_.nodes()[index - 1] : nullptr;
}

// The separators behind a value.
std::string_view checker_t::behindValue(const node_t &node) const {
    const std::uint32_t end = node.value.end + (node.isQuoted && !node.isQuoteOpen ? 1 : 0);
    return node.hasValue && node.whole.end > end ? tree_.text().substr(end, node.whole.end - end) : std::string_view();
}

// Whether the value of a key is the next token, since its own is empty.
bool checker_t::hasSwallowed(const node_t &node) const {
    if (!node.hasKey || !node.hasValue)
        return false;
    const std::uint32_t keyEnd = node.key.end + (node.isKeyQuoted ? 1 : 0);
    const std::uint32_t valueStart = node.value.start - (node.isQuoted ? 1 : 0);
    return tree_.text().substr(keyEnd, valueStart - keyEnd).find_first_of(";,") != std::string_view::npos;
}

void checker_t::checkPair(const node_t &parent, const node_t &node) {
    if ((told_ != 0 && tree_.indexOf(node) <= told_) || !checkUse(parent, node) || isDone())
        return;
    if (node.isBody && lacksBraces(node) && tree_.recordOf(parent) != nullptr) {
        explain(node.field);
        explain(node.field->counter());
        return tellWithStrays(parent, node);
    }
    if (const node_t *behind = next(parent, node); behind != nullptr && behind->use == pairUse_t::noKey)
        if (isDecimalComma(parent, *behind) || checkJoined(parent, node, *behind))
            return; // the former is told there
    const bool isTold = checkSpelling(parent, node);
    if (!node.isBody && node.use == pairUse_t::assigned && (!isTold || !isText(node)))
        checkScalar(node);
}

// Whether the reader uses the pair; if not, it is told.
bool checker_t::checkUse(const node_t &parent, const node_t &node) {
    switch (node.use) {
    case pairUse_t::assigned:
        return true;
    case pairUse_t::empty:
        if (!node.lost.isEmpty() || node.isQuoteOpen)
            return false; // which was told
        if (tree_.recordOf(parent) != nullptr)
            explain(node.field);
        if (report(emptyValue, node.whole, &node))
            tell(node.hasKey ? joined({tree_.key(node), " has no value"}) : "an element without a value",
                 joined({"a host reads ", node.isElement ? "an empty one, and writes the list without it"
                                                         : valueOfAbsent(*node.field)}));
        return false;
    case pairUse_t::unknown:
        checkUnknown(parent, node);
        return false;
    case pairUse_t::duplicate:
        if (report(duplicateKey, node.hasKey ? node.key : node.value, &node))
            tell(wordsOfDuplicate(tree_.key(node).substr(0, 40)));
        return false;
    case pairUse_t::noKey:
        checkStray(parent, node);
        return false;
    case pairUse_t::surplus:
        if (report(node.isElement ? beyondRoom : surplusValue, node.value, &node))
            tell(node.isElement ? joined({"there is room for ", std::to_string(*node.field->list->room), " elements"})
                                : "a value behind that of the last key",
                 "a host ignores it");
        return false;
    case pairUse_t::unread:
        break;
    }
    return false;
}

namespace {

std::string_view wordIn(std::string_view key) {
    const auto first = std::find_if(key.begin(), key.end(), &isWordCharacter);
    const auto last = std::find_if(key.rbegin(), std::make_reverse_iterator(first), &isWordCharacter).base();
    return key.substr(static_cast<std::size_t>(first - key.begin()), static_cast<std::size_t>(last - first));
}

std::string_view behindOddCharacters(std::string_view text) {
    const auto isOdd = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
    return text.substr(static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isOdd) - text.begin()));
}

// Whether around a word of a key nothing stands but blanks, of any kind, and what mail puts in front of a line.
bool isAllBlank(std::string_view key, std::string_view word) {
    const std::size_t at = key.rfind(word);
    if (at != std::string_view::npos && trimmed(key).starts_with('#')) // a comment on a line of its own
        if (const std::size_t end = key.find('\n', key.find('#')); end < at)
            return isAllBlank(key.substr(end), word);
    return at != std::string_view::npos && isBlankOfAnyKind(key.substr(0, at)) &&
           isBlankOfAnyKind(key.substr(at + word.size()));
}

// What is part of a key, and no part of its name.
std::string_view besideWord(std::string_view key, std::string_view word) {
    if (trimmed(key) != word)
        return "other characters are";
    return key.find_first_of("\r\n") != std::string_view::npos ? "a line break is" : "a blank is";
}

// The longest key of a record that a text begins or ends with.
const fieldSchema_t *keyAt(const recordSchema_t *record, std::string_view text, bool isFront) {
    const fieldSchema_t *longest = nullptr;
    if (record != nullptr)
        for (const fieldSchema_t &field : record->fields)
            if ((isFront ? text.starts_with(field.key) : text.ends_with(field.key)) &&
                (longest == nullptr || field.key.size() > longest->key.size()))
                longest = &field;
    return longest;
}

// Where a key stands in a message's groups; empty when it does not.
std::string placeOfKey(const recordSchema_t &record, std::string_view key) {
    for (const fieldSchema_t &field : record.fields) {
        if (field.record() == nullptr)
            continue;
        if (field.record()->find(key) != nullptr)
            return std::string(field.key);
        if (const std::string inner = placeOfKey(*field.record(), key); !inner.empty())
            return joined({field.key, ".", inner});
    }
    return {};
}

} // namespace

void checker_t::checkUnknown(const node_t &parent, const node_t &node) {
    const recordSchema_t *record = tree_.recordOf(parent);
    const std::string_view key = tree_.key(node);
    const fieldSchema_t *field = record != nullptr ? record->find(wordIn(key)) : nullptr;
    if (field == nullptr) {
        field = keyAt(record, key, false);
        if (field != nullptr && isWordCharacter(key[key.size() - field->key.size() - 1]))
            field = nullptr;
    }
    if (field != nullptr) {
        const bool isThere = isExplained(*field) || !isMissing(*field);
        explain(field);
        if (report(lineBreak, node.key, &node)) {
            const std::string odd = oddCharacterIn(key);
            tell(odd.empty() ? joined({besideWord(key, field->key), " part of the key ", shownValue(key)})
                             : joined({"the key ", shownValue(key), odd}),
                 joined({"a host ignores it",
                         isThere ? "" : joined({"; ", field->key, " becomes ", valueOfAbsent(*field)})}),
                 wordIn(key) == field->key ? std::string(field->key) : std::string());
            // Who writes a blank in front of "=" writes one behind it.
            const bool isApart = key.ends_with(' ') && tree_.value(node).starts_with(' ') && !node.isQuoted &&
                                 node.value.start == node.key.end + 1;
            const std::size_t blanks = std::min(tree_.value(node).find_first_not_of(' '), node.value.size());
            if (!node.isKeyQuoted)
                mend({node.key.start, isApart ? node.value.start + static_cast<std::uint32_t>(blanks) : node.key.end},
                     joined({field->key, isApart ? "=" : ""}), !isThere && isAllBlank(key, field->key));
        }
        return;
    }
    constexpr std::size_t mostSuggestions = 50;
    const bool hasSuggestion = suggestions_++ < mostSuggestions;
    findingWords_t words = wordsOfUnknown(record, key, hasSuggestion);
    if (record == nullptr && parent.field != nullptr)
        words.message += joined({"; write none, or ", parent.field->key, "0 and so on"});
    const fieldSchema_t *meant = record != nullptr ? record->find(words.suggestion) : nullptr;
    bool wasExplained = false;
    if (meant != nullptr && !isMissing(*meant)) {
        words.message += joined({"; ", meant->key, " stands here too"});
        words.suggestion.clear();
    } else if (meant != nullptr) {
        wasExplained = isExplained(*meant);
        explain(meant);
        words.consequence += joined({"; ", meant->key, " becomes ", valueOfAbsent(*meant)});
    } else if (record != nullptr && hasSuggestion) {
        const std::string place = placeOfKey(*tree_.record(), key);
        if (tree_.record()->find(key) != nullptr)
            words.message += ", which belongs outside of this group: a brace may be missing in front of it";
        else if (!place.empty())
            words.message += joined({", which belongs to ", place});
    }
    const bool isMeant = meant != nullptr && !words.suggestion.empty();
    if (report(unknownKey, node.key, &node)) {
        tell(std::move(words));
        if (isMeant)
            mend({node.key.start - (node.isKeyQuoted ? 1 : 0), node.key.end + (node.isKeyQuoted ? 1 : 0)},
                 std::string(meant->key), !wasExplained && isPlainly(parent, node, *meant));
    }
}

// Whether nothing in the body in hand may be meant for a field.
bool checker_t::isMissing(const fieldSchema_t &field) const {
    return nodes_[static_cast<std::size_t>(field.position)] == nullptr;
}

// Whether a key that is not known can only be that of a field: it is near, no other one that is missing is, and no
// other key that is not known is near the field.
bool checker_t::isPlainly(const node_t &parent, const node_t &node, const fieldSchema_t &meant) const {
    const recordSchema_t &record = *tree_.recordOf(parent);
    const std::string_view key = tree_.key(node);
    const std::string word = withoutOddCharacters(key);
    for (const node_t &other : tree_.children(parent))
        if (&other != &node && other.use == pairUse_t::unknown && !nearest(tree_.key(other), {&meant.key, 1}).empty())
            return false;
    std::vector<std::string_view> missing;
    for (const fieldSchema_t &field : record.fields)
        if (isMissing(field))
            missing.push_back(field.key);
    return isMissing(meant) && tree_.record()->find(key) == nullptr && placeOfKey(*tree_.record(), key).empty() &&
           inspect::isPlainly(word, meant.key, missing);
}

void checker_t::reportSwallowed(const node_t &node, std::string_view andMore) {
    if (report(swallowedToken, node.value, &node)) {
        tell(joined({tree_.key(node), " has no value"}),
             joined({"a host takes the next token for it, ", shownValue(tree_.value(node)), andMore,
                     "; an empty text is left out, with its key"}));
        const std::uint32_t end = static_cast<std::uint32_t>(tree_.text().find_first_of(";,", node.key.end)) + 1;
        const recordSchema_t *record = tree_.recordOf(tree_.nodes()[node.parent]);
        mend({node.key.start - (node.isKeyQuoted ? 1 : 0), end}, {},
             isText(node) && record != nullptr && record->find(tree_.value(node)) != nullptr);
    }
}

// Two pairs of which a host makes something else: the ";" between them is missing, or a "=" stands in a text.
bool checker_t::checkJoined(const node_t &parent, const node_t &node, const node_t &behind) {
    if (!parent.isKeyed || node.isBody || tree_.recordOf(parent) == nullptr ||
        behindValue(node).find(equalsSign) == std::string_view::npos)
        return false;
    told_ = tree_.indexOf(behind);
    const std::string_view value = tree_.value(node);
    const fieldSchema_t *field = node.isQuoted ? nullptr : keyAt(tree_.recordOf(parent), value, false);
    if (field != nullptr && hasSwallowed(node)) {
        explain(field);
        reportSwallowed(node, joined({", and ignores ", shownValue(tree_.value(behind))}));
    } else if (field != nullptr) {
        const bool isNew = isMissing(*field) && !isExplained(*field);
        explain(field);
        const auto at = static_cast<std::uint32_t>(node.value.end - field->key.size());
        if (report(missingSeparator, {at, node.value.end}, &node)) {
            tell(joined({"a \";\" is missing in front of ", field->key, oddCharacterIn(value)}),
                 joined({"a host reads ", shownValue(value), " as ", tree_.key(node), ", and ignores ",
                         shownValue(tree_.value(behind))}));
            const std::string_view own =
                withoutBlankAtEnd(value.substr(0, value.size() - field->key.size()), isText(node) ? "" : ":");
            // A text in capitals may end with the letters of a short key.
            constexpr std::size_t longKey = 8;
            const bool isApart = !isText(node) || field->key.size() >= longKey || own.empty() ||
                                 (!isAsciiUpper(own.back()) && own.back() != '_');
            mend({node.value.start + static_cast<std::uint32_t>(own.size()), at}, ";",
                 isNew && isApart && !own.empty() && judgeValue(*node.field, own).severity != severity_t::error);
        }
    } else if (report(strayValue, behind.value, &behind)) {
        tell(joined({"a \"=\" stands behind ", shownValue(value), ", the value of ", tree_.key(node),
                     isText(node) ? "; " : "", isText(node) ? howToWrite(equalsSign) : ""}),
             joined({"a host ignores ", shownValue(tree_.value(behind))}));
    }
    return true;
}

void checker_t::checkStray(const node_t &parent, const node_t &node) {
    if (checkDecimalComma(parent, node))
        return;
    if (isSurplusBrace(node)) {
        if (report(unbalancedBrace, node.value, &node))
            tell("a closing brace without its opening one", "a host ignores it");
        return;
    }
    const recordSchema_t *record = tree_.recordOf(parent);
    const std::string_view value = tree_.value(node);
    const std::string_view word =
        value.substr(std::min(value.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_"), value.size()));
    const fieldSchema_t *field = node.isQuoted ? nullptr : keyAt(record, word, true);
    const std::string_view rest = field != nullptr ? word.substr(field->key.size()) : std::string_view();
    if (field != nullptr && (rest.empty() || rest[0] != '_') &&
        std::none_of(value.begin(), value.begin() + (word.data() - value.data()), &isWordCharacter)) {
        const bool isNew = isMissing(*field) && !isExplained(*field);
        explain(field);
        if (report(missingSeparator, node.value, &node)) {
            const bool isColon = trimmed(rest).starts_with(':');
            tell(joined({isColon        ? "\":\" stands where \"=\" should be, behind "
                         : rest.empty() ? "\"=\" and a value are missing behind "
                                        : "a \"=\" is missing behind ",
                         field->key, oddCharacterIn(value)}),
                 joined({"a host ignores it; ", field->key, " becomes ", valueOfAbsent(*field)}),
                 rest.empty()
                     ? std::string()
                     : joined({field->key, "=", trimmed(behindOddCharacters(trimmed(rest).substr(isColon ? 1 : 0)))}));
            if (const std::string pair = findings_.back().suggestion; !pair.empty())
                mend(node.value, pair,
                     isNew && !field->isGroup() &&
                         pair.find_first_of("{}") == std::string::npos && // and not a longer word in capitals
                         (!isAsciiUpper(rest[0]) || std::any_of(rest.begin(), rest.end(), &isAsciiLower)) &&
                         judgeValue(*field, std::string_view(pair).substr(field->key.size() + 1)).severity !=
                             severity_t::error);
        }
        return;
    }
    if (isBlankOfAnyKind(value) && !node.isQuoted) {
        if (report(lineBreak, node.value, &node)) {
            tell(joined({value.find_first_of("\r\n") != std::string_view::npos ? "a line break" : "a blank",
                         " stands between pairs"}),
                 "a host ignores it");
            mend({node.value.start, node.whole.end}, {}, true);
        }
        return;
    }
    const node_t *before = previous(parent, node);
    const bool isBehindText = before != nullptr && before->use == pairUse_t::assigned && isText(*before);
    const std::string_view between = before != nullptr ? behindValue(*before) : std::string_view();
    if (report(strayValue, node.value, &node))
        tell(joined({"the value ", shownValue(value), " has no key"}),
             joined({"a host ignores it",
                     isBehindText && before->isQuoted ? "; it stands behind the closing quote of another value"
                     : isBehindText && between.size() == 1
                         ? joined({"; if it belongs to the text of ", tree_.key(*before), ", ", howToWrite(between[0])})
                         : ""}));
}

// "3,5": the comma ends the value, and the rest is a value of its own.
bool checker_t::isDecimalComma(const node_t &parent, const node_t &node) const {
    const node_t *before = previous(parent, node);
    if (node.use != pairUse_t::noKey || before == nullptr || node.isQuoted || node.value.isEmpty() ||
        !isDigit(tree_.value(node).front()))
        return false;
    return before->use == pairUse_t::assigned && isNumber(before->valueKind()) && !before->value.isEmpty() &&
           before->value.end + 1 == node.value.start && tree_.text()[before->value.end] == ',' &&
           isDigit(tree_.value(*before).back());
}

bool checker_t::checkDecimalComma(const node_t &parent, const node_t &node) {
    if (!isDecimalComma(parent, node))
        return false;
    const node_t &before = *previous(parent, node);
    const std::string_view whole = tree_.value(before), rest = tree_.value(node);
    constexpr std::size_t thousand = 3;
    const node_t *last = &node, *behind = next(parent, node);
    std::string digits = joined({whole, rest});
    for (; tree_.value(*last).size() == thousand && behind != nullptr && behind->use == pairUse_t::noKey &&
           behindValue(*last) == ",";
         behind = next(parent, *last)) {
        last = behind;
        digits += tree_.value(*last);
    }
    if (last != &node)
        told_ = tree_.indexOf(*last);
    const place_t place{before.value.start, last->value.end};
    if (!report(decimalComma, place, &before))
        return true;
    const std::string_view lastDigits = tree_.value(*last);
    const bool isOfThousands = lastDigits.find('.') == thousand ||
                               (last != &node && lastDigits.size() == thousand && whole.size() <= thousand);
    const bool goesOn = behind != nullptr && behind->use == pairUse_t::noKey;
    // Three digits behind it may be thousands, unless there is a point or nothing in front.
    const bool isEither =
        !isOfThousands &&
        (last != &node || (rest.size() == thousand && !whole.starts_with('0') && !whole.starts_with("-0")));
    std::string meant = isOfThousands ? std::move(digits) : joined({whole, ".", rest});
    if ((isInteger(before.field->kind) && !isOfThousands) || goesOn || isEither ||
        judgeValue(*before.field, meant).severity == severity_t::error)
        meant.clear();
    const bool isPoint = !meant.empty() && !isOfThousands;
    tell(joined({place.in(tree_.text()), isPoint         ? " has a comma for its point"
                                         : last != &node ? " has commas in it"
                                                         : " has a comma in it"}),
         joined({"a host reads ", whole}), meant);
    if (std::string why; !meant.empty())
        mend(place, spelt(*before.field, meant, part_t::element, why).value_or(meant), true);
    return true;
}

// Of a pair that is used: how it is spelt. Tells whether something was told.
bool checker_t::checkSpelling(const node_t &parent, const node_t &node) {
    if (node.isCanonical)
        return false;
    if (node.isQuoteOpen)
        return true;
    const std::uint32_t valueStart = node.value.start - (node.isQuoted ? 1 : 0);
    if (hasSwallowed(node)) {
        if (const recordSchema_t *record = tree_.recordOf(parent))
            explain(record->find(tree_.value(node)));
        reportSwallowed(node, {});
        if (const node_t *behind = next(parent, node);
            behind != nullptr && behindValue(node).find(equalsSign) != std::string_view::npos)
            told_ = tree_.indexOf(*behind);
    } else if (node.isQuoted && isText(node)) {
        if (report(leadingQuote, {valueStart, node.value.end}, &node)) {
            tell("the text begins with a double quote",
                 "a host reads up to the next one, and keeps neither; behind another character a "
                 "quote is kept");
            const node_t *behind = next(parent, node);
            std::string why;
            if (const std::optional<std::string> text = spelt(*node.field, tree_.value(node), part_t::element, why))
                mend({valueStart, node.value.end + 1}, *text,
                     (parent.isKeyed || node.isElement) && (behind == nullptr || behind->use != pairUse_t::noKey));
        }
    } else if (node.isQuoted || node.isKeyQuoted) {
        if (report(quotedValue, {node.isKeyQuoted ? node.key.start - 1 : valueStart, node.value.end}, &node)) {
            tell("double quotes", "a host reads what stands in them, and writes none");
            const place_t quoted = node.isKeyQuoted ? node.key : node.value;
            const std::string_view bare = quoted.in(tree_.text());
            // What would be several tokens without them is left.
            if ((!node.isBody || node.isKeyQuoted) && !bare.empty() &&
                bare.find_first_of("{}=;,\" ") == std::string_view::npos)
                mend({quoted.start - 1, quoted.end + 1}, std::string(bare), true);
        }
    } else if (const node_t *behind = next(parent, node);
               behind == nullptr || behind->use != pairUse_t::noKey || node.isElement) {
        checkSeparators(parent, node);
    } else {
        return false; // told of the value behind
    }
    return true;
}

void checker_t::checkSeparators(const node_t &parent, const node_t &node) {
    const std::string_view behind = behindValue(node);
    const std::string_view key = tree_.key(node);
    const std::uint32_t start = node.hasKey ? node.key.start : node.value.start;
    const std::string_view front = tree_.text().substr(node.whole.start, start - node.whole.start);
    const auto count = [](std::string_view run) { return std::count(run.begin(), run.end(), comma); };
    const bool isEmptyElement =
        node.isElement && !parent.isKeyed && (count(front) > 0 || (count(behind) > 1 && !node.isCode));
    if (isEmptyElement) {
        if (report(separators, node.whole, &node))
            tell(joined({"an element without a value stands ", front.empty() ? "behind " : "in front of ",
                         shownValue(tree_.value(node))}),
                 "a host skips it, and those behind it move up");
        return;
    }
    if (report(separators, warning, node.whole, &node)) {
        const std::string_view right = node.hasKey ? "\";\"" : "\",\"";
        const std::string whose = node.hasKey ? joined({"the value of ", key}) : shownValue(tree_.value(node));
        const std::string_view between =
            node.hasKey ? tree_.text().substr(node.key.end, node.value.start - node.key.end) : "=";
        tell(!front.empty() ? joined({shownValue(front), " stands in front of ", node.hasKey ? shownValue(key) : whose,
                                      ", where nothing should be"})
             : between != "=" ? joined({shownValue(between), " stands behind ", key, ", where one \"=\" should be"})
             : behind.empty()
                 ? joined({"a ", right, " is missing behind ", whose})
                 : joined({shownValue(behind), " stands behind ", whose, ", where one ", right, " should be"}),
             "a host takes any run of \"=\", \";\" and \",\" for one");
        const std::uint32_t end = node.value.end + (node.isQuoted ? 1 : 0);
        const bool isCertain = parent.isKeyed || node.isElement; // else the "=" may be missing
        if (!front.empty())
            mend({node.whole.start, start}, {}, isCertain);
        else if (between != "=")
            mend({node.key.end, node.value.start}, "=", isCertain);
        else
            mend({end, node.whole.end}, std::string(right.substr(1, 1)), isCertain);
    }
}

void checker_t::checkScalar(const node_t &node) {
    const std::string_view value = tree_.value(node);
    valueFinding_t finding = judgeValue(*node.field, value);
    if (!finding.isThere)
        return;
    // "1.0 2.0" in a list
    if (finding.code == trailingCharacters && node.isElement) {
        const std::size_t blank = value.find_first_of(" \t\r\n");
        const std::size_t rest = blank == std::string_view::npos ? blank : value.find_first_not_of(" \t\r\n", blank);
        if (blank != 0 && rest != std::string_view::npos && (isDigit(value[rest]) || value[rest] == '-')) {
            finding.code = missingSeparator;
            finding.words.message =
                joined({"a \",\" is missing between ", value.substr(0, std::min<std::size_t>(blank, 40)), " and ",
                        value.substr(rest, 40)});
            finding.words.suggestion = joined({value.substr(0, blank), ",", value.substr(rest)});
            finding.isPlain = !judgeValue(*node.field, value.substr(0, blank)).isThere &&
                              !judgeValue(*node.field, value.substr(rest)).isThere;
        }
    }
    if (report(finding.code, finding.severity, node.value, &node)) {
        tell(std::move(finding.words));
        std::string why;
        if (const std::string &meant = findings_.back().suggestion; !meant.empty())
            mend(node.value, spelt(*node.field, meant, part_t::element, why).value_or(meant), finding.isPlain);
    }
}

} // namespace vek::inspect
