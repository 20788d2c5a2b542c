#include "tests/support/promises.hpp"

#include "tests/support/decimalPoint.hpp"
#include "tests/support/messages.hpp"
#include "vek/inspect/change/change.hpp"
#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/change/mending.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/plainlyClean.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/forms/private/jsonText.hpp"
#include "vek/inspect/forms/writtenJson.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <set>
#include <vector>

namespace vek::test {

namespace {

using namespace vek::inspect;
using json_t = nlohmann::json;

std::string errorsOf(const tree_t &tree) {
    std::string all;
    for (const finding_t &finding : check(tree))
        if (finding.severity == severity_t::error)
            all += finding.path + ": " + finding.inWords() + "\n";
    return all;
}

std::size_t errorCount(const tree_t &tree) {
    const std::vector<finding_t> findings = check(tree);
    return static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(), [](const finding_t &finding) {
        return finding.severity == severity_t::error;
    }));
}

bool isRealKind(fieldKind_t kind) {
    return kind == fieldKind_t::float64 || kind == fieldKind_t::float32 || kind == fieldKind_t::pixels;
}

bool isIntegerKind(const node_t &node) {
    return node.isCode || node.field->kind == fieldKind_t::integer32 || node.field->kind == fieldKind_t::integer16;
}

// Whether a value that people give is the one that the library has read, by the C library's idea of numbers.
bool isValue(const tree_t &tree, const node_t &node, const std::string &given) {
    if (node.field == nullptr)
        return false;
    if (node.isBody)
        return wideText(tree, node).value_or(std::string(tree.value(node))) == given || tree.value(node) == given;
    const std::string read = scalarText(tree, node);
    if (isIntegerKind(node))
        return std::strtoll(given.c_str(), nullptr, 10) == std::strtoll(read.c_str(), nullptr, 10);
    if (node.field->kind == fieldKind_t::float32)
        return static_cast<float>(toDouble(given)) == static_cast<float>(toDouble(read));
    if (isRealKind(node.field->kind))
        return toDouble(given) == toDouble(read);
    return given == read;
}

// What a host has where nothing was said.
bool isAbsentValue(const tree_t &tree, const node_t &node) {
    const std::string_view value = tree.value(node);
    if (node.isBody)
        return node.childCount == 0 || wideText(tree, node) == "";
    if (node.field == nullptr || value.empty())
        return value.empty();
    return value == "0" || value == "0.000000" || value == "FALSE" ||
           (!node.field->words().names.empty() && value == node.field->words().names.front());
}

bool isWithin(std::string_view path, std::string_view group) {
    return path.starts_with(group) &&
           (path.size() == group.size() || path[group.size()] == '.' || path[group.size()] == '[' || group.empty());
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

// A continuous range is written by its two ends, whatever stands between them.
bool isInRange(const tree_t &tree, const node_t &node) {
    for (const node_t *at = &node; at->parent != node_t::none; at = &tree.nodes()[at->parent])
        if (at->field != nullptr && at->field->isList(listKind_t::range))
            return true;
    return false;
}

// Whether a JSON object's body is what the library has read, found without the code that has made the message of it.
class jsonOracle_t {
public:
    explicit jsonOracle_t(const tree_t &read) : read_(read) {}

    std::string broken;

    void compare(const json_t &body) {
        compareMembers(body, "");
        for (const leaf_t &leaf : leaves(read_)) {
            const bool isSaid = std::any_of(said_.begin(), said_.end(), [&](const std::string &path) {
                return isWithin(leaf.path, path) || isWithin(path, leaf.path);
            });
            if (!isSaid && !isAbsentValue(read_, *leaf.node) && !isCount(*leaf.node) && !isInRange(read_, *leaf.node))
                broken += leaf.path + " was not said, and is read as " + std::string(leaf.value) + "\n";
        }
    }

private:
    void compareMembers(const json_t &group, const std::string &path) {
        std::size_t index = 0;
        for (auto member = group.begin(); member != group.end(); ++member, ++index) {
            std::string next = path;
            if (group.is_array()) {
                next += "[" + std::to_string(index) + "]";
            } else {
                next += path.empty() ? "" : ".";
                appendPathKey(next, jsonBytes(member.key()));
            }
            if (member->is_structured())
                compareMembers(*member, next);
            else
                compareValue(*member, next);
        }
    }

    void compareValue(const json_t &value, const std::string &path) {
        if (value.is_null() || value == "")
            return;
        said_.insert(path);
        const node_t *node = read_.find(path), *list = read_.find(path.substr(0, path.rfind('[')));
        if ((list != nullptr && isInRange(read_, *list)) || (node == nullptr && path.ends_with("_RANGE_TYPE")))
            return; // of a range without values a host does not write the type either
        const std::string given = value.is_string()    ? jsonBytes(value.get<std::string>())
                                  : value.is_boolean() ? (value.get<bool>() ? "TRUE" : "FALSE")
                                                       : value.dump();
        if (node == nullptr) { // of a nested record in which all is 0, or an empty range, a host writes nothing
            if (given.find_first_not_of("0.-") != std::string::npos && given != "FALSE" && given != "{0,}")
                missing_.push_back(path);
        } else if (value.is_number_float() && node->field != nullptr && node->field->kind == fieldKind_t::text) {
            return; // its digits are gone
        } else if (!isValue(read_, *node, given)) {
            broken += path + " is " + given + " in the form, and is read as " + std::string(read_.value(*node)) + "\n";
        }
        if (!missing_.empty()) {
            broken += missing_.back() + " is " + given + " in the form, and is not read\n";
            missing_.clear();
        }
    }

    // What counts a list beside it.
    bool isCount(const node_t &node) const {
        const node_t &parent = read_.nodes()[node.parent];
        for (const node_t &list : read_.children(parent))
            if (list.field != nullptr && list.field->counter() != nullptr && list.field->counter() == node.field)
                return read_.value(node) == std::to_string(list.childCount);
        return false;
    }

    const tree_t &read_;
    std::set<std::string> said_;
    std::vector<std::string> missing_;
};

std::string brokenOfJson(const json_t &object, std::string_view made) {
    const std::string whole(made);
    const tree_t tree(whole);
    const envelopeParts_t &envelope = tree.envelope();
    const auto number = [&object](const char *name, std::int32_t otherwise) {
        return object.contains(name) && object[name].is_number_integer() ? object[name].get<std::int64_t>() : otherwise;
    };
    if (number("id", envelope.id.value) != envelope.id.value || number("echo", -1) != envelope.echoTag.value ||
        number("seq", 0) != envelope.sequenceNumber.value)
        return "other header numbers\n";
    const std::optional<std::string> read = asRead(tree);
    if (!read || !tree.record())
        return {};
    const std::string name(object.contains(tree.record()->name) ? tree.record()->name : "body");
    const tree_t readTree(*read);
    jsonOracle_t oracle(readTree);
    oracle.compare(object.at(name));
    return oracle.broken;
}

// Whether the form holds this very text beside its words.
bool holdsText(std::string_view form, std::string_view text) {
    if (const json_t object = json_t::parse(form, nullptr, false); object.is_object())
        return object.contains("text") && object["text"].is_string() &&
               jsonBytes(object["text"].get<std::string>()) == text;
    for (std::size_t at = 0; (at = form.find("@text", at)) != std::string_view::npos; ++at) {
        std::size_t quote = form.find('"', at);
        std::string held;
        if (quote != std::string_view::npos && readQuoted(form, quote, held) && held == text)
            return true;
    }
    return false;
}

std::string withoutText(const std::string &form, form_t kind) {
    if (kind == form_t::json) {
        const std::size_t at = form.find(",\"text\":\"");
        if (at == std::string::npos)
            return form;
        std::size_t end = at + 9;
        while (form[end] != '"')
            end += form[end] == '\\' ? 2 : 1;
        return form.substr(0, at) + form.substr(end + 1);
    }
    const std::size_t at = form.find("@text = ");
    if (at == std::string::npos)
        return form;
    return form.substr(0, at) + form.substr(std::min(form.find('\n', at), form.size()));
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
    for (std::size_t rounds = 0; rounds < 8 && !all.empty(); ++rounds) {
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

// Whether the value that a finding says a host reads is the one that it writes again, as far as its decimals go.
bool isSameValue(fieldKind_t kind, std::string_view said, std::string_view read) {
    if (!isNumber(kind))
        return said == read;
    const double one = readReal(said), other = readReal(read); // whatever the locale's point is
    std::size_t digits = 0;
    return numberEnd(said, true, digits) == said.size() &&
           (one == other || std::abs(one - other) <= 1e-6 * std::max(1.0, std::abs(one)));
}

std::string brokenOfClaims(const tree_t &tree) {
    constexpr std::string_view claim = "a host reads ";
    std::string broken;
    const std::optional<std::string> read = tree.envelope().isWholeForHost() ? asRead(tree) : std::nullopt;
    if (!read)
        return broken;
    const tree_t host(*read);
    for (const finding_t &finding : check(tree)) {
        const node_t *node = host.find(finding.path);
        // In a list a host's elements may be others; a count is written as large as its list may be.
        const bool isOther = finding.path.find('[') != std::string::npos || finding.path.ends_with("NUM_OF_MESSAGES") ||
                             finding.path.ends_with("NUM_SYSTEMS");
        if (isOther || !finding.consequence.starts_with(claim) || node == nullptr || !host.children(*node).empty())
            continue;
        const std::string_view said = std::string_view(finding.consequence).substr(claim.size());
        const std::string_view value = said.substr(0, said.find_first_of(", ;"));
        const bool isValue =
            value.front() != '"' && (isDigit(value.back()) || (value.front() >= 'A' && value.front() <= 'Z'));
        if (isValue && !isSameValue(node->valueKind(), value, host.value(*node)))
            broken += joined({finding.path, ": ", finding.inWords(), ", but it reads ", host.value(*node), "\n"});
    }
    return broken;
}

} // namespace

std::string brokenOfWrittenJson(std::string_view text) {
    std::string broken;
    for (const std::string &one : {std::string(text), asRead(tree_t(text)).value_or("")})
        if (const std::optional<writtenMessage_t> message = plainlyClean(one)) {
            std::string quick, whole;
            jsonAppender_t json(quick);
            json.open('{');
            appendWrittenMembers(json, *message);
            json.close('}');
            appendJson(whole, tree_t(one));
            if (quick != whole)
                broken += joined({"without a tree ", quick, "\nwith it ", whole, "\n"});
        }
    return broken;
}

std::string brokenOfText(std::string_view text) {
    const tree_t tree(text);
    std::string broken = brokenOfWrittenJson(text);
    std::set<std::string> paths;
    for (const node_t &node : tree.nodes()) {
        const std::string path = tree.path(node);
        if (node.parent == node_t::none)
            continue;
        if (!paths.insert(path).second)
            broken += path + " is the path of two\n";
        else if (tree.find(path) != &node)
            broken += path + " leads elsewhere\n";
    }
    for (const difference_t &one : differences(tree, tree, {0.0, {}, true}))
        broken += one.path + " differs from itself\n";
    broken += brokenOfClaims(tree);
    const formResult_t sealedOnce = seal(text);
    if (!sealedOnce.isRead())
        return broken + (sealedOnce.error.empty() || !sealedOnce.text.empty() ? "neither a text nor a reason\n" : "");
    broken += errorsOf(tree_t(sealedOnce.text));
    if (const formResult_t again = seal(sealedOnce.text); again.text != sealedOnce.text)
        broken += "sealed " + sealedOnce.text + "\nsealed again " + again.text + again.error + "\n";
    return broken;
}

std::string brokenOfForm(std::string_view form) {
    const form_t kind = formOf(form);
    const formResult_t result = readForm(form, kind);
    if (!result.isRead())
        return result.text.empty() && result.offset <= form.size() ? "" : "a reason with a text or outside of the form";
    if (!isForm(kind))
        return {};
    if (result.text.empty())
        return "neither a text nor a reason";
    const std::string whole = result.text + '\0'; // a tree leaves one NUL out
    if (result.isRaw || holdsText(form, result.text))
        return {};
    std::string broken = errorsOf(tree_t(whole));
    if (const json_t object = json_t::parse(form, nullptr, false); kind == form_t::json && object.is_object())
        broken += brokenOfJson(object, result.text);
    if (const formResult_t again = seal(result.text); again.text != result.text)
        broken += "sealed again it is " + again.text + again.error + "\n";
    return broken.empty() ? "" : broken + "made is " + result.text;
}

std::string brokenOfWords(std::string_view text) {
    const tree_t tree(text);
    std::string forms[3], made, broken;
    appendJson(forms[0], tree);
    appendFlat(forms[1], tree);
    appendShow(forms[2], tree);
    constexpr form_t kinds[] = {form_t::json, form_t::flat, form_t::show};
    for (std::size_t i = 0; i < std::size(forms); ++i) {
        const std::string form = withoutText(forms[i], kinds[i]);
        if (const std::string one = brokenOfForm(form); !one.empty())
            broken += inspect::joined({form, "\n", one, "\n"});
        const formResult_t result = readForm(form, kinds[i]);
        if (result.isRead() && !made.empty() && result.text != made)
            broken += inspect::joined({form, "\nmakes ", result.text, "\nanother makes ", made, "\n"});
        made = result.isRead() ? result.text : made;
    }
    return broken;
}

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
        const std::string top(isOfList ? of.path(of.nodes()[where->parent]) : newTop(one, path));
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
