#include "vek/text/elementKeys.hpp"

#include "vek/text/numberText.hpp"

#include <string>
#include <vector>

namespace vek {

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

std::int32_t countPairs(bodyScanner_t pairs) {
    textPair_t pair;
    std::int32_t count = 0;
    while (pairs.next(pair))
        ++count;
    return count;
}

bool isPositional(bodyScanner_t pairs) {
    textPair_t pair;
    while (!pairs.isKeyed() && pairs.next(pair)) {
    }
    return !pairs.isKeyed();
}

void assignByElementKey(bodyScanner_t pairs, const listKey_t &list, std::int32_t count,
                        void (*assign)(void *context, std::int32_t index, std::string_view value), void *context) {
    std::string listKey(list.key);
    if (list.ordinal >= 0)
        listKey += std::to_string(list.ordinal);
    std::vector<bool> matched(static_cast<std::size_t>(count));
    textPair_t pair;
    while (pairs.next(pair)) {
        const std::int32_t index = elementIndex(pair.key, listKey, count);
        if (index < 0 || matched[static_cast<std::size_t>(index)])
            continue;
        matched[static_cast<std::size_t>(index)] = true;
        assign(context, index, pair.value);
    }
}

} // namespace vek
