#include "fuzz/bodyTree.hpp"

#include <algorithm>

namespace vek::test {

namespace {

constexpr int deepest = 40;

std::string token(std::string_view &rest) {
    const std::size_t end = std::min(rest.find_first_of("=;,{}"), rest.size());
    std::string taken(rest.substr(0, end));
    rest.remove_prefix(end);
    return taken;
}

bool skip(std::string_view &rest, char c) {
    if (!rest.starts_with(c))
        return false;
    rest.remove_prefix(1);
    return true;
}

void readGroup(std::string_view &rest, bodyTree_t &group, int depth) {
    group.isGroup = true;
    while (!rest.empty() && !skip(rest, '}')) {
        bodyTree_t &pair = group.pairs.emplace_back();
        pair.value = token(rest);
        if (skip(rest, '=')) {
            pair.key.swap(pair.value);
            pair.value = token(rest);
        }
        if (depth < deepest && skip(rest, '{'))
            readGroup(rest, pair, depth + 1);
        else if (rest.starts_with('{'))
            rest.remove_prefix(1);
        if (!skip(rest, ';'))
            skip(rest, ',');
    }
}

void append(std::string &out, const bodyTree_t &pair) {
    if (!pair.key.empty())
        out.append(pair.key).append("=");
    if (!pair.isGroup) {
        out += pair.value;
        return;
    }
    out += '{';
    for (const bodyTree_t &one : pair.pairs) {
        append(out, one);
        out += one.key.empty() ? ',' : ';';
    }
    out += '}';
}

} // namespace

bodyTree_t treeOf(std::string_view body) {
    bodyTree_t top;
    skip(body, '{');
    readGroup(body, top, 0);
    return top;
}

std::string bodyOf(const bodyTree_t &group) {
    std::string text;
    append(text, group);
    return text;
}

} // namespace vek::test
