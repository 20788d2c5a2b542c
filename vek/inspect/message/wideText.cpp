// 16-bit texts: lists of codes in a body, and texts only for people.
#include "vek/inspect/message/wideText.hpp"

#include "vek/inspect/message/tree.hpp"
#include "vek/inspect/message/writtenPairs.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/utf16.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

#include <cstdint>
#include <utility>
#include <vector>

namespace vek::inspect {

namespace {

// Up to the first 0, behind which nothing is read.
std::string utf8Of(const std::vector<std::uint16_t> &codes) {
    constexpr std::uint32_t replacement = 0xFFFD;
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

} // namespace

std::optional<std::string> wideText(const tree_t &tree, const node_t &node) {
    const bool isWide = node.isBody && targetOf(tree, node).kind == bodyTarget_t::kind_t::codes;
    return isWide ? wideText(tree.value(node)) : std::nullopt;
}

std::optional<std::string> wideText(std::string_view group) {
    std::vector<std::uint16_t> codes;
    forEachWrittenElement(
        group, [&codes](std::string_view code) { codes.push_back(static_cast<std::uint16_t>(readInteger(code))); });
    codes.push_back(0);
    std::string text = utf8Of(codes);
    const std::optional<std::string> again = wideCodes(text);
    return again && *again == group ? std::optional(std::move(text)) : std::nullopt;
}

std::string wideTextRead(const tree_t &tree, const node_t &node) {
    std::vector<std::uint16_t> codes(std::size_t{node.childCount} + 1, 0);
    for (const node_t &child : tree.children(node))
        if (child.index >= 0 && child.use == pairUse_t::assigned)
            codes[static_cast<std::size_t>(child.index)] = static_cast<std::uint16_t>(readInteger(tree.value(child)));
    return utf8Of(codes);
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
