// Values are typed only where the same text comes back from the typed value; anything else is a string.
#include "vek/inspect/forms/forms.hpp"

#include "vek/inspect/forms/private/jsonScalar.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

// In order of pairUse_t.
constexpr std::string_view useNames[] = {"assigned", "empty", "unknown", "duplicate", "noKey", "surplus", "unread"};

// The digits of an integer of 32 bits as it is written.
bool isIntegerText(std::string_view value) {
    const bool isNegative = value.starts_with('-');
    const std::string_view digits = value.substr(isNegative ? 1 : 0);
    const std::string_view largest = isNegative ? "2147483648" : "2147483647";
    return !digits.empty() && std::all_of(digits.begin(), digits.end(), isDigit) &&
           (digits.size() < largest.size() || (digits.size() == largest.size() && digits <= largest)) &&
           (digits[0] != '0' || value.size() == 1);
}

// Digits, point, digits, as JSON has them too; never so many that a reader would take them for infinite.
bool isRealText(std::string_view value) {
    const std::string_view digits = value.substr(value.starts_with('-') ? 1 : 0);
    const std::size_t point = digits.find('.');
    if (point == std::string_view::npos)
        return isIntegerText(value);
    const std::string_view whole = digits.substr(0, point), decimals = digits.substr(point + 1);
    return !whole.empty() && whole.size() <= 300 && !decimals.empty() &&
           std::all_of(whole.begin(), whole.end(), isDigit) && std::all_of(decimals.begin(), decimals.end(), isDigit) &&
           (whole[0] != '0' || whole.size() == 1);
}

class jsonWriter_t {
public:
    jsonWriter_t(jsonAppender_t &json, const tree_t &tree) : json_(json), tree_(tree) {}

    void writeMembers(const jsonOptions_t &options) {
        writeEnvelope();
        if (!options.findings.empty())
            json_.list("problems", options.findings, [this](const finding_t &finding) {
                json_.open('{');
                appendFinding(json_, finding);
                json_.close('}');
            });
        if (!isSaidByItsWords(tree_))
            json_.member("text", tree_.text());
        if (options.hasTree)
            json_.list("nodes", tree_.nodes(), [this](const node_t &node) { writeNode(node); });
        json_.name(tree_.record() != nullptr ? tree_.record()->name : "body");
        writeBody(tree_.body());
    }

private:
    void writeHeaderNumber(std::string_view name, const envelopeNumber_t &number) {
        if (number.isThere)
            json_.member(name, number.value);
    }

    void writeEnvelope() {
        const envelopeParts_t &envelope = tree_.envelope();
        writeHeaderNumber("id", envelope.id);
        if (tree_.record() != nullptr)
            json_.member("name", tree_.record()->name);
        writeHeaderNumber("echo", envelope.echoTag);
        writeHeaderNumber("seq", envelope.sequenceNumber);
        writeHeaderNumber("length", envelope.length);
    }

    // What a body is of decides whether its pairs have names: those of a record always do.
    void writeBody(const node_t &node) {
        const bodyTarget_t::kind_t kind = targetOf(tree_, node).kind;
        const bool hasNames = kind == bodyTarget_t::kind_t::record ||
                              (kind == bodyTarget_t::kind_t::unknown && node.isKeyed) || (node.parent == node_t::none);
        json_.open(hasNames ? '{' : '[');
        for (const node_t &child : tree_.children(node)) {
            if (hasNames)
                writeName(child);
            writeValue(child);
        }
        json_.close(hasNames ? '}' : ']');
    }

    void writeName(const node_t &node) {
        if (node.hasKey && node.ordinal == 1)
            return json_.anyName(tree_.key(node));
        if (node.field != nullptr && !node.hasKey)
            return json_.name(node.field->key);
        const std::uint32_t number = node.index >= 0 ? static_cast<std::uint32_t>(node.index) + 1 : node.ordinal;
        const bool isEmptyKey = node.hasKey && node.key.isEmpty(); // apart from the pairs without a key
        json_.anyName(joined({isEmptyKey ? emptyKey : tree_.key(node), "#", std::to_string(number)}));
    }

    void writeValue(const node_t &node) {
        if (!node.hasValue)
            json_.ready("null");
        else if (!node.isBody || (node.childCount == 0 && !isEmptyGroup(tree_, node)))
            appendScalar(json_, node.valueKind(), tree_.value(node));
        else if (const std::optional<std::string> text = wideText(tree_, node))
            json_.value(*text);
        else
            writeBody(node);
    }

    void writeNode(const node_t &node) {
        json_.open('{');
        json_.member("path", tree_.path(node));
        json_.member("kind", node.field == nullptr ? std::string_view("unknown") : kindName(node.field->kind));
        json_.member("use", useNames[static_cast<std::size_t>(node.use)]);
        if (node.parent != node_t::none)
            json_.member("parent", node.parent);
        if (node.hasKey)
            json_.member("key", node.key);
        if (node.hasValue)
            json_.member("value", node.value);
        json_.member("whole", node.whole);
        json_.close('}');
    }

    jsonAppender_t &json_;
    const tree_t &tree_;
};

} // namespace

void appendScalar(jsonAppender_t &json, fieldKind_t kind, std::string_view value) {
    const bool isAsItStands = isReal(kind)                                     ? isRealText(value)
                              : isInteger(kind) || kind == fieldKind_t::text16 ? isIntegerText(value)
                                                                               : false;
    if (isAsItStands)
        json.ready(value);
    else if (kind == fieldKind_t::text16 && value.empty()) // a host gets no text, where "" says an empty one
        json.ready("null");
    else if (kind == fieldKind_t::boolean && (value == "TRUE" || value == "FALSE"))
        json.value(value == "TRUE");
    else if (kind == fieldKind_t::text && hasCodes(value))
        json.value(unescapedText(value));
    else
        json.value(value);
}

void appendJson(std::string &out, const tree_t &tree, const jsonOptions_t &options) {
    jsonAppender_t json(out);
    json.open('{');
    appendJsonMembers(json, tree, options);
    json.close('}');
}

void appendJsonMembers(jsonAppender_t &json, const tree_t &tree, const jsonOptions_t &options) {
    jsonWriter_t(json, tree).writeMembers(options);
}

void appendFinding(jsonAppender_t &json, const finding_t &finding) {
    json.member("severity", severityName(finding.severity));
    json.member("code", findingName(finding.code));
    json.member("path", finding.path);
    json.member("start", finding.place.start);
    json.member("end", finding.place.end);
    json.member("message", finding.message);
    json.member("consequence", finding.consequence);
    json.member("suggestion", finding.suggestion);
}

} // namespace vek::inspect
