// Lines are made before they are written, since those of two messages may be compared, and names be aligned.
#include "vek/inspect/forms/private/showLines.hpp"

#include "vek/inspect/forms/lineForm.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

class lineMaker_t {
public:
    lineMaker_t(const tree_t &tree, bool withPaths) : tree_(tree), withPaths_(withPaths) {}

    std::vector<showLine_t> make() {
        addChildren(tree_.body());
        return std::move(lines_);
    }

private:
    void addChildren(const node_t &parent) {
        for (const node_t &node : tree_.children(parent)) {
            const std::size_t length = path_.size();
            if (withPaths_)
                appendStep(path_, tree_, node);
            addNode(node);
            path_.resize(length);
        }
    }

    void addNode(const node_t &node) {
        showLine_t line;
        line.node = &node;
        line.depth = node.depth;
        line.path = path_;
        appendName(line.name, tree_, node);
        if (const std::optional<std::string> wide = wideText(tree_, node)) {
            appendWideValue(line.value, *wide);
        } else if (!node.isBody || node.childCount == 0) {
            appendScalar(line.value, tree_, node);
        } else if (isCompact(node)) {
            line.kind = showLine_t::kind_t::list;
            for (const node_t &item : tree_.children(node))
                line.items.push_back(itemText(item));
        } else {
            line.kind = showLine_t::kind_t::group;
            lines_.push_back(std::move(line));
            return addChildren(node);
        }
        lines_.push_back(std::move(line));
    }

    // A list of values without names, of which 16-bit texts alone may be lists themselves.
    bool isCompact(const node_t &node) const {
        using kind_t = bodyTarget_t::kind_t;
        const kind_t target = targetOf(tree_, node).kind;
        const std::span<const node_t> children = tree_.children(node);
        return !node.isKeyed && target != kind_t::record &&
               std::all_of(children.begin(), children.end(), [&](const node_t &child) {
                   return !child.isBody || (child.childCount > 0 && targetOf(tree_, child).kind == kind_t::codes);
               });
    }

    std::string itemText(const node_t &item) const {
        std::string text;
        if (!item.isBody) {
            appendScalar(text, tree_, item, true);
        } else if (const std::optional<std::string> wide = wideText(tree_, item)) {
            appendWideValue(text, *wide);
        } else {
            for (const node_t &code : tree_.children(item)) {
                text += text.empty() ? "[" : ", ";
                appendScalar(text, tree_, code, true);
            }
            text += ']';
        }
        return text;
    }

    const tree_t &tree_;
    bool withPaths_;
    std::string path_;
    std::vector<showLine_t> lines_;
};

} // namespace

std::vector<showLine_t> showLines(const tree_t &tree, bool withPaths) {
    return lineMaker_t(tree, withPaths).make();
}

std::string valueInOneLine(const showLine_t &line) {
    if (line.kind != showLine_t::kind_t::list)
        return line.value;
    std::string text = "[";
    for (const std::string &item : line.items) {
        text += text.size() > 1 ? ", " : "";
        text += item;
    }
    return text + ']';
}

} // namespace vek::inspect
