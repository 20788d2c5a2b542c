// What holds of every text, and of every form of one.
#include "tests/support/promises.hpp"

#include "tests/support/decimalPoint.hpp"
#include "tests/support/promises/values.hpp"
#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/plainlyClean.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/forms/private/jsonText.hpp"
#include "vek/inspect/forms/writtenJson.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <vector>

namespace vek::test {

namespace {

using namespace vek::inspect;
using json_t = nlohmann::json;

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

} // namespace vek::test
