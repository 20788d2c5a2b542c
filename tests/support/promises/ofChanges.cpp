// What holds of every change, of differences and of mending.
#include "tests/support/promises.hpp"

#include "tests/support/messages.hpp"
#include "tests/support/promises/values.hpp"
#include "vek/inspect/change/change.hpp"
#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/change/mending.hpp"
#include "vek/inspect/check/plainlyClean.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <vector>

namespace vek::test {

namespace {

using namespace vek::inspect;

std::size_t errorCount(const tree_t &tree) {
    const std::vector<finding_t> findings = check(tree);
    return static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(), [](const finding_t &finding) {
        return finding.severity == severity_t::error;
    }));
}

// The first step of a path that a message has not, with all on the way to it.
std::string_view newTop(const tree_t &tree, std::string_view path) {
    std::size_t end = 0;
    do
        end = std::min(path.find_first_of(".[", end + 1), path.size());
    while (end < path.size() && tree.find(path.substr(0, end)) != nullptr);
    return path.substr(0, end);
}

// Whether a value follows from a changed one: a count from its list and the other way round, a range from its parts.
bool isBound(const tree_t &tree, const node_t *changed, std::string_view path) {
    for (const node_t *node = changed; node != nullptr && node->parent != node_t::none;
         node = &tree.nodes()[node->parent]) {
        const recordSchema_t *record = tree.recordOf(tree.nodes()[node->parent]);
        const fieldSchema_t *field = node->field;
        if (record == nullptr || field == nullptr)
            continue;
        std::string group = tree.path(tree.nodes()[node->parent]);
        group += group.empty() ? "" : ".";
        for (const fieldSchema_t &other : record->fields)
            if ((field->counter() == &other || other.counter() == field || other.rangeType() == field ||
                 field->rangeType() == &other || (field == &other && field->isList(listKind_t::range))) &&
                isWithin(path, group + std::string(other.key)))
                return true;
    }
    return false;
}

constexpr std::string_view hostile[] = {
    "",          "x",         "\"",         "a\"b",       "{",           "}",     "{}",
    "{1,2,}",    "a;b=c,{d}", "\1",         "\3",         "\t",          "a\nb",  "\xFF",
    "\xC3\xA9",  "3.5",       "3,5",        "1e-09",      "1e9",         "-0",    "007",
    "+1",        "0x10",      "2147483647", "2147483648", "-2147483649", "32768", "70000",
    "1e400",     "nan",       "TRUE",       "true",       "1",           "0",     "99999999999999999999",
    "0.1234567", " 1",        "1 ",         "none"};

// In what is replaced, an element without a value stands at no place that the list without it could keep free: no way
// leads there step by step.
bool hasEmptyElement(const tree_t &tree, std::string_view replaced) {
    return std::any_of(tree.nodes().begin(), tree.nodes().end(), [&](const node_t &node) {
        return (node.isElement || node.isCode) && tree.value(node).empty() && isWithin(tree.path(node), replaced);
    });
}

// Whether the differences, one by one, make another message of a text: first what is gone, of a list the last elements
// first, and elements of which nothing is left in a further round. Each step reads the message again, so that many are
// not taken.
bool lead(std::string way, const tree_t &to) {
    constexpr std::size_t most = 250;
    std::vector<difference_t> all = differences(tree_t(way), to);
    if (all.size() > most)
        return true;
    for (std::string last; way != last && !all.empty();) {
        last = way;
        for (auto one = all.rbegin(); one != all.rend(); ++one)
            if (const change_t step = removed(tree_t(way), one->path, true); !one->hasRight && step.isDone())
                way = step.text;
        for (const difference_t &one : all)
            if (const change_t step = changed(tree_t(way), one.path, one.right, true); one.hasRight && step.isDone())
                way = step.text;
        all = differences(tree_t(way), to);
    }
    return all.empty();
}

} // namespace

std::string brokenOfChange(std::string_view text, std::string_view path, std::optional<std::string_view> value) {
    const tree_t before(text);
    const bool isRemoval = !value || value->empty();
    const change_t change = value ? changed(before, path, *value) : removed(before, path);
    if (!change.isDone())
        return !change.text.empty() ? "refused with a text: " + change.error
               : isClean(before) && change.error.find("the rest") != std::string::npos
                   ? "refused for a fault that is not there"
                   : "";
    const tree_t after(change.text);
    std::string broken;
    if (errorCount(after) > errorCount(before))
        broken += "new errors: " + errorsOf(after);
    if (after.envelope().length.value != static_cast<std::int32_t>(change.text.size() + 1) ||
        !after.envelope().isWholeForHost())
        broken += "the length is not right\n";
    const node_t *old = before.find(path), *node = after.find(path);
    const std::optional<std::string> read = asRead(after), readBefore = asRead(before);
    const bool isHeader = path.starts_with('@');
    if (!isHeader && !isRemoval && (node == nullptr || !isValue(after, *node, std::string(*value))))
        broken += "the value does not stand there\n";
    const bool isElement = old != nullptr && old->isElement && isRemoval;
    if (!isHeader && isRemoval && !isElement && node != nullptr && node->hasValue && node->use == pairUse_t::assigned)
        broken += "it is still there\n";
    if (!isHeader && read && readBefore && before.envelope().isWholeForHost()) {
        const tree_t one(*readBefore), other(*read);
        const tree_t &of = node != nullptr ? after : before;
        const node_t *const where = node != nullptr ? node : old;
        const bool isOfList = where != nullptr && (isElement || where->isCode);
        std::string top(newTop(one, path));
        if (const std::string list(isOfList ? of.path(of.nodes()[where->parent]) : path); isWithin(top, list))
            top = list;
        for (const difference_t &difference : differences(one, other))
            if (!isWithin(difference.path, top) && !isWithin(path, difference.path) &&
                !isBound(of, where, difference.path))
                broken += difference.path + " became " + difference.right + " from " + difference.left + "\n";
    }
    if (!isHeader && !isElement && errorCount(before) == 0 && !hasEmptyElement(before, path) &&
        !lead(std::string(text), after))
        broken += "its differences don't lead there\n";
    return broken.empty() ? "" : broken + "changed is " + change.text;
}

std::string brokenOfAnyChange(std::string_view text, std::size_t choice) {
    const tree_t tree(text);
    const auto below = [&choice](std::size_t count) {
        const std::size_t one = choice % count;
        choice = choice / count + one * 7919;
        return one;
    };
    std::vector<std::string> paths{"@id", "@seq", "@echo", "FOCUS_VALEU"};
    for (const node_t &node : tree.nodes()) {
        paths.push_back(tree.path(node));
        if (const recordSchema_t *record = tree.recordOf(node); record != nullptr)
            paths.push_back(paths.back() + (paths.back().empty() ? "" : ".") +
                            std::string(record->fields[below(record->fields.size())].key));
        else if (node.isBody)
            paths.push_back(paths.back() + "[" + std::to_string(node.childCount) + "]");
    }
    const std::string path = paths[below(paths.size())];
    const std::string other = valueAt(tree, paths[below(paths.size())]).value_or("2");
    const std::size_t kind = below(4);
    std::optional<std::string_view> value;
    if (kind == 1)
        value = other;
    else if (kind > 1)
        value = hostile[below(std::size(hostile))];
    const std::string broken = brokenOfChange(text, path, value);
    return broken.empty() ? "" : path + " = " + std::string(value.value_or("(nothing)")) + "\n" + broken;
}

std::string brokenOfDifferences(std::string_view text) {
    const tree_t tree(text);
    for (const sample_t &sample : samples()) {
        if (sample.id != tree.envelope().id.value)
            continue;
        const tree_t other(sample.text);
        std::multiset<std::array<std::string, 3>> there, back;
        for (const difference_t &one : differences(tree, other))
            there.insert({one.path, one.left, one.right});
        for (const difference_t &one : differences(other, tree))
            back.insert({one.path, one.right, one.left});
        if (there != back)
            return "from the other side something else differs\n";
        if (isClean(tree) && isClean(other) && (!lead(std::string(text), other) || !lead(sample.text, tree)))
            return "the differences don't lead from one to the other\n";
    }
    return {};
}

namespace {

// Whether a list's count or its range's type is read otherwise than before, and its elements with it.
bool isBoundToOther(const tree_t &tree, const node_t &leaf, const tree_t &host, const tree_t &hostAfter) {
    for (const node_t *node = &leaf; node->parent != node_t::none; node = &tree.nodes()[node->parent])
        for (const fieldSchema_t *other : {node->field != nullptr ? node->field->counter() : nullptr,
                                           node->field != nullptr ? node->field->rangeType() : nullptr}) {
            std::string path = tree.path(tree.nodes()[node->parent]);
            path += path.empty() ? "" : ".";
            if (other != nullptr && valueAt(host, path + other->key) != valueAt(hostAfter, path + other->key))
                return true;
        }
    return false;
}

// Of which value a host reads something else than before, though no error was told of it or of what it stands in. Where
// errors stand that no value has, a host may read anything.
std::string otherReading(const tree_t &before, const tree_t &after) {
    std::set<std::string> errors;
    for (const finding_t &finding : check(before))
        if (finding.severity == severity_t::error) {
            if (finding.path.empty())
                return {};
            const bool isInList = finding.path.find('[') != std::string::npos;
            errors.insert(isInList ? finding.path.substr(0, finding.path.find('[')) : finding.path);
        }
    const std::optional<std::string> read = before.envelope().isWholeForHost() ? asRead(before) : std::nullopt;
    const std::optional<std::string> readAfter = read ? asRead(after) : std::nullopt;
    if (!readAfter)
        return read ? "all" : "";
    const tree_t host(*read), hostAfter(*readAfter);
    for (const leaf_t &leaf : leaves(host)) {
        const bool isAtFault = std::any_of(errors.begin(), errors.end(), [&leaf](const std::string &path) {
            return isWithin(leaf.path, path) || isWithin(path, leaf.path);
        });
        const node_t *const there = before.find(leaf.path), *const now = hostAfter.find(leaf.path);
        const bool isAssigned = there != nullptr && there->use == pairUse_t::assigned;
        if (isAssigned && !isAtFault && !isBoundToOther(before, *there, host, hostAfter) &&
            (now == nullptr || hostAfter.value(*now) != leaf.value))
            return leaf.path;
    }
    return {};
}

} // namespace

std::string brokenOfMending(std::string_view text) {
    while (text.ends_with('\0')) // the rest of a buffer, which goes unasked
        text.remove_suffix(1);
    const tree_t before(text);
    const mending_t mending = mended(text);
    const tree_t after(mending.text);
    const auto broken = [&](std::string_view what) { return joined({what, "\n", mending.text}); };
    if (isClean(before) && mending.text != before.text())
        return broken("a sound message is changed");
    if (errorCount(after) > errorCount(before))
        return broken("there are more errors: " + errorsOf(after));
    if (const mending_t again = mended(mending.text); again.text != mending.text)
        return broken("mended again it becomes " + again.text);
    const bool isWhole = mending.isSound() && !mending.done.empty();
    if (isWhole && !after.envelope().isBodyRead)
        return broken("mended, and no host reads it");
    std::set<std::string> faults;
    for (const finding_t &finding : check(before))
        if (finding.code == findingCode_t::missingSeparator && finding.path.ends_with(']'))
            faults.insert(finding.path.substr(0, finding.path.rfind('['))); // elements behind it move
        else if (!finding.path.empty() && (finding.severity == severity_t::error || finding.remedy))
            faults.insert(finding.path);
    // A host may read less than stands there, or another message than the one that the length proves.
    const auto fits = [&before](std::string_view whole) {
        return before.envelope().length.value == static_cast<std::int32_t>(whole.size() + 1);
    };
    const bool isTorn = before.envelope().endMarker.isEmpty() || (fits(mending.text) && !fits(text));
    for (const leaf_t &leaf : leaves(before)) {
        const bool isAtFault = isTorn || std::any_of(faults.begin(), faults.end(), [&leaf](const std::string &path) {
                                   return isWithin(leaf.path, path) || isWithin(path, leaf.path);
                               });
        const node_t *now = isAtFault || leaf.node->use != pairUse_t::assigned ? nullptr : after.find(leaf.path);
        if (now != nullptr ? after.value(*now) != leaf.value : !isAtFault && leaf.node->use == pairUse_t::assigned)
            return broken("the value of " + leaf.path + " is not kept");
    }
    if (const std::string path = otherReading(before, after); !path.empty())
        return broken("a host reads another value of " + path);
    return {};
}

} // namespace vek::test
