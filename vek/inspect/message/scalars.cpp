#include "vek/inspect/message/scalars.hpp"

#include "vek/text/characters.hpp"

#include <algorithm>

namespace vek::inspect {

bool isText(const node_t &node) {
    return node.valueKind() == fieldKind_t::text;
}

bool isEmptyGroup(const tree_t &tree, const node_t &node) {
    const std::string_view value = tree.value(node);
    return node.isBody && node.childCount == 0 && value.size() >= 2 && value.front() == openBrace &&
           value.back() == closeBrace;
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
