#include "vek/text/elementKeys.hpp"

#include "vek/text/numberText.hpp"

namespace vek {

// Only the spelling that writing gives is a key: were NAME01 or NAME-0 taken as well, an element would have several.
// The count is that of the pairs, so no key can make a list longer than the text that it comes from.
std::int32_t elementIndex(std::string_view key, std::string_view listKey, std::int32_t count) {
    if (key.substr(0, listKey.size()) != listKey)
        return -1;
    const std::string_view digits = key.substr(listKey.size());
    std::int32_t index = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), index);
    char spelling[integerRoom];
    const bool isExact =
        error == std::errc() && end == digits.data() + digits.size() && index >= 0 && index < count &&
        digits == std::string_view(spelling, static_cast<std::size_t>(writeInteger(index, spelling) - spelling));
    return isExact ? index : -1;
}

std::int32_t countPairs(tolerantScanner_t pairs) {
    textPair_t pair;
    std::int32_t count = 0;
    while (pairs.next(pair))
        ++count;
    return count;
}

// Looks only as far as the first "=" behind a token, and at no token when there is no "=" at all.
bool isPositional(tolerantScanner_t pairs) {
    if (!pairs.hasEquals())
        return true;
    textPair_t pair;
    while (!pairs.isKeyed() && pairs.next(pair)) {
    }
    return !pairs.isKeyed();
}

elementPairs_t::elementPairs_t(const tolerantScanner_t &pairs, const listKey_t &list, std::int32_t count)
    : pairs_(pairs), listKey_(list.key), matched_(static_cast<std::size_t>(count)) {
    if (list.ordinal >= 0)
        listKey_ += std::to_string(list.ordinal);
}

// One walk over the pairs, which name their elements. Asking for each element's key in turn would walk them all for
// each, which is quadratic in a text that may come from anywhere.
bool elementPairs_t::next(elementPair_t &element) {
    for (textPair_t pair; pairs_.next(pair);) {
        element.index = elementIndex(pair.key, listKey_, static_cast<std::int32_t>(matched_.size()));
        element.value = pair.value;
        if (element.index < 0 || matched_[static_cast<std::size_t>(element.index)])
            continue;
        matched_[static_cast<std::size_t>(element.index)] = true;
        return true;
    }
    return false;
}

} // namespace vek
