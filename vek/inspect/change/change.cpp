// A change replaces one stretch of the text and the length. Then the result is read again and compared with what was to
// come out: a change that did anything else is thrown away.
#include "vek/inspect/change/change.hpp"

#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/change/mending.hpp"
#include "vek/inspect/check/bodyBuilder.hpp"
#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <set>

namespace vek::inspect {

namespace {

change_t refusedChange(std::string why) {
    change_t change;
    change.error = std::move(why);
    return change;
}

std::string noSuchPath(const tree_t &tree, std::string_view path) {
    std::vector<std::string_view> keys;
    if (tree.record() != nullptr)
        for (const fieldSchema_t &field : tree.record()->fields)
            keys.push_back(field.key);
    const std::string_view meant = nearest(path, keys);
    return withSuggestion(joined({"the message has no ", path}), meant == path ? std::string_view() : meant);
}

// With the one stretch replaced and the length put right; nothing else changes.
change_t withReplacement(const tree_t &tree, place_t place, std::string text) {
    const envelopeParts_t &envelope = tree.envelope();
    const std::size_t others = tree.text().size() - lengthPlace(envelope).size() - place.size() + text.size();
    std::vector<remedy_t> edits{{place, std::move(text)}, rightLength(envelope, others)};
    std::sort(edits.begin(), edits.end(),
              [](const remedy_t &one, const remedy_t &other) { return one.place.start < other.place.start; });
    change_t change;
    change.oldLength = static_cast<std::size_t>(std::max(envelope.length.value, 0));
    change.text = applied(tree.text(), edits);
    change.newLength = change.text.size() + 1;
    return change;
}

change_t changedNumber(const tree_t &tree, std::string_view path, const envelopeNumber_t &number,
                       std::string_view value) {
    std::string error;
    fieldSchema_t integer;
    integer.kind = fieldKind_t::integer32;
    const std::optional<std::string> text = spelt(integer, value, part_t::whole, error);
    if (!text)
        return refusedChange(std::move(error));
    if (path == "@length")
        return refusedChange("the length follows from the text and is put right with every change");
    if (!number.isThere || !tree.envelope().length.isThere)
        return refusedChange("this number is missing in the message: seal it first");
    change_t change = withReplacement(tree, number.place, *text);
    change.oldValue = number.place.in(tree.text());
    change.newValue = *text;
    return change;
}

// The first step of a path: "KEY" or "[3]", without the point in front of what follows.
std::string_view firstStep(std::string_view path) {
    const std::size_t end = path.find_first_of(".[", 1);
    return path.substr(0, path.starts_with('[') ? path.find(']') + 1 : end);
}

std::string_view behind(std::string_view path, std::string_view step) {
    path.remove_prefix(step.size());
    return path.starts_with('.') ? path.substr(1) : path;
}

// Writes the pair or element, and the groups on the way to it, that a path names in a place where nothing of it is.
class newPair_t {
public:
    newPair_t(std::string_view value, bool isForced) : value_(value), isForced_(isForced) {}

    std::string text, error;

    /// In a record.
    bool addMember(const recordSchema_t &record, std::string_view path) {
        const std::string_view key = firstStep(path);
        const fieldSchema_t *field = record.find(key);
        if (field == nullptr)
            return false;
        text += joined({key, "="});
        const bool isWritten = addValue(*field, part_t::whole, behind(path, key));
        text += semicolon;
        return isWritten;
    }

    /// In a record that has so many values and no keys, which are told apart by their order.
    bool addNext(const recordSchema_t &record, std::uint32_t count, std::string_view path) {
        const std::string_view key = firstStep(path);
        const fieldSchema_t *field = record.find(key);
        if (field == nullptr)
            return false;
        const bool isNext = static_cast<std::uint32_t>(field->position) == count;
        if (!isNext)
            error = count < record.fields.size()
                        ? joined({"the values here are told apart by their order, and the next one is ",
                                  record.fields[count].key})
                        : "the values here are told apart by their order, and there is none behind the last";
        const bool isWritten = isNext && addValue(*field, part_t::whole, behind(path, key));
        text += comma;
        return isWritten;
    }

    /// In a list, or a 16-bit text, of so many elements.
    bool addElement(const fieldSchema_t &field, bool isCode, std::uint32_t count, std::string_view path) {
        const std::string_view step = firstStep(path);
        const std::string next = joined({"[", std::to_string(count), "]"});
        if (step != next) {
            error = step.starts_with('[') ? joined({"the next element is ", next}) : "";
            return false;
        }
        const bool isWritten = addValue(field, isCode ? part_t::code : part_t::element, behind(path, step));
        text += comma;
        return isWritten;
    }

    /// The value at the path's end, or the group that it goes into.
    bool addValue(const fieldSchema_t &field, part_t part, std::string_view path) {
        if (path.empty()) {
            const bool isText = field.kind == fieldKind_t::text;
            const std::optional<std::string> value = spelt(field, value_, part, error);
            text += value ? *value : isText ? escapedText(value_) : std::string(value_);
            error = isForced_ ? "" : error;
            return error.empty();
        }
        text += openBrace;
        const bool isList = part == part_t::whole && field.isList();
        const bool isWritten = isList || (field.kind == fieldKind_t::text16 && part != part_t::code)
                                   ? addElement(field, !isList, 0, path)
                                   : field.record() != nullptr && addMember(*field.record(), path);
        text += closeBrace;
        return isWritten;
    }

private:
    std::string_view value_;
    bool isForced_;
};

// Where in a record the pair of a field belongs: in front of the first that the record has behind it.
std::uint32_t placeOf(const tree_t &tree, const node_t &parent, const fieldSchema_t *field) {
    std::uint32_t at = parent.value.end - (tree.value(parent).ends_with(closeBrace) ? 1 : 0);
    const std::span<const node_t> children = tree.children(parent);
    for (auto child = children.rbegin(); field != nullptr && child != children.rend(); ++child)
        if (child->field != nullptr && child->field->position > field->position)
            at = child->whole.start;
    return at;
}

change_t added(const tree_t &tree, std::string_view path, std::string_view value, bool isForced) {
    const node_t *parent = &tree.body();
    std::string_view rest = path;
    for (std::size_t end = 0; end < path.size(); rest = behind(path.substr(end), {})) {
        const std::size_t next = static_cast<std::size_t>(rest.data() - path.data()) + firstStep(rest).size();
        const node_t *node = tree.find(path.substr(0, next));
        if (node == nullptr)
            break;
        parent = node;
        end = next;
    }
    const bool isUsed = parent->isBody && (parent->use == pairUse_t::assigned || parent->value.isEmpty());
    const recordSchema_t *const record = tree.recordOf(*parent);
    const bool isRecord = record != nullptr, isByOrder = isRecord && parent->childCount > 0 && !parent->isKeyed;
    newPair_t pair(value, isForced);
    const bool isLikeIt = isRecord || parent->childCount == 0 || !parent->isKeyed;
    const bool isWritten =
        isUsed && isLikeIt && !rest.empty() &&
        (isByOrder  ? pair.addNext(*record, parent->childCount, rest)
         : isRecord ? pair.addMember(*record, rest)
                    : parent->field != nullptr &&
                          pair.addElement(*parent->field, targetOf(tree, *parent).kind == bodyTarget_t::kind_t::codes,
                                          parent->childCount, rest));
    if (!isWritten)
        return refusedChange(pair.error.empty() ? noSuchPath(tree, path) : joined({path, ": ", pair.error}));
    const std::uint32_t at = placeOf(tree, *parent, isRecord ? record->find(firstStep(rest)) : nullptr);
    const char before = at > parent->value.start + 1 ? tree.text()[at - 1] : semicolon;
    const bool isSeparated = isSeparator(before);
    if (!isSeparated) // the separator of the last pair may be missing
        pair.text.insert(0, 1, isRecord && !isByOrder ? semicolon : comma);
    if (parent->value.isEmpty())
        pair.text = joined({"{", pair.text, "}"});
    return withReplacement(tree, {at, at}, std::move(pair.text));
}

part_t partOf(const node_t &node) {
    return node.isCode ? part_t::code : node.isElement ? part_t::element : part_t::whole;
}

change_t replaced(const tree_t &tree, const node_t &node, std::string_view path, std::string_view value,
                  bool isForced) {
    newPair_t pair(value, isForced);
    if (!pair.addValue(*node.field, partOf(node), {}))
        return refusedChange(joined({path, ": ", pair.error}));
    const place_t place{node.value.start - (node.isQuoted ? 1 : 0),
                        node.value.end + (node.isQuoted && !node.isQuoteOpen ? 1 : 0)};
    return withReplacement(tree, place, std::move(pair.text));
}

// What goes with a pair: the groups around it that have nothing else. An element stays, since its list counts it, and a
// group without a key, since it keeps the place of those behind it.
const node_t &goneWith(const tree_t &tree, const node_t &node) {
    const node_t *gone = &node;
    while (gone->parent != node_t::none) {
        const node_t &around = tree.nodes()[gone->parent];
        const bool isPlace = around.parent != node_t::none && !around.hasKey;
        if (around.childCount != 1 || around.index >= 0 || isPlace)
            break;
        gone = &around;
    }
    return *gone;
}

// Whether others would take the places in front of them if a value went.
bool isMovedUp(const tree_t &tree, const node_t &gone) {
    if (gone.parent == node_t::none)
        return false;
    const node_t &around = tree.nodes()[gone.parent];
    return !around.isKeyed && tree.recordOf(around) != nullptr &&
           tree.indexOf(gone) + 1 < around.firstChild + around.childCount;
}

std::uint32_t elementsOf(const tree_t &tree, std::string_view path) {
    const node_t *node = tree.find(path);
    return node != nullptr ? node->childCount : 0;
}

// A list on the way of a path and the key that counts it; empty when there is none.
struct countedList_t {
    std::string_view list;
    std::string count;
};

countedList_t countedListOn(const tree_t &before, const tree_t &after, std::string_view path) {
    for (std::size_t end = path.size(); end != std::string_view::npos && end > 0;
         end = path.find_last_of(".[", end - 1)) {
        const std::string_view list = path.substr(0, end);
        const node_t *node = before.find(list);
        node = node != nullptr ? node : after.find(list);
        if (node == nullptr || node->use != pairUse_t::assigned || node->field == nullptr || node->isElement ||
            node->field->counter() == nullptr)
            continue;
        const std::size_t point = list.rfind('.');
        return {list,
                joined({list.substr(0, point == std::string_view::npos ? 0 : point + 1), node->field->counter()->key})};
    }
    return {};
}

// Puts the count of a list right when its elements became more or less, if it was right before.
void putCountRight(const tree_t &before, std::string_view path, change_t &change, std::string &countPath) {
    const tree_t after(change.text);
    const countedList_t counted = countedListOn(before, after, path);
    const std::uint32_t was = elementsOf(before, counted.list), is = elementsOf(after, counted.list);
    const std::optional<std::string> said = valueAt(before, counted.count);
    if (counted.list.empty() || was == is || (said && *said != std::to_string(was)))
        return;
    countPath = counted.count;
    const node_t *count = after.find(countPath);
    const std::string digits = std::to_string(is);
    change_t more = count != nullptr && count->field != nullptr ? replaced(after, *count, countPath, digits, false)
                                                                : added(after, countPath, digits, false);
    if (more.isDone()) {
        change.text = std::move(more.text);
        change.newLength = more.newLength;
    }
}

// One of two paths leads to the other.
bool isOnTheWay(std::string_view one, std::string_view other) {
    const std::string_view shorter = one.size() < other.size() ? one : other;
    const std::string_view longer = one.size() < other.size() ? other : one;
    return !shorter.empty() && longer.starts_with(shorter) &&
           (longer.size() == shorter.size() || longer[shorter.size()] == '.' || longer[shorter.size()] == '[');
}

// The values of all but some paths, in order, a line each. Of a list of which an element was taken away, the later ones
// go by other numbers.
std::vector<std::string> othersOf(const tree_t &tree, const std::vector<std::string> &paths, std::string_view list) {
    std::vector<std::string> all;
    for (const leaf_t &leaf : leaves(tree)) {
        if (std::any_of(paths.begin(), paths.end(),
                        [&leaf](const std::string &path) { return isOnTheWay(leaf.path, path); }))
            continue;
        const bool isInList = !list.empty() && isOnTheWay(leaf.path, list);
        all.push_back(
            joined({isInList ? list : leaf.path, "=", leaf.value, leaf.node->use == pairUse_t::assigned ? "" : "!"}));
    }
    return all;
}

// The paths whose values follow from that of another: of a count or a range's type the lists, of a range's value the
// whole range.
std::vector<std::string> pathsBoundTo(const tree_t &tree, std::string_view path) {
    std::vector<std::string> all;
    for (const node_t *node = tree.find(path); node != nullptr && node->parent != node_t::none;
         node = &tree.nodes()[node->parent])
        for (const node_t &other : tree.children(tree.nodes()[node->parent])) {
            if (node->field == nullptr || other.field == nullptr || node->isElement)
                continue;
            const bool isCounted = other.field->counter() == node->field && tree.path(*node) == path;
            if (isCounted || other.field->rangeType() == node->field || node->field->rangeType() == other.field ||
                (&other == node && node->field->isList(listKind_t::range)))
                all.push_back(tree.path(other));
        }
    return all;
}

// What is wrong only afterwards; where something was wrong at the path before, that.
std::string newRefusal(const tree_t &before, const tree_t &after, std::string_view path) {
    std::multiset<std::string> known;
    for (refusal_t &refusal : refusalsOf(before, true))
        known.insert(std::move(refusal.words));
    for (refusal_t &refusal : refusalsOf(after, true)) {
        const auto old = known.find(refusal.words);
        if (old == known.end()) {
            const std::string front = joined({path, ": "});
            const auto there = known.lower_bound(front);
            return there != known.end() && there->starts_with(front)
                       ? joined({*there, "; that is to be put right first (vekmsg fix does what is certain)"})
                       : std::move(refusal.words);
        }
        known.erase(old);
    }
    return {};
}

constexpr const char *sealFirst = "the message is damaged: seal it first";

// Whether a host reads a value, as people write it, at its place.
bool isValueAt(const tree_t &tree, const node_t &node, std::string_view value) {
    std::string error;
    return node.use == pairUse_t::assigned && node.field != nullptr &&
           spelt(*node.field, value, partOf(node), error) == tree.value(node);
}

// Whether nothing else is changed, in the text and in what a host reads of it.
bool isRestKept(const tree_t &before, const tree_t &after, std::string_view path, std::string_view countPath,
                bool isRemoval) {
    const tree_t &tree = isRemoval ? before : after;
    const node_t *node = tree.find(path);
    if (node != nullptr && node->isCode) // a text is one value
        return isRestKept(before, after, tree.path(tree.nodes()[node->parent]), countPath, false);
    const bool isElement = isRemoval && node != nullptr && node->isElement;
    const std::string list = isElement ? before.path(before.nodes()[node->parent]) : std::string();
    std::vector<std::string> paths{std::string(countPath)}, pathsBefore{std::string(countPath), std::string(path)};
    if (!isElement)
        paths.emplace_back(path);
    if (othersOf(before, pathsBefore, list) != othersOf(after, paths, list))
        return false;
    const std::optional<std::string> readBefore = asRead(before), readAfter = asRead(after);
    if (!readBefore || !readAfter || !before.envelope().isWholeForHost())
        return true;
    const tree_t one(*readBefore), other(*readAfter);
    std::size_t end = 0; // of an element or a group that is new, what a host reads of all of it
    do
        end = std::min(path.find_first_of(".[", end + 1), path.size());
    while (end < path.size() && one.find(path.substr(0, end)) != nullptr);
    for (const tree_t *any : {&before, &after, &one, &other})
        for (const std::string &bound : pathsBoundTo(*any, path)) {
            paths.push_back(bound);
            pathsBefore.push_back(bound);
        }
    if (!isElement && !isRemoval)
        paths.emplace_back(path.substr(0, end));
    return othersOf(one, pathsBefore, list) == othersOf(other, paths, list);
}

// The change, when it did what it should and nothing else.
change_t verified(const tree_t &before, std::string_view path, std::string_view countPath, change_t change,
                  std::optional<std::string_view> value) {
    const tree_t after(change.text);
    if (!after.envelope().isWholeForHost())
        return refusedChange(sealFirst);
    if (std::string words = newRefusal(before, after, path); !words.empty())
        return refusedChange(std::move(words));
    const node_t *node = after.find(path);
    const bool isThere = path.starts_with('@') || !value || (node != nullptr && isValueAt(after, *node, *value));
    if (!isThere || !isRestKept(before, after, path, countPath, !value))
        return refusedChange(joined({path, ": it can't be changed without changing what a host reads of the rest: put "
                                           "the message right first (vekmsg check tells)"}));
    return change;
}

// `value`: none of a removal.
change_t finished(const tree_t &tree, std::string_view path, change_t change, bool isForced,
                  std::optional<std::string_view> value) {
    if (!change.isDone())
        return change;
    std::string countPath;
    const node_t *node = tree.find(path);
    change.oldValue = node != nullptr ? valueOf(tree, *node) : change.oldValue;
    if (!path.starts_with('@'))
        putCountRight(tree, path, change, countPath);
    if (value && !path.starts_with('@'))
        change.newValue = valueAt(tree_t(change.text), path).value_or("");
    return isForced ? change : verified(tree, path, countPath, std::move(change), value);
}

bool isDamaged(const envelopeParts_t &envelope) {
    return !envelope.length.isThere || envelope.endMarker.isEmpty() || !envelope.behind.isEmpty();
}

} // namespace

change_t changed(const tree_t &tree, std::string_view path, std::string_view value, bool isForced) {
    const envelopeNumber_t *number = headerNumberAt(tree.envelope(), path);
    if (number == nullptr && value.empty())
        return removed(tree, path, isForced);
    if (isDamaged(tree.envelope()))
        return refusedChange(sealFirst);
    if (number != nullptr)
        return finished(tree, path, changedNumber(tree, path, *number, value), isForced, value);
    const node_t *node = tree.find(path);
    if (node == nullptr || (node->use == pairUse_t::empty && !node->hasValue))
        return finished(tree, path, added(tree, path, value, isForced), isForced, value);
    if (node->use != pairUse_t::assigned || node->field == nullptr)
        return refusedChange(noSuchPath(tree, path));
    return finished(tree, path, replaced(tree, *node, path, value, isForced), isForced, value);
}

change_t removed(const tree_t &tree, std::string_view path, bool isForced) {
    if (headerNumberAt(tree.envelope(), path) != nullptr)
        return refusedChange(joined({path, " is a number that every message has"}));
    if (isDamaged(tree.envelope()))
        return refusedChange(sealFirst);
    const node_t *node = tree.find(path);
    if (node == nullptr || node->parent == node_t::none)
        return refusedChange(noSuchPath(tree, path));
    const node_t &gone = goneWith(tree, *node);
    if (!isForced && gone.index < 0 && gone.parent != node_t::none &&
        targetOf(tree, tree.nodes()[gone.parent]).isOfElements())
        return refusedChange(joined({path, " is no element, and the others would move: write the list anew"}));
    if (!isForced && isMovedUp(tree, gone))
        return refusedChange(joined({path, ": the values behind it are told apart by their order: write the group "
                                           "around it anew"}));
    const auto isBound = [&gone](const node_t &other) {
        return other.parent == gone.parent && other.field != nullptr && gone.field != nullptr &&
               (other.field->counter() == gone.field || other.field->rangeType() == gone.field);
    };
    if (!isForced && std::any_of(tree.nodes().begin(), tree.nodes().end(), isBound))
        return refusedChange(joined({path, " tells how its list is written: remove the list with its elements first"}));
    return finished(tree, path, withReplacement(tree, gone.whole, {}), isForced, {});
}

} // namespace vek::inspect
