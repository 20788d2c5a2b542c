#include "tools/page/core/remedies.hpp"

#include "vek/inspect/change/mending.hpp"
#include "vek/inspect/forms/jsonAppender.hpp"

#include <algorithm>
#include <vector>

namespace vek::page {

using namespace vek::inspect;

namespace {

std::string withRemedies(const tree_t &tree, std::vector<remedy_t> remedies) {
    std::stable_sort(remedies.begin(), remedies.end(),
                     [](const remedy_t &left, const remedy_t &right) { return left.place.start < right.place.start; });
    return applied(tree.text(), withLength(tree, std::move(remedies)));
}

} // namespace

void appendRemedies(std::string &out, const tree_t &tree, std::span<const finding_t> findings) {
    jsonAppender_t json(out);
    json.open('[');
    for (const finding_t &finding : findings)
        if (finding.remedy) {
            json.open('{');
            json.member("problem", static_cast<std::size_t>(&finding - findings.data()));
            json.member("words", inWords(*finding.remedy, tree.text()));
            json.member("certain", finding.remedy->isCertain);
            json.close('}');
        }
    json.close(']');
}

std::string mendedAt(const tree_t &tree, std::size_t number) {
    const std::vector<finding_t> findings = check(tree);
    if (number >= findings.size() || !findings[number].remedy)
        return std::string(tree.text());
    return withRemedies(tree, {*findings[number].remedy});
}

std::string mendedOf(const tree_t &tree, findingCode_t code) {
    std::vector<remedy_t> remedies;
    for (const finding_t &finding : check(tree))
        if (finding.code == code && finding.remedy && finding.remedy->isCertain)
            remedies.push_back(*finding.remedy);
    return remedies.empty() ? std::string(tree.text()) : withRemedies(tree, std::move(remedies));
}

} // namespace vek::page
