// Bodies and the pairs they are made of.
#include "vek/text/bodyScanner.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace vek;

// A pair is shown as key:value, "~" for what isn't there.
std::string shownPair(const textPair_t &pair) {
    const auto token = [](std::string_view text) { return text.data() == nullptr ? "~" : std::string(text); };
    return token(pair.key) + ':' + token(pair.value);
}

// Scans a body; `expected` are its pairs with " | " in front of each.
void expectPairs(const std::string &body, const std::string &expected, bool isKeyed) {
    bodyScanner_t scanner(body);
    textPair_t pair;
    std::string pairs;
    while (scanner.next(pair))
        pairs += " | " + shownPair(pair);
    EXPECT_EQ(pairs, expected) << body;
    EXPECT_EQ(scanner.isKeyed(), isKeyed) << body;
}

// Written as "body | pair | pair".
const std::vector<std::string> keyedBodies = {"{A=1;B=2;} | A:1 | B:2",
                                              "{A=1;B=2} | A:1 | B:2",
                                              "{A=1,2;B=3,} | A:1 | ~:2 | B:3",
                                              "{A=;B=2;} | A:B | ~:2",
                                              "{A==;,1;} | A:1",
                                              "{A;=1;B,=2;C;,=} | A:1 | B:2 | C:~",
                                              "{A=} | A:~",
                                              "{A=1;B} | A:1 | ~:B",
                                              "{;,;A=1;} | A:1",
                                              "{=1;A=2;} | ~:1 | A:2",
                                              "{=}",
                                              "{ A = 1 ;\n} |  A : 1  | ~:\n",
                                              "{A=\"\";B=\"x;=,{}\";} | A: | B:x;=,{}",
                                              "{\"A\"=1;} | A:1",
                                              "{A=x\"y;z\";} | A:x\"y | ~:z\"",
                                              "{A=\"x;B=2;} | A:x;B=2;",
                                              "{A=\"} | A:",
                                              "{A={1,{2},};B=3;} | A:{1,{2},} | B:3",
                                              "{{A}=1;} | {A}:1",
                                              "{A={\"}\";} | A:{\"} | ~:;", // no quotes in braces
                                              "{A=1;B={2;C=3;} | A:1 | B:~",
                                              "{={2}",
                                              "{A=x{y;B=z}w;} | A:x{y | B:z}w",
                                              "{A=};B=2;} | A:} | B:2",
                                              "{A=\1\2\3\4\5\x80\xff;} | A:\1\2\3\4\5\x80\xff",
                                              "{=\"0123456789abcdef\";A=1;} | ~:0123456789abcdef | A:1"};
const std::vector<std::string> positionalBodies = {"",
                                                   "{",
                                                   "{}",
                                                   "{x} | ~:x",
                                                   "xyz | ~:y",
                                                   "{ } | ~: ",
                                                   "{1,2,} | ~:1 | ~:2",
                                                   "{1;2} | ~:1 | ~:2",
                                                   "{,,;}",
                                                   "{1,,,2} | ~:1 | ~:2",
                                                   "{\"\",\"\",} | ~: | ~:",
                                                   "{\"\"} | ~:",
                                                   "{\"a\"b\"c\"d} | ~:a | ~:b\"c\"d",
                                                   "{1,\"} | ~:1 | ~:",
                                                   "{{A=1;}{B=2;}x,} | ~:{A=1;} | ~:{B=2;} | ~:x",
                                                   "{1,{2,3} | ~:1",
                                                   "{{}}}} | ~:{} | ~:}}"};

TEST(BodyScanner, CutsABodyIntoPairs) {
    for (const std::vector<std::string> *bodies : {&keyedBodies, &positionalBodies})
        for (const std::string &one : *bodies) {
            const std::size_t pairs = std::min(one.find(" | "), one.size());
            expectPairs(one.substr(0, pairs), one.substr(pairs), bodies == &keyedBodies);
        }
}

// The scanner looks at sixteen characters at a time where it can.
TEST(BodyScanner, FindsSeparatorsAndBracesWhereverTheyStand) {
    for (std::size_t before = 0; before < 40; ++before)
        for (std::size_t length = 1; length < 40; ++length) {
            const std::string key(before + 1, 'k');
            const std::string value(length, 'v');
            expectPairs('{' + key + '=' + value + ';' + value + '}', " | " + key + ':' + value + " | ~:" + value, true);
            const std::string braced = '{' + key + "{}" + value + '}';
            expectPairs('{' + key + ',' + braced + value + ",}", " | ~:" + key + " | ~:" + braced + " | ~:" + value,
                        false);
        }
}

TEST(BodyScanner, ReadsADueKeyAsItWouldReadAnyPair) {
    for (const std::string &one : keyedBodies)
        for (const std::string key : {"A", "B"}) {
            const std::string body = one.substr(0, one.find(" | "));
            bodyScanner_t plain(body);
            bodyScanner_t due(body);
            textPair_t pair;
            for (std::string_view value; plain.next(pair);)
                if (due.nextOf(key, value))
                    EXPECT_EQ(shownPair({key, value}), shownPair(pair)) << body;
                else
                    due.next(pair);
            EXPECT_FALSE(due.next(pair)) << body;
            EXPECT_TRUE(due.isKeyed()) << body;
        }
}

} // namespace
