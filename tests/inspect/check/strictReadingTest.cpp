// Strict reading beside the check: what has an error is refused, what is refused has one or is told to be unclear, and
// what the library writes is taken in one go.
#include "tests/support/messages.hpp"
#include "tests/support/texts.hpp"
#include "vek/api/vekParams2ASCII.hpp"
#include "vek/inspect/check/check.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using namespace vek;
using namespace vek::test;
using inspect::findingCode_t;

// From this kind of finding on; those of the envelope are in front.
bool hasError(const std::string &text, findingCode_t first) {
    const auto findings = inspect::check(inspect::tree_t(text));
    return std::any_of(findings.begin(), findings.end(), [first](const inspect::finding_t &finding) {
        return finding.severity == inspect::severity_t::error && finding.code >= first;
    });
}

// How many texts of each kind there were, so that none is missed.
struct seen_t {
    int taken = 0, ordinary = 0, refused = 0;
};

template <std::int32_t Id>
void expectAsChecked(const std::string &text, seen_t &seen) {
    problem_t problem;
    const auto all = parse<Id>(text, problem);
    if (all == nullptr)
        return;
    const auto read = parseStrictly<Id>(text, problem);
    if (read == nullptr) {
        ++seen.refused;
        EXPECT_LE(problem.offset, text.size());
        const bool isMore = problem.code == problemCode_t::unclear || problem.code == problemCode_t::noBraces;
        EXPECT_TRUE(isMore || hasError(text, findingCode_t::noStartMarker)) << problem.text << '\n' << shown(text);
        return;
    }
    ++seen.taken;
    EXPECT_FALSE(hasError(text, findingCode_t::bodyShape)) << shown(text);
    const std::string_view message = withoutNul(text);
    const strictReading_t &strict = detail::strictReadingOf<structureOf_t<Id>>();
    const auto ordinary = detail::readStrictly<Id>(text, longestReadableMessage);
    seen.ordinary += isOrdinaryMessage<Id>(message) && ordinary != nullptr ? 1 : 0;
    EXPECT_EQ(strict.first(message).text, "") << shown(text); // both ways to judge agree
    const std::string once = printLossy<Id>(*read).str();
    EXPECT_EQ(bodyOf(once), bodyOf(printLossy<Id>(*all).str()));
    const auto again = parseStrictly<Id>(once, problem);
    ASSERT_NE(again, nullptr) << problem.text << '\n' << shown(once);
    EXPECT_EQ(bodyOf(printLossy<Id>(*again).str()), bodyOf(once));
}

TEST(StrictReadingTest, RefusesWhatTheCheckCallsAnErrorAndNothingElse) {
    seen_t seen;
    forEachText(rounds(60000), [&](const std::string &text) {
        const std::int32_t id = messageId(text);
        messages_t::forEach([&]<class Message>(Message) {
            if (Message::id == id)
                expectAsChecked<Message::id>(text, seen);
        });
    });
    EXPECT_GT(seen.taken, rounds(2000));
    EXPECT_GT(seen.ordinary, rounds(500));
    EXPECT_GT(seen.refused, rounds(5000));
}

} // namespace
