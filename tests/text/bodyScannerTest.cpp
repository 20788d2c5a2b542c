// Bodies and the pairs they are made of.
#include "text/bodyScanner.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace vek;

// A pair is shown as key:value, "~" for what isn't there.
std::string shownPair(const textPair_t &pair) {
    const auto token = [](std::string_view text) { return text.data() == nullptr ? "~" : std::string(text); };
    return token(pair.key) + ':' + token(pair.value);
}

struct case_t {
    std::string body;
    std::vector<std::string> pairs;
    bool isKeyed;
};

void expectPairs(const case_t &one) {
    bodyScanner_t scanner(one.body);
    textPair_t pair;
    std::size_t place = 1; // of the token last read
    std::size_t count = 0;
    const auto caret = [&] { return '\n' + one.body + '\n' + std::string(place, ' ') + '^'; };
    for (; scanner.next(pair); ++count) {
        const char *token = pair.key.data() != nullptr ? pair.key.data() : pair.value.data();
        place = static_cast<std::size_t>(token - one.body.data());
        ASSERT_LT(count, one.pairs.size()) << "surplus pair " << shownPair(pair) << caret();
        ASSERT_EQ(shownPair(pair), one.pairs[count]) << "pair " << count << caret();
    }
    EXPECT_EQ(count, one.pairs.size()) << "pairs are missing behind" << caret();
    EXPECT_EQ(scanner.isKeyed(), one.isKeyed) << caret();
}

const std::vector<case_t> cases = {
    {"", {}, false},
    {"{", {}, false},
    {"{}", {}, false},
    {"{ }", {"~: "}, false},
    {"{x}", {"~:x"}, false},
    {"xyz", {"~:y"}, false},
    {"{A=1;B=2;}", {"A:1", "B:2"}, true},
    {"{A=1;B=2}", {"A:1", "B:2"}, true},
    {"{1,2,}", {"~:1", "~:2"}, false},
    {"{1;2}", {"~:1", "~:2"}, false},
    {"{A=1,2;B=3,}", {"A:1", "~:2", "B:3"}, true},
    {"{A=;B=2;}", {"A:B", "~:2"}, true},
    {"{A==;,1;}", {"A:1"}, true},
    {"{A;=1;B,=2;C;,=}", {"A:1", "B:2", "C:~"}, true},
    {"{A=}", {"A:~"}, true},
    {"{A=1;B}", {"A:1", "~:B"}, true},
    {"{;,;A=1;}", {"A:1"}, true},
    {"{=1;A=2;}", {"~:1", "A:2"}, true},
    {"{=}", {}, true},
    {"{,,;}", {}, false},
    {"{1,,,2}", {"~:1", "~:2"}, false},
    {"{ A = 1 ;\n}", {" A : 1 ", "~:\n"}, true},
    {"{A=\"\";B=\"x;=,{}\";}", {"A:", "B:x;=,{}"}, true},
    {"{\"\",\"\",}", {"~:", "~:"}, false},
    {"{\"\"}", {"~:"}, false},
    {"{\"A\"=1;}", {"A:1"}, true},
    {"{\"a\"b\"c\"d}", {"~:a", "~:b\"c\"d"}, false},
    {"{A=x\"y;z\";}", {"A:x\"y", "~:z\""}, true},
    {"{A=\"x;B=2;}", {"A:x;B=2;"}, true},
    {"{A=\"}", {"A:"}, true},
    {"{1,\"}", {"~:1", "~:"}, false},
    {"{A={1,{2},};B=3;}", {"A:{1,{2},}", "B:3"}, true},
    {"{{A=1;}{B=2;}x,}", {"~:{A=1;}", "~:{B=2;}", "~:x"}, false},
    {"{{A}=1;}", {"{A}:1"}, true},
    {"{A={\"}\";}", {"A:{\"}", "~:;"}, true}, // no quotes inside braces
    {"{A=1;B={2;C=3;}", {"A:1", "B:~"}, true},
    {"{1,{2,3}", {"~:1"}, false},
    {"{={2}", {}, true},
    {"{A=x{y;B=z}w;}", {"A:x{y", "B:z}w"}, true},
    {"{A=};B=2;}", {"A:}", "B:2"}, true},
    {"{{}}}}", {"~:{}", "~:}}"}, false},
    {"{A=\1\2\3\4\5\x80\xff;}", {"A:\1\2\3\4\5\x80\xff"}, true},
    {"{=\"0123456789abcdef\";0123456789abcdef=0123456789abcdefg;}",
     {"~:0123456789abcdef", "0123456789abcdef:0123456789abcdefg"},
     true},
};

TEST(BodyScanner, CutsABodyIntoPairs) {
    for (const case_t &one : cases)
        expectPairs(one);
}

// The scanner looks at sixteen characters at a time where it can.
TEST(BodyScanner, FindsSeparatorsAndBracesWhereverTheyStand) {
    for (std::size_t before = 0; before < 40; ++before)
        for (std::size_t length = 1; length < 40; ++length) {
            const std::string key(before + 1, 'k');
            const std::string value(length, 'v');
            expectPairs({'{' + key + '=' + value + ';' + value + '}', {key + ':' + value, "~:" + value}, true});
            const std::string braced = '{' + key + "{}" + value + '}';
            expectPairs({'{' + key + ',' + braced + value + ",}", {"~:" + key, "~:" + braced, "~:" + value}, false});
        }
}

TEST(BodyScanner, TakesAnyDepthOfBraces) {
    const std::size_t depth = 1000000;
    const std::string open(depth, '{');
    const std::string nested = open + std::string(depth, '}');
    for (const auto &[value, isCut] : {std::pair(nested, true), {open, false}, {nested + nested, true}}) {
        const std::string body = "{A=" + value + ";}";
        bodyScanner_t scanner(body);
        textPair_t pair;
        ASSERT_TRUE(scanner.next(pair));
        EXPECT_EQ(pair.value.size(), isCut ? nested.size() : 0);
    }
}

TEST(BodyScanner, ReadsADueKeyAsItWouldReadAnyPair) {
    for (const case_t &one : cases)
        for (const std::string key : {"A", "B", "0123456789abcdef"}) {
            bodyScanner_t plain(one.body);
            bodyScanner_t due(one.body);
            textPair_t pair;
            for (std::string_view value; plain.next(pair);)
                if (due.nextOf(key, value))
                    EXPECT_EQ(shownPair({key, value}), shownPair(pair)) << one.body;
                else
                    due.next(pair);
            EXPECT_FALSE(due.next(pair)) << one.body;
            EXPECT_EQ(due.isKeyed(), plain.isKeyed()) << one.body;
        }
}

} // namespace
