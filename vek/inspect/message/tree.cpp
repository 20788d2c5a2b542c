// Paths of nodes, both ways, and 16-bit texts: these are lists of codes in a body, and a text only for people.
#include "vek/inspect/message/tree.hpp"

#include "vek/inspect/message/private/treeBuilder.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/utf16.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

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

std::optional<std::string> wideText(const tree_t &tree, const node_t &node) {
    if (!node.isBody || targetOf(tree, node).kind != bodyTarget_t::kind_t::codes)
        return {};
    std::string text = wideTextRead(tree, node);
    const std::optional<std::string> again = wideCodes(text);
    return again && *again == tree.value(node) ? std::optional(std::move(text)) : std::nullopt;
}

std::string wideTextRead(const tree_t &tree, const node_t &node) {
    constexpr std::uint32_t replacement = 0xFFFD;
    std::vector<std::uint16_t> codes(std::size_t{node.childCount} + 1, 0);
    for (const node_t &child : tree.children(node))
        if (child.index >= 0 && child.use == pairUse_t::assigned)
            codes[static_cast<std::size_t>(child.index)] = static_cast<std::uint16_t>(readInteger(tree.value(child)));
    std::string text;
    for (auto code = codes.begin(); *code != 0; ++code) {
        const bool isPair = isHighSurrogate(*code) && isLowSurrogate(code[1]);
        if (isPair)
            appendUtf8(text, joinedSurrogates(code[0], code[1]));
        else
            appendUtf8(text, isHighSurrogate(*code) || isLowSurrogate(*code) ? replacement : *code);
        code += isPair ? 1 : 0;
    }
    return text;
}

std::optional<std::string> wideCodes(std::string_view utf8) {
    std::string codes = "{";
    const auto append = [&codes](std::uint32_t code) {
        codes.append(std::to_string(static_cast<std::int16_t>(code))).append(1, comma);
    };
    while (!utf8.empty()) {
        const std::size_t size = utf8Size(utf8);
        if (size == 0)
            return {};
        const std::uint32_t character = utf8Character(utf8.substr(0, size));
        if (character >= 0x10000)
            append(0xD800 + ((character - 0x10000) >> 10));
        append(character >= 0x10000 ? 0xDC00 + ((character - 0x10000) & 0x3FF) : character);
        utf8.remove_prefix(size);
    }
    return codes + "0,}";
}

} // namespace vek::inspect
