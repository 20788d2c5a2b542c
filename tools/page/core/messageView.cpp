#include "tools/page/core/messageView.hpp"

#include "vek/inspect/change/change.hpp"
#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/forms/forms.hpp"

#include <algorithm>
#include <unordered_map>

namespace vek::page {

namespace {

using namespace vek::inspect;

// Appends to a JSON text of any depth.
class jsonPieces_t {
public:
    explicit jsonPieces_t(std::string &out) : out_(out) {}

    void open(char bracket) { out_ += bracket; }
    void close(char bracket) { out_ += bracket; }
    void next() {
        if (out_.back() != '{' && out_.back() != '[')
            out_ += ',';
    }
    void name(std::string_view member) {
        if (!out_.empty())
            next();
        appendJsonString(out_, member);
        out_ += ':';
    }
    void text(std::string_view member, std::string_view value) {
        name(member);
        appendJsonString(out_, value);
    }
    void textIfAny(std::string_view member, std::string_view value) {
        if (!value.empty())
            text(member, value);
    }
    void number(std::string_view member, std::uint64_t value) {
        name(member);
        out_ += std::to_string(value);
    }
    void place(std::string_view member, place_t value) {
        name(member);
        out_ += '[' + std::to_string(value.start) + ',' + std::to_string(value.end) + ']';
    }
    void string(std::string_view value) {
        next();
        appendJsonString(out_, value);
    }

private:
    std::string &out_;
};

class viewWriter_t {
public:
    viewWriter_t(std::string &out, const tree_t &tree) : out_(out), tree_(tree) {}

    // Members of an object, without its braces.
    void write() {
        out_.text("form", "message");
        writeEnvelope();
        out_.name("more");
        out_.open('[');
        for (const node_t &node : tree_.nodes())
            writeNode(node);
        out_.close(']');
        out_.name("addable");
        out_.open('[');
        for (const node_t &node : tree_.nodes())
            writeAddable(node);
        out_.close(']');
        writeFields();
    }

private:
    std::size_t numberOf(const fieldSchema_t &field) {
        const auto [known, isNew] = numbers_.try_emplace(&field, fields_.size());
        if (isNew)
            fields_.push_back(&field);
        return known->second;
    }

    void writeEnvelope() {
        const envelopeParts_t &envelope = tree_.envelope();
        out_.name("envelope");
        out_.open('{');
        out_.place("@id", envelope.id.place);
        out_.place("@length", envelope.length.place);
        out_.place("@echo", envelope.echoTag.place);
        out_.place("@seq", envelope.sequenceNumber.place);
        out_.number("rightLength", envelope.rightLength);
        out_.close('}');
    }

    void writeNode(const node_t &node) {
        out_.next();
        out_.open('{');
        if (node.field != nullptr)
            out_.number("field", numberOf(*node.field));
        out_.number("depth", node.depth);
        if (node.isElement)
            out_.number("element", 1);
        const bool hasChildren = node.childCount > 0 && !(node.field != nullptr && wideText(tree_, node));
        if (hasChildren)
            out_.number("count", node.childCount);
        else if (node.hasValue && node.parent != node_t::none)
            out_.text("value", valueAt(tree_, tree_.path(node)).value_or(std::string(tree_.value(node))));
        out_.close('}');
    }

    void writeAddable(const node_t &node) {
        const recordSchema_t *const record = tree_.recordOf(node);
        const bool isRead = node.parent == node_t::none || node.use == pairUse_t::assigned;
        if (record == nullptr || !isRead || (node.childCount > 0 && !node.isKeyed))
            return;
        const std::span<const node_t> children = tree_.children(node);
        for (const fieldSchema_t &field : record->fields) {
            if (std::any_of(children.begin(), children.end(), [&](const node_t &one) { return one.field == &field; }))
                continue;
            const std::string path = tree_.path(node);
            out_.next();
            out_.open('{');
            out_.text("path", path.empty() ? std::string(field.key) : path + '.' + std::string(field.key));
            out_.number("parent", tree_.indexOf(node));
            out_.number("field", numberOf(field));
            out_.close('}');
        }
    }

    void writeFields() {
        out_.name("fields");
        out_.open('[');
        for (const fieldSchema_t *field : fields_) {
            out_.next();
            out_.open('{');
            out_.text("key", field->key);
            out_.text("kind", kindName(field->kind));
            out_.text("words", kindInWords(*field));
            out_.textIfAny("member", field->member.path);
            out_.textIfAny("type", field->member.type);
            if (field->isGroup())
                out_.number("group", 1);
            if (field->defaultKind == defaultKind_t::value)
                out_.text("default", field->defaultText);
            if (!field->names.empty()) {
                out_.name("names");
                out_.open('[');
                for (const char *one : field->names)
                    out_.string(one);
                out_.close(']');
            }
            out_.close('}');
        }
        out_.close(']');
    }

    jsonPieces_t out_;
    const tree_t &tree_;
    std::unordered_map<const fieldSchema_t *, std::size_t> numbers_;
    std::vector<const fieldSchema_t *> fields_;
};

} // namespace

void appendView(std::string &out, const tree_t &tree) {
    std::string members;
    viewWriter_t(members, tree).write();
    const std::vector<finding_t> findings = check(tree);
    jsonOptions_t options;
    options.members = members;
    options.findings = findings;
    options.hasTree = true;
    appendJson(out, tree, options);
}

void appendDifferences(std::string &out, const tree_t &left, const tree_t &right) {
    jsonPieces_t json(out);
    json.open('[');
    for (const difference_t &difference : differences(left, right)) {
        json.next();
        json.open('{');
        json.text("path", difference.path);
        if (difference.hasLeft)
            json.text("left", difference.left);
        if (difference.hasRight)
            json.text("right", difference.right);
        json.close('}');
    }
    json.close(']');
}

} // namespace vek::page
