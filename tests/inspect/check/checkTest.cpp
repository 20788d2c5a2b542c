// What check() finds: bad texts with the finding under the place it is at; and that nothing is found only where nothing
// changes.
#include "vek/inspect/check/check.hpp"
#include "tests/support/texts.hpp"
#include "vek/inspect/change/seal.hpp"

#include <gtest/gtest.h>

namespace {

using namespace vek;
using namespace vek::inspect;
using namespace vek::test;

TEST(Check, FindsNothingOnlyWhereReadingAndWritingChangeNothing) {
    std::size_t clean = 0;
    forEachText(rounds(60000), [&clean](const std::string &text) {
        if (testing::Test::HasFailure())
            return;
        const tree_t tree(text);
        const std::vector<finding_t> findings = check(tree);
        EXPECT_EQ(isClean(tree), findings.empty()) << shown(text);
        for (const finding_t &finding : findings) {
            EXPECT_LE(finding.place.start, finding.place.end) << findingName(finding.code);
            EXPECT_LE(finding.place.end, tree.text().size()) << findingName(finding.code);
            EXPECT_EQ(findingNamed(findingName(finding.code)), finding.code);
        }
        if (!findings.empty())
            return;
        ++clean;
        const structure_t structure(text);
        EXPECT_EQ(shown(bodyOf(written(structure.id, structure.address))), shown(std::string(tree.value(tree.body()))));
    });
    EXPECT_GT(clean, samples().size());
}

TEST(Check, FindsNothingInTheSamples) {
    for (const sample_t &sample : samples())
        for (const finding_t &finding : check(tree_t(sample.text)))
            ADD_FAILURE() << sample.file << ": " << finding.path << ": " << finding.inWords();
}

} // namespace
