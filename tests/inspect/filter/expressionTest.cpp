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

TEST(Expression, ComparesAndJoins) {
    const std::string focus = message(4112, "{MEDIA_NAME=Violet (new) and 0.3;FOCUS_VALUE=-7.5e0;}"),
                      status = message(4161, "{STATUS=3;NUM_OF_MESSAGES=2;MSGS={Focus set,Cassette empty,};}");
    const tree_t focusTree(focus), statusTree(status);
    const std::pair<const char *, const char *> cases[] = {
        // what is asked, and of which of the two messages it holds
        {"FOCUS_VALUE", "f"},
        {"!FOCUS_VALUE", "s"},
        {"FOCUS_VALUE == -7.50", "f"},
        {"FOCUS_VALUE <= -7.5 && FOCUS_VALUE >= -7.5", "f"},
        {"FOCUS_VALUE < -7.5 || FOCUS_VALUE > -7.5", ""},
        {"FOCUS_VALUE != 1", "f"}, // of what is not there nothing holds
        {"not FOCUS_VALUE = 1", "fs"},
        {"STATUS=3 or FOCUS_VALUE=1 and FOCUS_VALUE=2", "s"},
        {"(STATUS=3 or FOCUS_VALUE=1) and FOCUS_VALUE=2", ""},
        {"NOT (STATUS=3 AND @seq>=41)", "f"},
        {"@id=4112 and @echo=7 and @length>10", "f"},
        {"MEDIA_NAME ~ (new)", "f"},
        {"(MEDIA_NAME ~ (new))", "f"},
        {"MEDIA_NAME ~ '(new) and'", "f"},
        {"MEDIA_NAME = \"Violet (new) and 0.3\"", "f"},
        {"MEDIA_NAME =~ ^Vi(o|a)let.*[0-9]$", "f"},
        {"MEDIA_NAME =~ '^violet'", ""},
        {"MEDIA_NAME < W and MEDIA_NAME > V", "f"},
        {"MSGS[*] = Cassette empty", "s"},
        {"MSGS[0] = Cassette empty", ""},
        {"MSGS[1] ~ empty and not MSGS[2]", "s"},
        {"MSGS[*] != Focus set", "s"},
    };
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(std::string(holds(text, focusTree) ? "f" : "") + (holds(text, statusTree) ? "s" : ""), expected)
            << text;
    // Long texts cost a regular expression neither its stack nor more than a moment.
    for (const std::size_t length : {isInstrumented ? 60U : 300U, isInstrumented ? 600U : 90'000U}) {
        const std::string longText = message(4112, "{MEDIA_NAME=" + std::string(length, 'a') + ";}");
        EXPECT_FALSE(
            holds(length > 600 ? "MEDIA_NAME =~ 'a.*b'" : "MEDIA_NAME =~ '(a|a)*(b|a+)+c$'", tree_t(longText)));
    }
}

TEST(Expression, SaysWhatCanNotBe) {
    struct case_t {
        std::string text;
        std::size_t start, end;
        std::string words; ///< or their beginning
        std::vector<std::int32_t> ids = {};
    };
    const case_t cases[] = {
        {"FOKUS_VALUE>3 and @seq>2", 0, 11, "no message has FOKUS_VALUE; did you mean FOCUS_VALUE?"},
        {"@seq>2 and STATUS=1", 11, 17, "no message of the chosen ids has STATUS; deviceStatus_t has STATUS", {4112}},
        {"STATUS[0]=3", 0, 9, "no message has STATUS[0]; deviceStatus_t has STATUS"},
        {"NAME.TYPE", 0, 9, "no message has NAME.TYPE; "},
        {"FOCUS_VALUE>abc", 12, 15, "\"abc\" is no number", {4112}},
        {"FOCUS_VALUE=3,5", 12, 15, "\",5\" stands behind the number 3", {4112}},
        {"not @seq = x", 11, 12, "@seq is a number, which \"x\" is not"},
        {"VERSION.TYPE=mediaFlim_e", 13, 24, "no media type is called \"mediaFlim_e\"; did you mean mediaFilm_e?"},
        {"VERSION.TYPE>mediaFilm_e", 13, 24, "VERSION.TYPE has no order: compare it with = or !="},
        {"MSGS=empty", 5, 10, "MSGS is a list: write MSGS[*] for any of its elements"},
        {"@number=1", 0, 7, "there are @id, @echo, @seq and @length"},
        {"", 0, 1, "a path is missing here"},
        {"FOCUS_VALUE>", 12, 13, "a value is missing here; write '' for an empty one"},
        {"A[=1", 0, 2, "this is no path"},
        {"MEDIA_NAME='x", 11, 13, "this quote is not closed"},
        {"MEDIA_NAME=~(", 12, 13, "this is no regular expression"},
        {"(@seq=1", 0, 1, "this bracket is not closed"},
        {"@seq='1')", 8, 9, "this bracket was not opened"},
        {"@seq='1' x", 9, 10, "write \"and\" or \"or\" in front of this"},
        {"MEDIA_NAME=a FOCUS_VALUE>3", 24, 25, "put a value with this in quotes, "},
        {std::string(1000, '('), 65, 66, "the brackets are too deep"},
    };
    for (const case_t &one : cases) {
        expression_t expression;
        const std::optional<expressionError_t> error = expression.read(one.text, one.ids);
        ASSERT_TRUE(error) << one.text;
        EXPECT_TRUE(error->words.starts_with(one.words)) << one.text << ": " << error->words;
        EXPECT_EQ(error->place.start, one.start) << one.text << ": " << error->words;
        EXPECT_EQ(error->place.end, one.end) << one.text << ": " << error->words;
    }
    expression_t expression;
    EXPECT_FALSE(expression.read("ANY_KEY.OF = 3", std::vector{99999})) << "nothing is known of such a message";
    EXPECT_EQ(expression.read("a < 'ä' b")->inText("a\t< 'ä' b"),
              "write \"and\" or \"or\" in front of this\n  a < 'ä' b\n          ^");
}

} // namespace
