// What the foundation does without memory, and how often it asks for some.

#include "../reports.hpp"
#include "failingMemory.hpp"
#include "vek_std/std_objCltn/objCltn.hpp"
#include "vek_std/std_sys/hashVtab.hpp"
#include "vek_std/std_sys/vek_stringStream.hpp"

#include <gtest/gtest.h>

#include <new>
#include <sstream>
#include <string>
#include <vector>

namespace {

using vek::string_t;

constexpr char outOfMemory[] = "\nstring_t : VEK_ENOMEM ; called from vek_std/std_sys/vek_string,598\n";

struct change_t {
    const char *name;
    void (*change)(string_t &); // of a text of 300 characters, which the string shares
};

const string_t source(300, 's');
std::istringstream stream;

const change_t changes[] = {
    {"count and character", [](string_t &text) { text = string_t(100, 'x'); }},
    {"short text", [](string_t &text) { text = "short"; }},
    {"view", [](string_t &text) { text = string_t(text(5, 200)); }},
    {"deep copy", [](string_t &text) { text = text.deepCopy(); }},
    {"append", [](string_t &text) { text.append("x"); }},
    {"append growing", [](string_t &text) { text.append("x").append(nullptr, 200); }},
    {"own text", [](string_t &text) { text.prepend(text.c_str(), text.length()); }},
    {"own text when private", [](string_t &text) { text.append("x").append(text.c_str()); }},
    {"shrinking", [](string_t &text) { text.append("x").replace(0, 200, "", 0); }},
    {"shrinking to the room inside", [](string_t &text) { text.replace(1, 290, "x", 1); }},
    {"growing out of the room inside", [](string_t &text) { (text = "short").append(nullptr, 60); }},
    {"concatenation", [](string_t &text) { text = (text + "x") + ("y" + text); }},
    {"case", [](string_t &text) { text.toUpper(); }},
    {"case of a view", [](string_t &text) { text(3, 4).toUpper(); }},
    {"character", [](string_t &text) { text[2] = 'x'; }},
    {"character of a view", [](string_t &text) { text(1, 9)[2] = 'x'; }},
    {"view assigned", [](string_t &text) { text(3, 4) = source; }},
    {"reading", [](string_t &text) { readLine(stream, text); }},
};

void expectNullBody(const string_t &text) {
    EXPECT_EQ(text.length(), 0U);
    EXPECT_EQ(text.capacity(), 0U);
    EXPECT_STREQ(text.c_str(), "");
}

/// Runs the change with one failure, at the n-th allocation, or with all from there on. False when none was left to
/// fail.
bool fails(const change_t &one, std::size_t n, bool andAllLater, const std::string &changed) {
    string_t text = source;
    stream.clear();
    stream.str(std::string(500, 'r') + "\n");
    std::size_t failures = 0;
    const std::string reports = reported([&] {
        memory::failAt(n, andAllLater);
        one.change(text);
        failures = memory::stopFailing();
    });

    std::string expectedReports;
    for (std::size_t i = 0; i < failures; ++i)
        expectedReports += outOfMemory;
    EXPECT_EQ(reports, expectedReports);
    if (failures == 0) {
        EXPECT_EQ(text.c_str(), changed);
        return false;
    }
    EXPECT_TRUE(!andAllLater || text.length() == 0);
    string_t copy = text; // usable: it tries for memory again
    const std::string before = text.c_str();
    EXPECT_EQ(copy.append("again").c_str(), before + "again");
    return true;
}

TEST(stringMemory, everyFailureLeavesANullBodyAndOneReport) {
    for (const change_t &one : changes) {
        SCOPED_TRACE(one.name);
        string_t changed = source;
        stream.clear();
        stream.str(std::string(500, 'r') + "\n");
        one.change(changed);
        const std::string expected = changed.c_str();
        for (const bool andAllLater : {false, true}) {
            const std::size_t blocks = memory::liveBlocks();
            std::size_t n = 1;
            while (fails(one, n, andAllLater, expected))
                ++n;
            EXPECT_GT(n, 1U);
            EXPECT_EQ(memory::liveBlocks(), blocks);
        }
    }
    EXPECT_EQ(source.length(), 300U);
}

TEST(stringMemory, nullBodyIsSafeInEveryOperation) {
    const auto memoryHook = std::exchange(vek::stringOutOfMemoryHook, nullptr);
    const auto indexHook = std::exchange(vek::stringBadIndexHook, nullptr);
    std::istringstream words("word word");
    memory::failAt(1, true);
    string_t null("text");
    null[0] = 'x';
    null(0, 0)[0] = 'x';
    null.toUpper();
    null.append("").append("x").replace(5, 5, nullptr, 5);
    EXPECT_TRUE(null == "" && null == static_cast<const char *>(nullptr) && null < "a");
    EXPECT_EQ(null.compareTo(null) + null.compareTo(string_t(null + null)), 0);
    EXPECT_EQ(null.index("x") & null.first('x') & null.first("x") & null.last('x'), string_t::notFound);
    EXPECT_EQ(null.hash(), 0U);
    EXPECT_TRUE(null.isUpper() && null.isLower() && null.strip().isNull());
    EXPECT_EQ(null.deepCopy().length() + string_t(null(0, 0)).length() + toLower(null).length(), 0U);
    readToken(words, null);
    memory::stopFailing();
    expectNullBody(null);
    vek::stringOutOfMemoryHook = memoryHook;
    vek::stringBadIndexHook = indexHook;
    EXPECT_STREQ(null.append("x").c_str(), "x");
}

TEST(stringMemory, textsBeyondTheLargestCapacityAreOutOfMemory) {
    string_t text("text");
    EXPECT_EQ(reported([&] { text.append(nullptr, std::size_t{0xFFFFFFFF} - 4); }), outOfMemory);
    expectNullBody(text);
    text = "text";
    EXPECT_EQ(reported([&] { text.replace(0, 2, nullptr, string_t::notFound); }), outOfMemory);
    EXPECT_EQ(reported([&] { text = string_t(string_t::notFound, 'x'); }), outOfMemory);
    expectNullBody(text);
}

TEST(stringMemory, allocatesOncePerShortTextAndNeverForTheEmptyOne) {
    const std::size_t before = memory::allocations() + memory::reallocations();
    const auto taken = [&] { return memory::allocations() + memory::reallocations() - before; };
    string_t empty, other = empty, none("", 5);
    EXPECT_EQ(taken(), 0U);
    string_t text(std::string(63, 'x').c_str(), 99);
    EXPECT_EQ(taken(), 1U);
    const string_t copy = text;
    EXPECT_EQ(taken(), 1U);
    text = string_t(64, 'x');
    EXPECT_EQ(taken(), 3U);
}

TEST(stringMemory, aMillionAppendsReallocateOncePerStep) {
    const std::size_t allocations = memory::allocations();
    const std::size_t reallocations = memory::reallocations();
    string_t text;
    for (int i = 0; i < 1'000'000; ++i)
        text.append("x", 1);
    EXPECT_EQ(text.capacity(), 1'000'063U);
    EXPECT_EQ(memory::allocations() - allocations, 1U);
    EXPECT_EQ(memory::reallocations() - reallocations, (1'000'063U - 63) / 64);
}

TEST(hashMemory, aTableThatCantGrowKeepsItsEntries) {
    vek::wordVtab_t table;
    std::vector<std::uintptr_t> stored;
    for (std::uintptr_t word = 1; word < 500; ++word) {
        memory::failAt(1);
        bool isThrown = false;
        try {
            table.insert(&word);
        } catch (const std::bad_alloc &) {
            isThrown = true;
        }
        EXPECT_EQ(memory::stopFailing() > 0, isThrown);
        table.insert(&word);
        for (std::uintptr_t known = 1; known <= word; ++known)
            ASSERT_EQ(table.lookup(static_cast<std::uint32_t>(known)), known);
        ASSERT_EQ(table.count(), static_cast<std::int32_t>(word));
        ASSERT_LT(table.count(), table.threshold());
    }
}

TEST(objMemory, anArrayIsResizedByItsStep) {
    vek::obj_t element;
    vek::objArray_t array;
    const auto resizes = [&](auto change) {
        const std::size_t before = memory::reallocations();
        change();
        return memory::reallocations() - before;
    };
    for (std::uint32_t n = 1; n <= 100; ++n)
        EXPECT_EQ(resizes([&] { array.add(&element); }), n % 32 == 1) << n;
    const std::size_t blocks = memory::liveBlocks();
    for (std::uint32_t n = 99; n > 0; --n)
        EXPECT_EQ(resizes([&] { array.removeAt(n); }), n % 32 == 0) << n;
    EXPECT_EQ(memory::liveBlocks(), blocks);
    array.removeAt(0);
    EXPECT_EQ(memory::liveBlocks(), blocks - 1);
}

TEST(objMemory, anArrayThatCantBeResizedStaysAsItIs) {
    vek::obj_t element;
    vek::objArray_t array(2);
    memory::failAt(1);
    EXPECT_EQ(array.add(&element), nullptr);
    EXPECT_EQ(memory::stopFailing(), 1U);
    EXPECT_EQ(array.count(), 0U);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(array.add(&element), &element);
    memory::failAt(1);
    EXPECT_EQ(array.removeAt(4), &element);
    EXPECT_EQ(memory::stopFailing(), 1U);
    EXPECT_EQ(array.count(), 4U);
    memory::failAt(1);
    EXPECT_EQ(array.add(&element), nullptr);
    memory::stopFailing();
    EXPECT_EQ(array.add(&element), &element);
    EXPECT_EQ(array.count(), 5U);
}

} // namespace
