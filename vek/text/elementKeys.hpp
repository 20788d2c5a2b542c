// Keys of list elements: the list's key and the element's number, PUNCH_SYS_NAME0. They never appear when a list is
// written, but a body may spell them.
#pragma once

#include "vek/text/bodyScanner.hpp"

#include <cstdint>
#include <string_view>

namespace vek {

/// The key of a list, which may itself be an element of a list: the outer list's key and the element's number.
struct listKey_t {
    std::string_view key;
    std::int32_t ordinal = -1; ///< -1: not an element
};

/// The number of the element below `count` that a key spells: the number behind the list's key, -1 unless the rest of
/// the key is exactly such a number.
std::int32_t elementIndex(std::string_view key, std::string_view listKey, std::int32_t count);

/// How many pairs are left in a body.
std::int32_t countPairs(bodyScanner_t pairs);

/// Whether no "=" follows any token of the rest of a body.
bool isPositional(bodyScanner_t pairs);

/// Calls `assign` with the value of each element below `count` that has a pair with its key, exactly spelt. Of several
/// pairs with one key the first counts. Throws std::bad_alloc.
void assignByElementKey(bodyScanner_t pairs, const listKey_t &list, std::int32_t count,
                        void (*assign)(void *context, std::int32_t index, std::string_view value), void *context);

} // namespace vek
