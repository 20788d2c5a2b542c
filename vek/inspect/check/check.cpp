// How findings are counted, told and put in order; what is looked for stands in the files beside.
#include "vek/inspect/check/check.hpp"

#include "vek/inspect/check/private/checker.hpp"
#include "vek/inspect/words/nearest.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

using purpose_t = checker_t::purpose_t;

std::vector<finding_t> inOrder(checker_t &checker) {
    checker.run();
    std::vector<finding_t> findings = checker.take();
    std::stable_sort(findings.begin(), findings.end(),
                     [](const auto &one, const auto &other) { return one.place.start < other.place.start; });
    return findings;
}

} // namespace

std::string finding_t::inWords() const {
    return withSuggestion(joined({message, consequence.empty() ? "" : ": ", consequence}), suggestion);
}

std::string finding_t::inShort() const {
    return withSuggestion(message, suggestion);
}

std::vector<finding_t> check(const tree_t &tree) {
    checker_t checker(tree, purpose_t::words);
    return inOrder(checker);
}

// First only where they are: words are made for the first of them alone.
checkResult_t check(const tree_t &tree, const checkOptions_t &options) {
    checker_t counter(tree, purpose_t::places);
    counter.ignore(options.ignored);
    counter.run();
    std::vector<checker_t::spot_t> &spots = counter.spots();
    checkResult_t result;
    for (const checker_t::spot_t &spot : spots)
        ++(spot.severity == severity_t::error ? result.errors : result.warnings);
    if (options.most == 0 || spots.empty())
        return result;
    checker_t checker(tree, purpose_t::words);
    checker.ignore(options.ignored);
    if (spots.size() > options.most) {
        const auto last = spots.begin() + static_cast<std::ptrdiff_t>(options.most - 1);
        std::nth_element(spots.begin(), last, spots.end(),
                         [](const auto &one, const auto &other) { return one.start < other.start; });
        checker.limit(last->start);
    }
    result.findings = inOrder(checker);
    if (result.findings.size() > options.most)
        result.findings.erase(result.findings.begin() + static_cast<std::ptrdiff_t>(options.most),
                              result.findings.end());
    return result;
}

bool isClean(const tree_t &tree, tolerance_t tolerance) {
    checker_t checker(tree, purpose_t::whether);
    checker.tolerate(tolerance);
    checker.run();
    return checker.isClean();
}

bool checker_t::isTolerated(findingCode_t code, severity_t severity) const {
    switch (tolerance_) {
    case tolerance_t::nothing:
        return false;
    case tolerance_t::warnings:
        return severity == warning;
    case tolerance_t::whatIsBuilt:
        break;
    }
    return severity == warning && (code == noStructure || code == missingKey || code == controlCharacter ||
                                   code == lineBreak || code == otherQuotes);
}

bool checker_t::report(findingCode_t code, severity_t severity, place_t place, const node_t *node) {
    if (isTolerated(code, severity) || ignored_[static_cast<std::size_t>(code)])
        return false;
    hasFound_ = true;
    if (purpose_ == purpose_t::places)
        spots_.push_back({place.start, severity});
    if (purpose_ != purpose_t::words || place.start > limit_)
        return false;
    findings_.push_back({code, severity, place, node != nullptr ? tree_.path(*node) : std::string(), {}, {}, {}});
    return true;
}

void checker_t::tell(findingWords_t words) {
    finding_t &finding = findings_.back();
    finding.message = std::move(words.message);
    finding.consequence = std::move(words.consequence);
    finding.suggestion = std::move(words.suggestion);
}

void checker_t::run() {
    checkEnvelope();
    for (const node_t &node : tree_.nodes()) {
        if (isDone())
            return;
        if (node.isBody && node.use == pairUse_t::assigned)
            checkBody(node);
    }
}

} // namespace vek::inspect
