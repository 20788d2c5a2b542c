// checker_t: goes over a tree and collects what departs from the format. Words are only made when they are wanted.
#pragma once

#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/words/words.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

class checker_t {
public:
    /// `stops`: only whether there is a finding that counts is wanted.
    explicit checker_t(const tree_t &tree, bool stops = false, tolerance_t tolerance = tolerance_t::nothing)
        : tree_(tree), envelope_(tree.envelope()), stops_(stops), tolerance_(tolerance) {}

    void run();

    bool isClean() const { return !hasFound_; }
    std::vector<finding_t> take() { return std::move(findings_); }

private:
    using enum findingCode_t;
    using enum severity_t;

    void checkEnvelope();
    void checkNumbers();
    void checkLength();
    void checkEnd();
    void checkBodyShape();

    void checkBody(const node_t &body);
    void checkRecord(const node_t &body, const recordSchema_t &record);
    void checkMissing(const node_t &body, const fieldSchema_t &field);
    void checkCount(const fieldSchema_t &list, const std::vector<const node_t *> &nodes);
    void checkRange(const node_t &body, const fieldSchema_t &list, const std::vector<const node_t *> &nodes);
    bool isCutOff() const;
    void checkBalance(const node_t &node);
    void checkPair(const node_t &parent, const node_t &node);
    bool checkUse(const node_t &parent, const node_t &node);
    void checkUnknown(const node_t &parent, const node_t &node);
    bool isDecimalComma(const node_t &parent, const node_t &node) const;
    bool checkDecimalComma(const node_t &parent, const node_t &node);
    bool checkSpelling(const node_t &node);
    void checkGroup(const node_t &node);
    void checkScalar(const node_t &node);

    bool isTolerated(findingCode_t code, severity_t severity) const;
    bool isDone() const { return stops_ && hasFound_; }

    template <class Words>
    void report(findingCode_t code, place_t place, const node_t *node, Words words) {
        report(code, worstSeverity(code), place, node, std::move(words));
    }

    /// Counts a finding, and asks `words` for its words if they are wanted.
    template <class Words>
    void report(findingCode_t code, severity_t severity, place_t place, const node_t *node, Words words) {
        if (isTolerated(code, severity))
            return;
        hasFound_ = true;
        if (stops_)
            return;
        findingWords_t said = words();
        findings_.push_back({code, severity, place, node != nullptr ? tree_.path(*node) : std::string(),
                             std::move(said.message), std::move(said.consequence), std::move(said.suggestion)});
    }

    const tree_t &tree_;
    const envelopeParts_t &envelope_;
    bool stops_;
    tolerance_t tolerance_;
    bool hasFound_ = false;
    std::size_t suggestions_ = 0; // looked for: a hostile text gets no more than a few
    std::vector<finding_t> findings_;
    std::vector<const node_t *> nodes_; // of the record in hand, by the position of their fields
};

} // namespace vek::inspect
