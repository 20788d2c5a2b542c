// Makes the nodes of a tree, body by body, in the order in which they come to stand in the array.
#pragma once

#include "vek/inspect/message/tree.hpp"
#include "vek/text/tolerantScanner.hpp"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vek::inspect {

class treeBuilder_t {
public:
    explicit treeBuilder_t(tree_t &tree) : tree_(tree), nodes_(tree.nodes_) {}

    void build();

private:
    /// Unknown braces are followed to this depth.
    static constexpr std::uint16_t unknownDepth = 16;

    std::string_view inside(const node_t &node) const;
    void addPairs(std::uint32_t parent);
    node_t pairNode(const textPair_t &pair, const char *start, const char *end, const char *innerEnd) const;
    place_t place(const char *start, const char *end) const;

    void assignPairs(std::uint32_t parent);
    void assignToRecord(node_t &parent, const recordSchema_t &record);
    void assignToList(node_t &parent, const bodyTarget_t &target);
    void countUnknown(node_t &parent);
    void decideBody(const node_t &parent, node_t &node) const;

    std::uint32_t countOf(const node_t &node);

    tree_t &tree_;
    std::vector<node_t> &nodes_;
    std::unordered_map<std::string_view, std::uint32_t> seen_; // of the body in hand: how often a key was met
    std::uint32_t withoutKey_ = 0;                             // and how many values have none
    std::vector<char> matched_; // of the record or list in hand: which fields or elements have a pair
};

} // namespace vek::inspect
