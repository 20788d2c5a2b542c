#include "vek/inspect/message/tree.hpp"

#include "vek/inspect/message/private/treeBuilder.hpp"
#include "vek/inspect/words/quoting.hpp"
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
    for (; !way.empty(); way.pop_back()) {
        const node_t &step = *way.back();
        path += path.empty() || (step.index >= 0 && step.use != pairUse_t::duplicate) ? "" : ".";
        appendName(path, *this, step);
    }
    return path;
}

const node_t *tree_t::find(std::string_view wanted) const {
    // Down the one way whose path is in front of the wanted one.
    const node_t *at = &body();
    for (std::string reached; !wanted.empty();) {
        const auto next = [&]() -> const node_t * {
            for (const node_t &child : children(*at)) {
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

namespace {

// The 16-bit code that a text is, spelt as the library spells it.
bool readCode(std::string_view text, std::uint16_t &code) {
    char digits[integerRoom];
    const auto value = static_cast<std::int16_t>(readInteger(text));
    const char *const end = writeInteger(value, digits);
    code = static_cast<std::uint16_t>(value);
    return text == std::string_view(digits, static_cast<std::size_t>(end - digits));
}

void appendCode(std::string &out, std::uint32_t code) {
    char digits[integerRoom];
    out.append(digits, writeInteger(static_cast<std::int16_t>(code), digits));
    out += ',';
}

} // namespace

std::optional<std::string> wideText(const tree_t &tree, const node_t &node) {
    if (!node.isBody || targetOf(tree, node).kind != bodyTarget_t::kind_t::codes)
        return {};
    std::string text;
    std::uint32_t high = 0;
    const std::span<const node_t> codes = tree.children(node);
    for (const node_t &child : codes) {
        std::uint16_t code = 0;
        const bool isLast = &child == &codes.back();
        if (!child.isCanonical || !readCode(tree.value(child), code) || isLast != (code == 0))
            return {};
        if (isLast)
            break;
        const bool isLow = code >= 0xDC00 && code <= 0xDFFF;
        if (isLow != (high != 0))
            return {};
        if (code >= 0xD800 && code <= 0xDBFF) {
            high = code;
            continue;
        }
        appendUtf8(text, isLow ? 0x10000 + ((high - 0xD800) << 10) + (code - 0xDC00U) : code);
        high = 0;
    }
    const std::optional<std::string> again = wideCodes(text);
    return again && *again == tree.value(node) ? std::optional(std::move(text)) : std::nullopt;
}

std::string wideTextRead(const tree_t &tree, const node_t &node) {
    constexpr std::uint32_t replacement = 0xFFFD;
    std::string text;
    std::uint32_t high = 0;
    const auto putHigh = [&] {
        if (high != 0)
            appendUtf8(text, replacement);
        high = 0;
    };
    std::vector<std::uint16_t> codes(std::size_t{node.childCount} + 1, 0);
    for (const node_t &child : tree.children(node))
        if (child.index >= 0 && child.use == pairUse_t::assigned)
            codes[static_cast<std::size_t>(child.index)] = static_cast<std::uint16_t>(readInteger(tree.value(child)));
    for (const std::uint32_t code : codes) {
        if (code == 0)
            break;
        const bool isLow = code >= 0xDC00 && code <= 0xDFFF;
        if (isLow && high != 0) {
            appendUtf8(text, 0x10000 + ((high - 0xD800) << 10) + (code - 0xDC00U));
            high = 0;
            continue;
        }
        putHigh();
        if (code >= 0xD800 && code <= 0xDBFF)
            high = code;
        else
            appendUtf8(text, isLow ? replacement : code);
    }
    putHigh();
    return text;
}

std::optional<std::string> wideCodes(std::string_view utf8) {
    std::string codes = "{";
    while (!utf8.empty()) {
        const std::size_t size = utf8Size(utf8);
        if (size == 0)
            return {};
        const std::uint32_t character = utf8Character(utf8.substr(0, size));
        if (character >= 0x10000)
            appendCode(codes, 0xD800 + ((character - 0x10000) >> 10));
        appendCode(codes, character >= 0x10000 ? 0xDC00 + ((character - 0x10000) & 0x3FF) : character);
        utf8.remove_prefix(size);
    }
    return codes + "0,}";
}

} // namespace vek::inspect
