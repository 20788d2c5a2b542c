// What check() promises, over samples, what the library writes, and damaged texts; the words are in the table of hand
// edits.
#include "vek/inspect/check/check.hpp"
#include "tests/support/texts.hpp"
#include "vek/inspect/change/change.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <deque>
#include <map>
#include <optional>
#include <utility>

namespace {

using namespace vek;
using namespace vek::inspect;
using namespace vek::test;

using values_t = std::map<std::string, const node_t *>;

values_t valuesOf(const tree_t &tree) {
    values_t values;
    for (const node_t &node : tree.nodes())
        if (!node.isBody && node.parent != node_t::none)
            values.emplace(tree.path(node), &node);
    return values;
}

bool isNumber(const node_t &node) {
    return node.field != nullptr && (inspect::isNumber(node.field->kind) || node.field->kind == fieldKind_t::text16);
}

// Whether a person who reads the one value has been told what the other says.
bool saysTheSame(const tree_t &tree, const node_t &node, const tree_t &other, const node_t &kept) {
    const std::string_view one = tree.value(node), two = other.value(kept);
    if (isText(node))
        return unescapedText(one) == unescapedText(two);
    if (!isNumber(node))
        return one == two;
    const double difference = std::abs(readReal(one) - readReal(two));
    return difference <= 1e-6 + 1e-6 * std::abs(readReal(one)); // of a float32 no more is kept
}

// Whether a warning tells that what is read as it stands is written otherwise: a range or an array, or what is empty.
bool isTold(const std::vector<finding_t> &findings, std::string_view path) {
    return std::any_of(findings.begin(), findings.end(), [path](const finding_t &finding) {
        const bool isMilder = finding.code == findingCode_t::listForm || finding.code == findingCode_t::emptyValue;
        return isMilder && path.starts_with(finding.path);
    });
}

// The first value of a text that a host reads otherwise, or not at all, which no finding tells.
std::string firstLost(const tree_t &tree, const std::vector<finding_t> &findings) {
    const std::optional<std::string> kept = asRead(tree);
    if (!kept)
        return {};
    const tree_t other(*kept);
    const values_t left = valuesOf(other);
    for (const auto &[path, node] : valuesOf(tree)) {
        if (isTold(findings, path))
            continue;
        if (!node->hasKey && !node->hasValue)
            return path + " is lost";
        const auto found = left.find(path);
        if (found == left.end() && !node->value.isEmpty())
            return path + " is gone";
        if (found != left.end() && !saysTheSame(tree, *node, other, *found->second))
            return path + " becomes " + std::string(other.value(*found->second));
    }
    return {};
}

bool hasError(const std::vector<finding_t> &findings) {
    return std::any_of(findings.begin(), findings.end(),
                       [](const finding_t &finding) { return finding.severity == severity_t::error; });
}

TEST(Check, IsNeverSilent) {
    std::size_t clean = 0, plain = 0, odd = 0;
    forEachText(rounds(8000), [&](const std::string &text) {
        if (testing::Test::HasFailure())
            return;
        const tree_t tree(text);
        const std::vector<finding_t> findings = check(tree);
        EXPECT_EQ(isClean(tree), findings.empty()) << shown(text);
        EXPECT_EQ(isClean(tree, tolerance_t::warnings), !hasError(findings)) << shown(text);
        for (const finding_t &finding : findings) {
            EXPECT_LE(finding.place.start, finding.place.end) << findingName(finding.code);
            EXPECT_LE(finding.place.end, tree.text().size()) << findingName(finding.code);
            EXPECT_LE(finding.severity, findingKind(finding.code).severity) << findingName(finding.code);
        }
        EXPECT_FALSE(isPlainlyClean(text) && !findings.empty()) << shown(text);
        if (const std::optional<std::string> written = asRead(tree)) { // may have odd characters and counts
            EXPECT_EQ(isPlainlyClean(*written), isClean(tree_t(*written))) << shown(*written);
            (isPlainlyClean(*written) ? plain : odd) += 1;
        }
        checkOptions_t few;
        few.most = 2;
        const checkResult_t some = check(tree, few);
        EXPECT_EQ(some.count(), findings.size()) << shown(text);
        EXPECT_EQ(some.findings.size(), std::min<std::size_t>(2, findings.size()));
        for (std::size_t i = 0; i < some.findings.size(); ++i)
            EXPECT_EQ(some.findings[i].inWords(), findings[i].inWords()) << shown(text);
        if (!hasError(findings)) {
            EXPECT_EQ(firstLost(tree, findings), "") << shown(text);
        }
        if (!findings.empty())
            return;
        ++clean;
        const structure_t structure(text);
        EXPECT_EQ(shown(bodyOf(written(structure.id, structure.address))), shown(std::string(tree.value(tree.body()))));
    });
    EXPECT_GT(clean, samples().size());
    EXPECT_GT(plain, samples().size());
    EXPECT_GT(odd, 0U);
}

TEST(Check, FindsNoErrorInWhatTheLibraryWrites) {
    for (const sample_t &sample : samples())
        for (const finding_t &finding : check(tree_t(sample.text)))
            ADD_FAILURE() << sample.file << ": " << finding.path << ": " << finding.inWords();
    for (const std::int32_t id : bodyIds())
        for (const finding_t &finding : check(tree_t(newMessage(id, 7, 41).value_or(""))))
            EXPECT_NE(finding.severity, severity_t::error) << id << ": " << finding.path << ": " << finding.inWords();
}

// No message has so many keys yet; the next one may.
TEST(Check, AndAllElseTakeARecordOfMoreThan64Keys) {
    constexpr int keys = 130;
    recordSchema_t wide;
    wide.name = "wide_t";
    wide.structure = "Wide";
    wide.about = "Many keys.";
    std::string body = "{";
    std::deque<std::string> names;
    for (int i = 0; i < keys; ++i) {
        fieldSchema_t &field = wide.fields.emplace_back();
        field.key = names.emplace_back("KEY" + std::to_string(i));
        field.position = i;
        field.kind = fieldKind_t::integer32;
        body += joined({field.key, "=", std::to_string(i), ";"});
    }
    auto &row = const_cast<messageSchema_t &>(*schema().find(4112)); // an element of a list, which is no constant
    const recordSchema_t *const own = std::exchange(row.record, &wide);
    const std::string text = sealed(4112, 7, 41, body + "}");
    const tree_t tree(text);
    EXPECT_TRUE(check(tree).empty());
    std::string json;
    appendJson(json, tree);
    EXPECT_EQ(readJson(json).text, text);
    for (const fieldSchema_t &field : wide.fields) {
        const std::string pair = joined({field.key, "=", std::to_string(field.position), ";"});
        const std::size_t at = body.find(pair);
        EXPECT_EQ(valueAt(tree, field.key), std::to_string(field.position));
        const auto withPair = [&](std::string_view other) {
            return sealed(4112, 7, 41, std::string(body).replace(at, pair.size(), other) + "}");
        };
        EXPECT_EQ(changed(tree, field.key, "7777").text, withPair(joined({field.key, "=7777;"})));
        for (const auto &[other, code] : {std::pair(std::string(), findingCode_t::missingKey),
                                          std::pair(pair + pair, findingCode_t::duplicateKey)}) {
            const std::string damaged = withPair(other);
            const std::vector<finding_t> findings = check(tree_t(damaged));
            ASSERT_EQ(findings.size(), 1U) << damaged;
            EXPECT_EQ(findings[0].code, code);
        }
    }
    row.record = own;
}

// In proportion to the text: sixteen times as much may take no more than a hundred times as long.
TEST(Check, TakesLinearTime) {
    const auto hostile = [](std::size_t size, std::string_view piece, std::string_view front) {
        std::string body(front);
        while (body.size() < size)
            body += piece;
        return message(4101, "{" + body + "}");
    };
    const auto seconds = [](const std::string &text) {
        const auto start = std::chrono::steady_clock::now();
        checkOptions_t options;
        options.most = 20;
        const checkResult_t result = check(tree_t(text), options);
        EXPECT_LE(result.findings.size(), 20U);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    constexpr std::size_t small = 1 << 16, large = 1 << 20;
    constexpr std::string_view pieces[][2] = {
        {"x;", ""}, {"{},", "ARRAY_CASSETTE={"}, {"{", ""}, {"x\xCE\x91=1;", ""}, {"{NAME=1,2;},", "ARRAY_CASSETTE={"}};
    for (const auto &[piece, front] : pieces) {
        double ratio = 1000;
        for (int attempt = 0; attempt < 5 && ratio > 100; ++attempt) // what else runs may take the processor away
            ratio = seconds(hostile(large, piece, front)) / std::max(seconds(hostile(small, piece, front)), 0.001);
        EXPECT_LE(ratio, 100) << piece;
    }
}

} // namespace
