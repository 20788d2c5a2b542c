// The calls that the page's script makes: what it shows, mends and puts into another form comes back whole.
#include "tests/support/messages.hpp"
#include "vek/inspect/check/check.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

extern "C" {
char *pageInput(std::size_t size);
const char *pageResult();
std::size_t pageResultSize();
std::int32_t pageView(std::size_t size);
std::int32_t pageSet(std::size_t textSize, std::size_t pathSize, std::size_t valueSize, std::int32_t isQuoted);
std::int32_t pageSeal(std::size_t size);
std::int32_t pageForm(std::size_t size, std::int32_t form);
std::int32_t pageReadForms(std::size_t size);
}

namespace {

using namespace vek;

// Puts a call's bytes where the call takes them.
std::size_t given(const std::string &bytes) {
    std::copy(bytes.begin(), bytes.end(), pageInput(bytes.size()));
    return bytes.size();
}

std::string result() {
    return {pageResult(), pageResultSize()};
}

TEST(PageCore, EachFormGivesBackTheMessage) {
    for (const test::sample_t &sample : test::samples())
        for (std::int32_t form = 0; form < 3; ++form) {
            ASSERT_EQ(pageForm(given(sample.text), form), 1);
            ASSERT_EQ(pageReadForms(given(result())), 1) << sample.file << ", form " << form << ": " << result();
            EXPECT_EQ(result(), sample.text + '\n') << "form " << form;
        }
}

// The view tells each problem that check() finds, and sealing leaves none.
TEST(PageCore, SealsWhatItShowsAsDamaged) {
    std::string damaged = test::message(4112, "{MEDIA_NAME=Violet;FOCUS_VALUE=1.500000;}");
    damaged.insert(damaged.find("let;"), "xx"); // longer than it says
    const inspect::tree_t tree(damaged);
    const std::vector<inspect::finding_t> findings = inspect::check(tree);
    ASSERT_FALSE(findings.empty());
    ASSERT_EQ(pageView(given(damaged)), 1);
    for (const inspect::finding_t &finding : findings)
        EXPECT_NE(result().find(inspect::findingName(finding.code)), std::string::npos) << result();

    // A value is set in what sealing gives.
    const std::string path = "FOCUS_VALUE", value = "2.5";
    given(damaged + path + value);
    ASSERT_EQ(pageSet(damaged.size(), path.size(), value.size(), 0), 1) << result();
    const std::string changed = result();
    EXPECT_TRUE(inspect::check(inspect::tree_t(changed)).empty()) << changed;
    EXPECT_NE(changed.find("{MEDIA_NAME=Vioxxlet;FOCUS_VALUE=2.500000;}"), std::string::npos) << changed;
    ASSERT_EQ(pageSeal(given(changed)), 1);
    EXPECT_EQ(result(), changed);

    // In quotes it is whole or refused.
    const std::string name = "MEDIA_NAME";
    for (const std::string quoted : {R"("a\x62")", R"("a)", R"("a"b)", "a", ""}) {
        given(changed + name + quoted);
        EXPECT_EQ(pageSet(changed.size(), name.size(), quoted.size(), 1) == 1, quoted == R"("a\x62")") << quoted;
    }
}

} // namespace
