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
    /// What is wanted of the findings.
    enum class purpose_t : std::uint8_t { words, places, whether };

    /// Where a finding is, and how severe.
    struct spot_t {
        std::uint32_t start;
        severity_t severity;
    };

    checker_t(const tree_t &tree, purpose_t purpose) : tree_(tree), envelope_(tree.envelope()), purpose_(purpose) {}

    /// What does not count.
    void tolerate(tolerance_t tolerance) { tolerance_ = tolerance; }
    void ignore(const std::bitset<findingCodeCount> &codes) { ignored_ = codes; }
    /// The last place of a finding that is wanted.
    void limit(std::uint32_t place) { limit_ = place; }

    void run();

    bool isClean() const { return !hasFound_; }
    std::vector<spot_t> &spots() { return spots_; }
    std::vector<finding_t> take() { return std::move(findings_); }

private:
    using enum findingCode_t;
    using enum severity_t;

    void checkEnvelope();
    void checkFront();
    void checkId();
    void checkNumbers();
    void checkLength();
    void checkEnd();
    void checkBodyShape();
    bool lacksId() const;
    bool isLengthProof(std::string_view id, std::size_t size) const;
    std::size_t surplusBlanks() const;
    bool isLengthWithoutLineBreaks() const;
    bool isCutOff() const;
    bool isCutInHead() const;
    std::size_t missingBraces() const;
    std::string whatHostTakes() const;

    void checkBody(const node_t &body);
    void gather(const node_t &body, const recordSchema_t &record);
    const messageSchema_t *messageWithKeys(const node_t &body) const;
    bool isOnlyWithKeys(const messageSchema_t &message) const;
    bool checkOtherId(const node_t &body);
    void checkRecord(const node_t &body, const recordSchema_t &record);
    void checkMissing(const node_t &body, const std::vector<const fieldSchema_t *> &fields);
    void checkCount(const fieldSchema_t &list);
    void checkRoom(const fieldSchema_t &list, std::int32_t count);
    void checkRange(const node_t &body, const fieldSchema_t &list);
    void checkBalance(const node_t &node);
    void checkPair(const node_t &parent, const node_t &node);
    bool checkUse(const node_t &parent, const node_t &node);
    void checkUnknown(const node_t &parent, const node_t &node);
    void checkStray(const node_t &parent, const node_t &node);
    /// The longest key of a record, which may be null, that a text begins or ends with.
    static const fieldSchema_t *keyAt(const recordSchema_t *record, std::string_view text, bool isFront);
    void reportSwallowed(const node_t &node, std::string_view andMore);
    bool checkJoined(const node_t &parent, const node_t &node, const node_t &behind);
    bool isDecimalComma(const node_t &parent, const node_t &node) const;
    bool checkDecimalComma(const node_t &parent, const node_t &node);
    bool checkSpelling(const node_t &parent, const node_t &node);
    void checkSeparators(const node_t &parent, const node_t &node);
    void checkGroup(const node_t &node);
    void checkScalar(const node_t &node);

    const node_t *next(const node_t &parent, const node_t &node) const;
    const node_t *previous(const node_t &parent, const node_t &node) const;
    std::string_view behindValue(const node_t &node) const;
    bool isSurplusBrace(const node_t &node) const;
    bool lacksBraces(const node_t &node) const;
    void tellWithStrays(const node_t &parent, const node_t &node);
    bool hasSwallowed(const node_t &node) const;
    bool isExplained(const fieldSchema_t &field) const;
    void explain(const fieldSchema_t *field);

    bool isTolerated(findingCode_t code, severity_t severity) const;
    bool isDone() const { return purpose_ == purpose_t::whether && hasFound_; }

    /// Counts a finding. Whether its words are wanted: then tell() follows.
    bool report(findingCode_t code, severity_t severity, place_t place, const node_t *node = nullptr);
    bool report(findingCode_t code, place_t place, const node_t *node = nullptr) {
        return report(code, findingKind(code).severity, place, node);
    }
    void tell(findingWords_t words);
    void tell(std::string message, std::string consequence, std::string suggestion = {}) {
        tell(findingWords_t{std::move(message), std::move(consequence), std::move(suggestion)});
    }

    /// What puts the finding right that was told last.
    void mend(place_t place, std::string text, bool isCertain) {
        findings_.back().remedy = {place, std::move(text), isCertain};
    }
    bool isMissing(const fieldSchema_t &field) const;
    bool isPlainly(const node_t &parent, const node_t &node, const fieldSchema_t &meant) const;
    void mendBlanks();
    void mendList(const node_t &node);
    void mendHead();

    const tree_t &tree_;
    const envelopeParts_t &envelope_;
    purpose_t purpose_;
    tolerance_t tolerance_ = tolerance_t::nothing;
    std::bitset<findingCodeCount> ignored_;
    std::uint32_t limit_ = UINT32_MAX;
    bool hasFound_ = false;
    bool isLengthTold_ = false;   // by what is told of the id
    std::size_t suggestions_ = 0; // looked for: a hostile text gets no more than a few
    std::vector<finding_t> findings_;
    std::vector<spot_t> spots_;

    // Of the body in hand:
    std::vector<const node_t *> nodes_; // that are read into the record's fields, by position
    std::vector<char> explained_;       // fields that are not there for a reason that is told
    bool isTorn_ = false;               // a brace or quote without its other one has taken the rest
    std::uint32_t told_ = 0;            // the last node of the body that belongs to a finding which was told
};

} // namespace vek::inspect
