#include "tools/page/core/messageView.hpp"

#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/message/valueAt.hpp"

#include <algorithm>
#include <unordered_map>

namespace vek::page {

namespace {

using namespace vek::inspect;

class viewWriter_t {
public:
    viewWriter_t(jsonAppender_t &json, const tree_t &tree) : json_(json), tree_(tree) {}

    // Members of an object, without its braces.
    void write() {
        json_.member("form", "message");
        writeEnvelope();
        json_.list("more", tree_.nodes(), [this](const node_t &node) { writeNode(node); });
        json_.list("addable", tree_.nodes(), [this](const node_t &node) { writeAddable(node); });
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
        json_.object("envelope", [&] {
            json_.member("@id", envelope.id.place);
            json_.member("@length", envelope.length.place);
            json_.member("@echo", envelope.echoTag.place);
            json_.member("@seq", envelope.sequenceNumber.place);
            json_.member("rightLength", envelope.rightLength);
        });
    }

    void writeNode(const node_t &node) {
        json_.open('{');
        if (node.field != nullptr)
            json_.member("field", numberOf(*node.field));
        json_.member("depth", node.depth);
        if (node.isElement)
            json_.member("element", true);
        const bool hasChildren = node.childCount > 0 && !(node.field != nullptr && wideText(tree_, node));
        if (hasChildren)
            json_.member("count", node.childCount);
        else if (node.hasValue && node.parent != node_t::none)
            json_.member("value", valueAt(tree_, tree_.path(node)).value_or(std::string(tree_.value(node))));
        json_.close('}');
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
            json_.open('{');
            json_.member("path", path.empty() ? std::string(field.key) : path + '.' + std::string(field.key));
            json_.member("parent", tree_.indexOf(node));
            json_.member("field", numberOf(field));
            json_.close('}');
        }
    }

    void writeFields() {
        json_.list("fields", fields_, [this](const fieldSchema_t *field) {
            json_.open('{');
            json_.member("key", field->key);
            json_.member("kind", kindName(field->kind));
            json_.member("words", kindInWords(*field));
            json_.memberIfAny("member", field->member.path);
            json_.memberIfAny("type", field->member.type);
            json_.member("group", field->isGroup());
            json_.member("list", field->isList());
            if (field->defaultKind == defaultKind_t::value)
                json_.member("default", field->defaultText);
            if (!field->names.empty())
                json_.list("names", field->names, [this](const char *one) { json_.value(one); });
            json_.close('}');
        });
    }

    jsonAppender_t &json_;
    const tree_t &tree_;
    std::unordered_map<const fieldSchema_t *, std::size_t> numbers_;
    std::vector<const fieldSchema_t *> fields_;
};

} // namespace

void appendView(std::string &out, const tree_t &tree) {
    const std::vector<finding_t> findings = check(tree);
    jsonAppender_t json(out);
    json.open('{');
    viewWriter_t(json, tree).write();
    appendJsonMembers(json, tree, {.findings = findings, .hasTree = true});
    json.close('}');
}

void appendDifferences(std::string &out, const tree_t &left, const tree_t &right) {
    jsonAppender_t json(out);
    json.open('[');
    for (const difference_t &difference : differences(left, right)) {
        json.open('{');
        json.member("path", difference.path);
        if (difference.hasLeft)
            json.member("left", difference.left);
        if (difference.hasRight)
            json.member("right", difference.right);
        json.close('}');
    }
    json.close(']');
}

} // namespace vek::page
