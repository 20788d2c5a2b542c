// bodyTree_t: the pairs of a body as values that can be moved about, for inputs that differ from a message in its
// structure rather than in its characters.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vek::test {

/// A pair; a group when its value stands in braces.
struct bodyTree_t {
    std::string key; ///< empty: it has none
    std::string value;
    bool isGroup = false;
    std::vector<bodyTree_t> pairs{}; ///< of a group
};

/// The group that a text in braces is. Whatever the text, something is made of it.
bodyTree_t treeOf(std::string_view body);

/// The text of a group.
std::string bodyOf(const bodyTree_t &group);

} // namespace vek::test
