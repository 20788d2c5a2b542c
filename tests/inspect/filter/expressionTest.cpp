// Expressions that choose messages by their values.
#include "vek/inspect/filter/expression.hpp"

#include "tests/support/messages.hpp"
#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/forms/lineForm.hpp"
#include "vek/inspect/message/valueAt.hpp"

#include <gtest/gtest.h>

namespace {

using namespace vek;
using namespace vek::inspect;
using namespace vek::test;

bool holds(const std::string &text, const tree_t &tree) {
    expression_t expression;
    const std::optional<expressionError_t> error = expression.read(text);
    EXPECT_FALSE(error) << (error ? error->inText(text) : "");
    return !error && expression.holds(tree);
}

TEST(Expression, FindsEveryValueOfTheSamplesByItsPath) {
    for (const sample_t &sample : samples()) {
        const tree_t tree(sample.text);
        for (const leaf_t &leaf : leaves(tree)) {
            const std::string value = valueAt(tree, leaf.path).value_or("");
            if (leaf.node->index > 3 || leaf.node->isBody || value.find('\'') != std::string::npos)
                continue;
            std::string any = leaf.path;
            for (std::size_t at = 0; (at = any.find('[', at)) != std::string::npos; at += 3)
                any.replace(at + 1, any.find(']', at) - at - 1, "*");
            for (const std::string &path : {leaf.path, any}) {
                const std::string same = path + " = '" + value + "'";
                EXPECT_TRUE(holds(path + " and " + same, tree)) << same;
                EXPECT_FALSE(holds("not(" + same + ") or not " + path, tree)) << same;
            }
            EXPECT_FALSE(holds(leaf.path + "!='" + value + "'", tree)) << leaf.path;
        }
    }
}

TEST(Expression, TakesLongTextsAndIdsThatNobodyKnows) {
    // Long texts cost a regular expression neither its stack nor more than a moment.
    for (const std::size_t length : {isInstrumented ? 60U : 300U, isInstrumented ? 600U : 90'000U}) {
        const std::string longText = message(4112, "{MEDIA_NAME=" + std::string(length, 'a') + ";}");
        EXPECT_FALSE(
            holds(length > 600 ? "MEDIA_NAME =~ 'a.*b'" : "MEDIA_NAME =~ '(a|a)*(b|a+)+c$'", tree_t(longText)));
    }
    expression_t expression;
    EXPECT_FALSE(expression.read("ANY_KEY.OF = 3", std::vector{99999})) << "nothing is known of such a message";
    EXPECT_EQ(expression.read("a < 'ä' b")->inText("a\t< 'ä' b"),
              "write \"and\" or \"or\" in front of this\n  a < 'ä' b\n          ^");
}

} // namespace
