#include "tools/page/core/messageView.hpp"

#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vek::page {

namespace {

using namespace vek::inspect;

// What a field holds, for a script to choose by.
std::string_view holds(const fieldSchema_t &field) {
    switch (field.kind) {
    case fieldKind_t::boolean:
        return "boolean";
    case fieldKind_t::enumeration:
        return field.words().names.empty() ? "integer" : "name";
    case fieldKind_t::float64:
    case fieldKind_t::float32:
    case fieldKind_t::pixels:
        return "real";
    case fieldKind_t::text:
    case fieldKind_t::text16:
        return "text";
    case fieldKind_t::record:
        return "record";
    default:
        return "integer";
    }
}

void writeNames(jsonAppender_t &json, const fieldSchema_t &field) {
    if (!field.words().names.empty())
        json.list("names", field.words().names, [&json](const char *one) { json.value(one); });
}

// The fields that are spoken of, each once: they go by their numbers.
class fieldTable_t {
public:
    std::size_t numberOf(const fieldSchema_t &field) {
        const auto [known, isNew] = numbers_.try_emplace(&field, fields_.size());
        if (isNew)
            fields_.push_back(&field);
        return known->second;
    }

    void write(jsonAppender_t &json) const {
        json.list("fields", fields_, [&json](const fieldSchema_t *field) {
            json.open('{');
            json.member("key", field->key);
            json.member("holds", holds(*field));
            json.member("words", kindInWords(*field));
            json.memberIfAny("member", field->member.path);
            json.memberIfAny("type", field->member.type);
            json.member("list", field->isList());
            if (field->defaultKind == defaultKind_t::value)
                json.member("default", field->defaultText);
            writeNames(json, *field);
            json.close('}');
        });
    }

private:
    std::unordered_map<const fieldSchema_t *, std::size_t> numbers_;
    std::vector<const fieldSchema_t *> fields_;
};

void writeEnvelope(jsonAppender_t &json, const envelopeParts_t &envelope) {
    json.object("envelope", [&] {
        json.member("@id", envelope.id.place);
        json.member("@length", envelope.length.place);
        json.member("@echo", envelope.echoTag.place);
        json.member("@seq", envelope.sequenceNumber.place);
    });
}

void writeNode(jsonAppender_t &json, fieldTable_t &fields, const tree_t &tree, const node_t &node) {
    json.open('{');
    if (node.field != nullptr)
        json.member("field", fields.numberOf(*node.field));
    json.member("depth", node.depth);
    if (node.isElement)
        json.member("element", true);
    const bool hasChildren = node.childCount > 0 && !(node.field != nullptr && wideText(tree, node));
    if (hasChildren)
        json.member("count", node.childCount);
    else if (node.hasValue && node.parent != node_t::none)
        json.member("value", valueOf(tree, node));
    json.close('}');
}

// The paths of a record's values, also in the records that it nests; [*] is any element of a list.
void writePaths(jsonAppender_t &json, const recordSchema_t &record, const std::string &before) {
    for (const fieldSchema_t &field : record.fields) {
        std::string path = joined({before, field.key, field.isList() ? "[*]" : ""});
        if (field.record() != nullptr) {
            writePaths(json, *field.record(), path + '.');
            continue;
        }
        json.open('{');
        json.member("path", path);
        json.member("holds", holds(field));
        writeNames(json, field);
        json.close('}');
    }
}

} // namespace

void appendView(std::string &out, const tree_t &tree) {
    const std::vector<finding_t> findings = check(tree);
    fieldTable_t fields;
    jsonAppender_t json(out);
    json.open('{');
    writeEnvelope(json, tree.envelope());
    json.list("more", tree.nodes(), [&](const node_t &node) { writeNode(json, fields, tree, node); });
    fields.write(json);
    appendJsonMembers(json, tree, {.findings = findings, .hasTree = true});
    json.close('}');
}

void appendAddable(std::string &out, const tree_t &tree, std::size_t number) {
    const node_t &node = tree.nodes()[std::min(number, tree.nodes().size() - 1)];
    const bool isRead = node.parent == node_t::none || node.use == pairUse_t::assigned;
    const bool isOfKeys = node.childCount == 0 || node.isKeyed;
    const recordSchema_t *const record = isRead && isOfKeys ? tree.recordOf(node) : nullptr;
    std::unordered_set<const fieldSchema_t *> there;
    for (const node_t &child : tree.children(node))
        there.insert(child.field);
    const std::string path = tree.path(node);
    fieldTable_t fields;
    jsonAppender_t json(out);
    json.open('{');
    json.name("addable");
    json.open('[');
    if (record != nullptr)
        for (const fieldSchema_t &field : record->fields)
            if (!there.contains(&field)) {
                json.value(path.empty() ? std::string(field.key) : joined({path, ".", field.key}));
                fields.numberOf(field);
            }
    json.close(']');
    fields.write(json);
    json.close('}');
}

void appendKinds(std::string &out) {
    jsonAppender_t json(out);
    json.open('[');
    for (const messageSchema_t &message : schema().messages()) {
        json.open('{');
        json.member("id", message.id);
        if (message.record != nullptr) {
            json.member("constant", message.constant);
            json.member("name", message.record->name);
            json.member("about", message.record->about);
            json.name("keys");
            json.open('[');
            writePaths(json, *message.record, "");
            json.close(']');
        }
        json.close('}');
    }
    json.close(']');
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
