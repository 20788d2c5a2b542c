// Keys of list elements: the list's key and the element's number, PUNCH_SYS_NAME0. They never appear when a list is
// written, but a body may spell them.
#pragma once

#include "vek/text/tolerantScanner.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

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
std::int32_t countPairs(tolerantScanner_t pairs);

/// Whether no "=" follows any token of the rest of a body.
bool isPositional(tolerantScanner_t pairs);

struct elementPair_t {
    std::int32_t index = 0;
    std::string_view value;
};

/// The pairs of a body that give elements below `count` of a list, by keys that are exactly theirs. Of several pairs
/// with one key the first counts. Throws std::bad_alloc.
class elementPairs_t {
public:
    elementPairs_t(const tolerantScanner_t &pairs, const listKey_t &list, std::int32_t count);

    /// Reads the next of them; false when there is none left.
    bool next(elementPair_t &element);

private:
    tolerantScanner_t pairs_;
    std::string listKey_;
    std::vector<bool> matched_; // the elements that had a pair
};

} // namespace vek
