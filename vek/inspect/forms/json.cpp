#include "vek/inspect/forms/forms.hpp"

#include "vek/inspect/forms/private/jsonText.hpp"
#include "vek/inspect/message/plain.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

bool isInteger(std::string_view value) {
    const std::string_view digits = value.substr(value.starts_with('-') ? 1 : 0);
    return !digits.empty() && digits.size() <= 9 && std::all_of(digits.begin(), digits.end(), isDigit) &&
           (digits[0] != '0' || value.size() == 1);
}

// Digits, point, digits, as JSON has them too; never so many that a reader would take them for infinite.
bool isReal(std::string_view value) {
    const std::string_view digits = value.substr(value.starts_with('-') ? 1 : 0);
    const std::size_t point = digits.find('.');
    if (point == std::string_view::npos)
        return isInteger(value);
    const std::string_view whole = digits.substr(0, point), decimals = digits.substr(point + 1);
    return !whole.empty() && whole.size() <= 300 && !decimals.empty() &&
           std::all_of(whole.begin(), whole.end(), isDigit) && std::all_of(decimals.begin(), decimals.end(), isDigit) &&
           (whole[0] != '0' || whole.size() == 1);
}

class jsonWriter_t {
public:
    jsonWriter_t(std::string &out, const tree_t &tree) : out_(out), tree_(tree) {}

    void writeMessage(const jsonOptions_t &options) {
        out_ += '{';
        out_ += options.members;
        writeEnvelope();
        if (!options.findings.empty())
            writeFindings(options.findings);
        if (!isPlain(tree_))
            writeText("text", tree_.text());
        if (options.hasTree)
            writeNodes();
        memberName(tree_.record() != nullptr ? tree_.record()->name : "body");
        writeBody(tree_.body());
        out_ += '}';
    }

private:
    void memberName(std::string_view name) {
        if (out_.back() != '{')
            out_ += ',';
        appendJsonString(out_, name);
        out_ += ':';
    }

    void writeText(std::string_view name, std::string_view text) {
        memberName(name);
        appendJsonString(out_, text);
    }

    void writeNumber(std::string_view name, std::size_t number) {
        memberName(name);
        char digits[24];
        out_.append(digits, writeUnsigned(std::uint64_t{number}, digits));
    }

    void writeHeaderNumber(std::string_view name, const envelopeNumber_t &number) {
        if (!number.isThere)
            return;
        memberName(name);
        char digits[integerRoom];
        out_.append(digits, writeInteger(number.value, digits));
    }

    void writeEnvelope() {
        const envelopeParts_t &envelope = tree_.envelope();
        writeHeaderNumber("id", envelope.id);
        if (tree_.record() != nullptr)
            writeText("name", tree_.record()->name);
        writeHeaderNumber("echo", envelope.echoTag);
        writeHeaderNumber("seq", envelope.sequenceNumber);
        writeHeaderNumber("length", envelope.length);
    }

    void writeFindings(std::span<const finding_t> findings) {
        memberName("problems");
        out_ += '[';
        for (const finding_t &finding : findings) {
            if (out_.back() != '[')
                out_ += ',';
            out_ += '{';
            writeText("code", findingName(finding.code));
            writeText("severity", finding.severity == severity_t::error ? "error" : "warning");
            writeNumber("start", finding.place.start);
            writeNumber("end", finding.place.end);
            writeText("path", finding.path);
            writeText("message", finding.message);
            writeText("host", finding.consequence);
            if (!finding.suggestion.empty())
                writeText("suggestion", finding.suggestion);
            out_ += '}';
        }
        out_ += ']';
    }

    // What a body is of decides whether its pairs have names: those of a record always do.
    void writeBody(const node_t &node) {
        const bodyTarget_t::kind_t kind = targetOf(tree_, node).kind;
        const bool hasNames = kind == bodyTarget_t::kind_t::record ||
                              (kind == bodyTarget_t::kind_t::unknown && node.isKeyed) || (node.parent == node_t::none);
        out_ += hasNames ? '{' : '[';
        for (const node_t &child : tree_.children(node)) {
            if (out_.back() != '{' && out_.back() != '[')
                out_ += ',';
            if (hasNames)
                writeName(child);
            writeValue(child);
        }
        out_ += hasNames ? '}' : ']';
    }

    void writeName(const node_t &node) {
        if (node.hasKey && node.ordinal == 1) {
            appendJsonString(out_, tree_.key(node));
        } else if (node.field != nullptr && !node.hasKey) {
            appendJsonString(out_, node.field->key);
        } else {
            std::string name(tree_.key(node));
            name += '#';
            name += std::to_string(node.index >= 0 ? static_cast<std::uint32_t>(node.index) + 1 : node.ordinal);
            appendJsonString(out_, name);
        }
        out_ += ':';
    }

    void writeValue(const node_t &node) {
        if (!node.hasValue)
            out_ += "null";
        else if (!node.isBody)
            writeScalar(node);
        else if (const std::optional<std::string> text = wideText(tree_, node))
            appendJsonString(out_, *text);
        else
            writeBody(node);
    }

    void writeScalar(const node_t &node) {
        const std::string_view value = tree_.value(node);
        const bool isOfAKind = node.field != nullptr && (node.isElement || !node.field->isList());
        switch (isOfAKind ? node.field->kind : fieldKind_t::record) {
        case fieldKind_t::integer32:
        case fieldKind_t::integer16:
        case fieldKind_t::text16:
            return isInteger(value) ? void(out_ += value) : appendJsonString(out_, value);
        case fieldKind_t::float64:
        case fieldKind_t::float32:
        case fieldKind_t::pixels:
            return isReal(value) ? void(out_ += value) : appendJsonString(out_, value);
        case fieldKind_t::boolean:
            if (value == "TRUE" || value == "FALSE")
                return void(out_ += value == "TRUE" ? "true" : "false");
            return appendJsonString(out_, value);
        case fieldKind_t::text:
            return appendJsonText(out_, value);
        default:
            appendJsonString(out_, value);
        }
    }

    void writePlace(std::string_view name, place_t place) {
        memberName(name);
        out_ += '[';
        out_ += std::to_string(place.start);
        out_ += ',';
        out_ += std::to_string(place.end);
        out_ += ']';
    }

    void writeNodes() {
        constexpr std::string_view uses[] = {"assigned", "empty", "unknown", "duplicate", "noKey", "surplus", "unread"};
        memberName("nodes");
        out_ += '[';
        for (const node_t &node : tree_.nodes()) {
            if (out_.back() != '[')
                out_ += ',';
            out_ += '{';
            writeText("path", tree_.path(node));
            writeText("kind", node.field == nullptr ? "unknown" : kindName(node.field->kind));
            writeText("use", uses[static_cast<std::size_t>(node.use)]);
            if (node.parent != node_t::none)
                writeNumber("parent", node.parent);
            if (node.hasKey)
                writePlace("key", node.key);
            if (node.hasValue)
                writePlace("value", node.value);
            writePlace("whole", node.whole);
            out_ += '}';
        }
        out_ += ']';
    }

    std::string &out_;
    const tree_t &tree_;
};

} // namespace

void appendJson(std::string &out, const tree_t &tree, const jsonOptions_t &options) {
    jsonWriter_t(out, tree).writeMessage(options);
}

} // namespace vek::inspect
