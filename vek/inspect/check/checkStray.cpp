// A value without a key, which belongs to the value in front of it: the rest of a text, or of a number with a comma.
#include "vek/inspect/check/private/checker.hpp"
#include "vek/inspect/check/private/judging.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/lookAlikes.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

std::string_view behindOddCharacters(std::string_view text) {
    const auto isOdd = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
    return text.substr(static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isOdd) - text.begin()));
}

} // namespace

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
            // The separator behind it may be the only one, when none is needed behind a quote or brace.
            const bool isApart =
                std::string_view("{;,").find(tree_.text()[node.value.start - 1]) != std::string_view::npos;
            mend({node.value.start, isApart ? node.whole.end : node.value.end}, {}, true);
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
    const std::string front = last == &node ? withoutPointsOfThousands(whole) : std::string(whole);
    const bool isOfPoints = front != whole;
    const bool isOfThousands = lastDigits.find('.') == thousand ||
                               (last != &node && lastDigits.size() == thousand && whole.size() <= thousand);
    const bool goesOn = behind != nullptr && behind->use == pairUse_t::noKey;
    // Three digits behind it may be thousands, unless there is a point or nothing in front.
    const bool isEither =
        !isOfThousands && !isOfPoints &&
        (last != &node || (rest.size() == thousand && !whole.starts_with('0') && !whole.starts_with("-0")));
    std::string meant = isOfThousands ? std::move(digits) : joined({front, ".", rest});
    if ((isInteger(before.field->kind) && !isOfThousands) || goesOn || isEither ||
        judgeValue(*before.field, meant).severity == severity_t::error)
        meant.clear();
    const bool isPoint = !meant.empty() && !isOfThousands;
    std::size_t numberDigits = 0;
    std::string read = judgeValue(*before.field, whole).words.consequence;
    if (!read.starts_with("a host reads ") || read.starts_with("a host reads it"))
        read = reads(whole.substr(0, numberEnd(whole, isReal(before.field->kind), numberDigits)));
    tell(joined({place.in(tree_.text()), isPoint         ? " has a comma for its point"
                                         : last != &node ? " has commas in it"
                                                         : " has a comma in it"}),
         std::move(read), meant);
    if (std::string why; !meant.empty())
        mend(place, spelt(*before.field, meant, part_t::element, why).value_or(meant), true);
    return true;
}

} // namespace vek::inspect
