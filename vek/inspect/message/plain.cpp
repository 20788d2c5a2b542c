#include "vek/inspect/message/plain.hpp"

#include "vek/text/characters.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

bool isPlainBody(const tree_t &tree, const node_t &node) {
    const std::string_view value = tree.value(node);
    const std::span<const node_t> children = tree.children(node);
    if (value.size() < 2 || value.front() != openBrace || value.back() != closeBrace)
        return node.parent == node_t::none && value.empty();
    if (children.empty())
        return node.parent != node_t::none && value.size() == 2;
    const bool isList = node.field != nullptr && tree.recordOf(node) == nullptr;
    const bool isRecord = tree.recordOf(node) != nullptr;
    return children.front().whole.start == node.value.start + 1 && children.back().whole.end == node.value.end - 1 &&
           !(isList && node.isKeyed) && !(isRecord && !node.isKeyed);
}

bool isPlainPair(const tree_t &tree, const node_t &parent, const node_t &node) {
    if (!node.isCanonical || node.hasKey != parent.isKeyed || node.ordinal > 1 || node.use == pairUse_t::duplicate)
        return false;
    if (node.hasKey && tree.key(node).find('#') != std::string_view::npos)
        return false;
    if (node.isBody)
        return isPlainBody(tree, node);
    const std::string_view value = tree.value(node);
    return !isText(node) || std::none_of(value.begin(), value.end(),
                                         [](char c) { return escapedCharacters.find(c) != std::string_view::npos; });
}

} // namespace

bool isText(const node_t &node) {
    return node.field != nullptr && node.field->kind == fieldKind_t::text && (node.isElement || !node.field->isList());
}

bool isPlain(const tree_t &tree) {
    if (!tree.envelope().isCanonical || !isPlainBody(tree, tree.body()))
        return false;
    const std::vector<node_t> &nodes = tree.nodes();
    return std::all_of(nodes.begin() + 1, nodes.end(),
                       [&](const node_t &node) { return isPlainPair(tree, nodes[node.parent], node); });
}

std::string unescapedText(std::string_view value) {
    std::string text(value);
    std::transform(text.begin(), text.end(), text.begin(), unescaped);
    return text;
}

std::string escapedText(std::string_view text) {
    std::string value(text);
    std::transform(value.begin(), value.end(), value.begin(), escaped);
    return value;
}

std::string scalarText(const tree_t &tree, const node_t &node) {
    return isText(node) ? unescapedText(tree.value(node)) : std::string(tree.value(node));
}

} // namespace vek::inspect
