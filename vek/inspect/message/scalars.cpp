#include "vek/inspect/message/scalars.hpp"

#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

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

bool isUsualInteger(std::string_view value) {
    constexpr std::size_t mostDigits = 9;
    const std::string_view digits = value.substr(value.starts_with('-') ? 1 : 0);
    return !digits.empty() && digits.size() <= mostDigits && (digits[0] != '0' || value.size() == 1) &&
           std::all_of(digits.begin(), digits.end(), [](char digit) { return isDigit(digit); });
}

std::string realText(double value) {
    char digits[realRoom];
    return std::string(digits, writeReal(value, digits));
}

bool isUsualReal(std::string_view value) {
    const std::string_view digits = value.substr(value.starts_with('-') ? 1 : 0);
    constexpr std::size_t decimals = 6, mostDigits = 15;
    if (digits.size() < decimals + 2 || digits.size() > mostDigits || digits[digits.size() - decimals - 1] != '.')
        return false;
    const std::size_t point = digits.size() - decimals - 1;
    if (digits[0] == '0' && point > 1)
        return false;
    for (std::size_t i = 0; i < digits.size(); ++i)
        if (i != point && !isDigit(digits[i]))
            return false;
    return true;
}

std::string scalarText(const tree_t &tree, const node_t &node) {
    return isText(node) ? unescapedText(tree.value(node)) : std::string(tree.value(node));
}

} // namespace vek::inspect
