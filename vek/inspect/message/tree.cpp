// Paths of nodes, both ways.
#include "vek/inspect/message/tree.hpp"

#include "vek/inspect/message/private/treeBuilder.hpp"
#include "vek/inspect/words/quoting.hpp"

#include <algorithm>

namespace vek::inspect {

void tree_t::read(std::string_view text) {
    text_ = withoutNul(text);
    envelope_ = takeEnvelopeApart(text);
    message_ = envelope_.id.isThere ? schema().find(envelope_.id.value) : nullptr;
    treeBuilder_t(*this).build();
}

const recordSchema_t *tree_t::recordOf(const node_t &node) const {
    return node.isBody ? targetOf(*this, node).record : nullptr;
}

std::string tree_t::path(const node_t &node) const {
    std::string path;
    std::vector<const node_t *> way;
    for (const node_t *at = &node; at->parent != node_t::none; at = &nodes_[at->parent])
        way.push_back(at);
    for (; !way.empty(); way.pop_back())
        appendStep(path, *this, *way.back());
    return path;
}

const node_t *tree_t::find(std::string_view wanted) const {
    // Down the one way whose path is in front of the wanted one.
    const node_t *at = &body();
    for (std::string reached; !wanted.empty();) {
        const auto next = [&]() -> const node_t * {
            const std::string_view step =
                wanted.substr(std::min(wanted.size(), reached.empty() ? 0 : reached.size() + 1));
            for (const node_t &child : children(*at)) {
                const bool isNamed = child.hasKey && child.field != nullptr && child.index < 0;
                if (isNamed && !step.starts_with(child.field->key))
                    continue; // most of them
                std::string there = path(child);
                if (!wanted.starts_with(there))
                    continue;
                const char behind = wanted.size() > there.size() ? wanted[there.size()] : '.';
                if (behind == '.' || behind == '[') {
                    reached = std::move(there);
                    return &child;
                }
            }
            return nullptr;
        }();
        if (next == nullptr || reached == wanted)
            return next;
        at = next;
    }
    return nullptr;
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

void appendStep(std::string &path, const tree_t &tree, const node_t &node) {
    if (!path.empty() && (node.index < 0 || node.use == pairUse_t::duplicate))
        path += '.';
    appendName(path, tree, node);
}

namespace {

// The path grows and shrinks on the way, so that a deep message costs no more than its size.
void goOverLeaves(const tree_t &tree, const node_t &parent, std::string &path, const takeLeaf_t &take) {
    for (const node_t &node : tree.children(parent)) {
        const std::size_t length = path.size();
        appendStep(path, tree, node);
        if (node.isBody && node.childCount > 0 && !wideText(tree, node))
            goOverLeaves(tree, node, path, take);
        else
            take(path, node);
        path.resize(length);
    }
}

} // namespace

void forEachLeaf(const tree_t &tree, const takeLeaf_t &take) {
    std::string path;
    goOverLeaves(tree, tree.body(), path, take);
}

} // namespace vek::inspect
