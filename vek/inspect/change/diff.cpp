// Both messages are taken apart into leaves, the values that stand at a path of their own, and the leaves are compared
// path by path: so the order of keys does not matter.
#include "vek/inspect/change/diff.hpp"

#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace vek::inspect {

namespace {

bool isSame(const leaf_t &left, const leaf_t &right, double tolerance) {
    if (left.value == right.value)
        return true;
    if (isText(*left.node) && isText(*right.node)) // a separator may stand there, or its code
        return unescapedText(left.value) == unescapedText(right.value);
    if (!isNumber(left.node->valueKind()) || !isNumber(right.node->valueKind()))
        return false;
    const double one = readReal(left.value), other = readReal(right.value);
    if (left.node->field->kind == fieldKind_t::float32 && std::abs(one) < 1e38 && std::abs(other) < 1e38 &&
        static_cast<float>(one) == static_cast<float>(other)) // a host keeps no more of it
        return true;
    return one == other || std::abs(one - other) <= tolerance;
}

// "A[].B" for "A[3].B": the path of a key in every element of its list.
std::string withoutNumbers(std::string_view path) {
    std::string general;
    bool isInside = false;
    for (const char c : path) {
        isInside &= c != ']';
        if (!isInside)
            general += c;
        isInside |= c == '[';
    }
    return general;
}

bool isIgnored(const std::string &path, const std::vector<std::string> &ignored) {
    if (ignored.empty())
        return false;
    const std::string general = withoutNumbers(path);
    const auto isWithin = [](std::string_view at, std::string_view place) {
        return at.starts_with(place) &&
               (at.size() == place.size() || at[place.size()] == '.' || at[place.size()] == '[');
    };
    return std::any_of(ignored.begin(), ignored.end(), [&](const std::string &place) {
        if (isWithin(path, place) || isWithin(general, place))
            return true;
        for (std::size_t at = 0; (at = path.find(place, at)) != std::string::npos; ++at) // a key anywhere
            if (at > 0 && path[at - 1] == '.' && isWithin(std::string_view(path).substr(at), place))
                return true;
        return false;
    });
}

// An empty group where the other message has one with something in it, which is told of the values in it.
bool isFilledIn(const tree_t &tree, const leaf_t &leaf, const tree_t &other) {
    if (!isEmptyGroup(tree, *leaf.node))
        return false;
    const node_t *node = other.find(leaf.path);
    return node != nullptr && node->isBody && node->childCount > 0;
}

void compareHeader(const tree_t &left, const tree_t &right, bool comparesAll, std::vector<difference_t> &all) {
    const auto compare = [&](const char *path, const envelopeNumber_t &one, const envelopeNumber_t &other) {
        if (one.isThere != other.isThere || one.value != other.value)
            all.push_back({path, one.isThere ? std::to_string(one.value) : "",
                           other.isThere ? std::to_string(other.value) : "", one.isThere, other.isThere});
    };
    compare("@id", left.envelope().id, right.envelope().id);
    if (!comparesAll)
        return;
    compare("@echo", left.envelope().echoTag, right.envelope().echoTag);
    compare("@seq", left.envelope().sequenceNumber, right.envelope().sequenceNumber);
}

} // namespace

std::vector<leaf_t> leaves(const tree_t &tree) {
    std::vector<leaf_t> all;
    forEachLeaf(tree, [&](const std::string &path, const node_t &node) {
        all.push_back({path, tree.value(node), &node});
    });
    return all;
}

std::vector<difference_t> differences(const tree_t &left, const tree_t &right, const diffOptions_t &options) {
    std::vector<difference_t> all;
    compareHeader(left, right, options.comparesHeader, all);
    const std::vector<leaf_t> ones = leaves(left), others = leaves(right);
    std::unordered_map<std::string_view, const leaf_t *> rights;
    for (const leaf_t &other : others)
        rights.emplace(other.path, &other);
    for (const leaf_t &one : ones) {
        const auto other = rights.find(one.path);
        const bool hasOther = other != rights.end();
        const bool isKept = hasOther ? isSame(one, *other->second, options.tolerance) : isFilledIn(left, one, right);
        if (!isKept && !isIgnored(one.path, options.ignored))
            all.push_back({one.path, valueOf(left, *one.node), hasOther ? valueOf(right, *other->second->node) : "",
                           true, hasOther});
        if (hasOther)
            rights.erase(other);
    }
    for (const leaf_t &other : others)
        if (rights.contains(other.path) && !isFilledIn(right, other, left) && !isIgnored(other.path, options.ignored))
            all.push_back({other.path, "", valueOf(right, *other.node), false, true});
    return all;
}

} // namespace vek::inspect
