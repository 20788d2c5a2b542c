// Pair by pair: whether a host uses it, and how it is spelt.
#include "vek/inspect/check/private/checker.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/text/characters.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

// Whether a quoted token is one for itself without its quotes, too: on each side there is a separator, or the group's
// end. A brace that is none of the group's own is part of a token.
bool standsAlone(const tree_t &tree, const node_t &group, place_t quoted, std::string_view blanks) {
    const place_t inside{group.value.start + 1, group.value.end - (tree.value(group).ends_with(closeBrace) ? 1 : 0)};
    const std::string_view before = trimmed(place_t{inside.start, quoted.start}.in(tree.text()), blanks);
    const std::string_view behind = trimmed(place_t{quoted.end, inside.end}.in(tree.text()), blanks);
    return (before.empty() || isSeparator(before.back())) && (behind.empty() || isSeparator(behind.front()));
}

} // namespace

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
            tell("an empty group", !node.isElement ? "a host reads it as if it were not there"
                                   : node.valueKind() == fieldKind_t::text16
                                       ? "a host reads an empty text, and writes nothing of it"
                                       : "a host reads an element with zeros and empty texts");
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
                     (parent.isKeyed || node.isElement) && (behind == nullptr || behind->use != pairUse_t::noKey) &&
                         standsAlone(tree_, parent, {valueStart, node.value.end + 1}, {}));
        }
    } else if (node.isQuoted || node.isKeyQuoted) {
        if (report(quotedValue, {node.isKeyQuoted ? node.key.start - 1 : valueStart, node.value.end}, &node)) {
            tell("double quotes", "a host reads what stands in them, and writes none");
            const place_t quoted = node.isKeyQuoted ? node.key : node.value;
            const std::string_view bare = quoted.in(tree_.text());
            // What would be several tokens without them is left, and what would be one with its neighbour.
            const bool isAlone = standsAlone(tree_, parent, {quoted.start - 1, quoted.end + 1}, whiteSpace);
            if ((!node.isBody || node.isKeyQuoted) && !bare.empty() && isAlone &&
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
