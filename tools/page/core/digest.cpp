#include "tools/page/core/digest.hpp"

#include "vek/inspect/forms/jsonAppender.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <optional>
#include <vector>

namespace vek::page {

namespace {

using namespace vek::inspect;

constexpr std::size_t mostParts = 8;
constexpr std::size_t longestValue = 120; // bytes

struct part_t {
    std::string_view key; // empty for a text
    std::string value;
};

// Cut between characters.
std::string shortened(std::string value) {
    if (value.size() <= longestValue)
        return value;
    std::size_t end = longestValue;
    while (end > 0 && (static_cast<unsigned char>(value[end]) & 0xc0U) == 0x80U)
        --end;
    return value.substr(0, end) + "…";
}

bool isCount(const recordSchema_t &record, const fieldSchema_t &field) {
    return std::any_of(record.fields.begin(), record.fields.end(),
                       [&](const fieldSchema_t &other) { return other.counter() == &field; });
}

class digest_t {
public:
    explicit digest_t(const tree_t &tree) : tree_(tree) {
        if (const recordSchema_t *record = tree.record())
            take(tree.body(), *record);
    }

    std::vector<part_t> texts, others;

private:
    void take(const node_t &group, const recordSchema_t &record) {
        for (const node_t &node : tree_.children(group)) {
            if (texts.size() + others.size() >= mostParts)
                return;
            const fieldSchema_t *const field = node.field;
            if (node.use != pairUse_t::assigned || field == nullptr || isCount(record, *field))
                continue;
            if (field->isList())
                takeList(node, *field);
            else if (field->kind == fieldKind_t::record && field->record() != nullptr)
                take(node, *field->record());
            else
                takeValue(*field, valueOf(tree_, node));
        }
    }

    // Texts one behind the other, and of all else how many there are.
    void takeList(const node_t &list, const fieldSchema_t &field) {
        if (list.childCount == 0)
            return;
        if (field.kind != fieldKind_t::text) {
            others.push_back({field.key, std::to_string(list.childCount) + "×"});
            return;
        }
        std::string all;
        for (const node_t &element : tree_.children(list))
            if (all.size() <= longestValue)
                all.append(all.empty() ? "" : "; ").append(valueOf(tree_, element));
        texts.push_back({{}, shortened(std::move(all))});
    }

    void takeValue(const fieldSchema_t &field, std::string value) {
        const bool isText = field.kind == fieldKind_t::text || field.kind == fieldKind_t::text16;
        const bool isUsual = value.empty() ||
                             (field.defaultKind == defaultKind_t::value && value == field.defaultText) ||
                             value == "FALSE" || (!isText && field.words().names.empty() && readReal(value) == 0);
        if (isUsual && field.position > 0)
            return;
        if (isText)
            texts.push_back({{}, shortened(std::move(value))});
        else
            others.push_back({field.key, shortened(std::move(value))});
    }

    const tree_t &tree_;
};

} // namespace

void appendDigest(std::string &out, const tree_t &tree, std::string_view paths) {
    const digest_t digest(tree);
    jsonAppender_t json(out);
    json.open('{');
    if (const node_t *node = tree.find("SEVERITY"); node != nullptr && node->field != nullptr)
        json.member("severity", std::clamp(readInteger(tree.value(*node)), 0, 2));
    json.name("parts");
    json.open('[');
    for (const std::vector<part_t> *parts : {&digest.texts, &digest.others})
        for (const part_t &part : *parts) {
            json.open('{');
            json.memberIfAny("key", part.key);
            json.member("value", part.value);
            json.close('}');
        }
    json.close(']');
    json.name("values");
    json.open('[');
    while (!paths.empty()) {
        const std::size_t end = std::min(paths.find('\n'), paths.size());
        if (const std::optional<std::string> value = valueAt(tree, paths.substr(0, end)))
            json.value(shortened(*value));
        else
            json.ready("null");
        paths.remove_prefix(std::min(end + 1, paths.size()));
    }
    json.close(']');
    json.close('}');
}

} // namespace vek::page
