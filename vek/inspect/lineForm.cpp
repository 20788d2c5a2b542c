#include "vek/inspect/private/lineForm.hpp"

#include "vek/inspect/private/plain.hpp"
#include "vek/inspect/quoting.hpp"

namespace vek::inspect {

void appendLineValue(std::string &out, std::string_view text, bool isInList) {
    const bool isPlainWord = !text.empty() && text.front() != ' ' && text.back() != ' ' &&
                             text.find_first_of(isInList ? "#\"[]," : "#\"[]") == std::string_view::npos &&
                             isPrintable(text);
    if (isPlainWord)
        out += text;
    else
        appendQuoted(out, text);
}

void appendWideValue(std::string &out, std::string_view text) {
    out += 'u';
    appendQuoted(out, text);
}

void appendScalar(std::string &out, const tree_t &tree, const node_t &node, bool isInList) {
    appendLineValue(out, scalarText(tree, node), isInList);
}

void appendName(std::string &out, const tree_t &tree, const node_t &node) {
    if (node.index >= 0 && node.use != pairUse_t::duplicate) {
        out += '[';
        out += std::to_string(node.index);
        out += ']';
        return;
    }
    if (node.hasKey || (node.field != nullptr && !node.isElement))
        appendPathKey(out, node.hasKey ? tree.key(node) : node.field->key);
    if (node.ordinal > 1 || (!node.hasKey && (node.field == nullptr || node.isElement))) {
        out += '#';
        out += std::to_string(node.ordinal);
    }
}

} // namespace vek::inspect
