#include "vek/inspect/forms/lineForm.hpp"

#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/quoting.hpp"

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
    if (!isInList && isEmptyGroup(tree, node))
        out += "[]";
    else
        appendLineValue(out, scalarText(tree, node), isInList);
}

} // namespace vek::inspect
