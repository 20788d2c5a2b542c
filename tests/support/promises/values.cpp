#include "tests/support/promises/values.hpp"

#include "tests/support/decimalPoint.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/message/scalars.hpp"

#include <cstdlib>

namespace vek::test {

using namespace vek::inspect;

namespace {

bool isRealKind(fieldKind_t kind) {
    return kind == fieldKind_t::float64 || kind == fieldKind_t::float32 || kind == fieldKind_t::pixels;
}

bool isIntegerKind(const node_t &node) {
    return node.isCode || node.field->kind == fieldKind_t::integer32 || node.field->kind == fieldKind_t::integer16;
}

} // namespace

std::string errorsOf(const tree_t &tree) {
    std::string all;
    for (const finding_t &finding : check(tree))
        if (finding.severity == severity_t::error)
            all += finding.path + ": " + finding.inWords() + "\n";
    return all;
}

bool isValue(const tree_t &tree, const node_t &node, const std::string &given) {
    if (node.field == nullptr)
        return false;
    if (node.isBody)
        return wideText(tree, node).value_or(std::string(tree.value(node))) == given || tree.value(node) == given;
    const std::string read = scalarText(tree, node);
    if (isIntegerKind(node))
        return std::strtoll(given.c_str(), nullptr, 10) == std::strtoll(read.c_str(), nullptr, 10);
    if (node.field->kind == fieldKind_t::float32)
        return static_cast<float>(toDouble(given)) == static_cast<float>(toDouble(read));
    if (isRealKind(node.field->kind))
        return toDouble(given) == toDouble(read);
    return given == read;
}

bool isWithin(std::string_view path, std::string_view group) {
    return path.starts_with(group) &&
           (path.size() == group.size() || path[group.size()] == '.' || path[group.size()] == '[' || group.empty());
}

} // namespace vek::test
