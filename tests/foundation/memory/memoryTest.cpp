// What the foundation does without memory, and how often it asks for some.

#include "tests/foundation/memory/failingMemory.hpp"
#include "tests/foundation/reports.hpp"
#include "tests/foundation/stringChanges.hpp"
#include "vek/vek_std/std_objCltn/objCltn.hpp"
#include "vek/vek_std/std_sys/hashVtab.hpp"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

using vek::string_t;

constexpr char outOfMemory[] = "\nstring_t : VEK_ENOMEM ; called from vek_std/std_sys/vek_string,598\n";

const string_t source(300, 's');

/// Runs the change on a text with the n-th allocation failing, or all from there on. Returns the number of failures.
std::size_t failing(const changes::change_t &change, string_t &text, changes::with_t &with, std::size_t n,
                    bool andAllLater) {
    with.input.clear();
    with.input.str(with.text);
    std::size_t failures = 0;
    const std::string reports = reported([&] {
        memory::failAt(n, andAllLater);
        change.real(text, source, with);
        failures = memory::stopFailing();
    });
    EXPECT_EQ(reports.size(), failures * std::char_traits<char>::length(outOfMemory));
    EXPECT_EQ(reports.rfind(outOfMemory, 0), failures ? 0 : std::string::npos);
    return failures;
}

TEST(stringMemory, everyFailureLeavesANullBodyAndOneReport) {
    // Twice: what the run-time library keeps from the first round on is no leak, what a round leaves behind is one.
    [[maybe_unused]] const std::size_t atFirst = memory::counts().liveBlocks;
    std::size_t blocks[2] = {};
    for (std::size_t &after : blocks) {
        {
            changes::with_t withs[] = {
                {"short", 5, 290, 5, 200}, {"x", 1, 200, 1, 298}, {std::string(500, 'l'), 0, 100, 2, 3}};
            for (const changes::change_t &change : changes::all)
                for (changes::with_t &with : withs)
                    for (const bool isShared : {true, false})
                        for (const bool andAllLater : {false, true}) {
                            SCOPED_TRACE(change.name);
                            const auto start = [&] { return isShared ? source : source.deepCopy(); };
                            string_t changed = start(), text = start();
                            EXPECT_EQ(failing(change, changed, with, 0, false), 0U);
                            std::size_t n = 1;
                            for (; failing(change, text, with, n, andAllLater); ++n) {
                                EXPECT_TRUE(!andAllLater || text.length() == 0);
                                const std::string before = text.c_str();
                                EXPECT_EQ(text.append("again").c_str(), before + "again"); // it tries for memory anew
                                text = start();
                            }
                            EXPECT_TRUE(n > 1 || !isShared || change.name == std::string("sharing"));
                            EXPECT_STREQ(text.c_str(), changed.c_str());
                        }
        }
        after = memory::counts().liveBlocks;
    }
    EXPECT_EQ(blocks[0], blocks[1]);
#ifndef _WIN32 // where the run-time library is linked in and counts too
    EXPECT_EQ(atFirst, blocks[0]);
#endif
    EXPECT_EQ(source.length(), 300U);
}

TEST(stringMemory, nullBodyIsSafeInEveryOperation) {
    const auto memoryHook = std::exchange(vek::stringOutOfMemoryHook, nullptr);
    const auto indexHook = std::exchange(vek::stringBadIndexHook, nullptr);
    changes::with_t with{"word", 5, 5, 0, 0};
    memory::failAt(1, true);
    string_t null("text");
    null[0] = null(0, 0)[0] = 'x';
    for (const changes::change_t &change : changes::all)
        change.real(null, string_t(null), with);
    EXPECT_TRUE(null == "" && null == static_cast<const char *>(nullptr) && null < "a" && null.strip().isNull());
    EXPECT_EQ(null.compareTo(null) + null.compareTo(string_t(null + null)), 0);
    EXPECT_EQ(null.index("x") & null.first('x') & null.first("x") & null.last('x'), string_t::notFound);
    vek::setCaseSensitive(0); // which needs no copies either
    const string_t text = source;
    EXPECT_EQ(null.index("x") & text.index("zzz"), string_t::notFound);
    EXPECT_EQ(text.index("SS") + null.hash(), 0U);
    vek::setCaseSensitive(1);
    EXPECT_TRUE(null.hash() == 0 && null.isUpper() && null.isLower() && toLower(null).length() == 0);
    memory::stopFailing();
    EXPECT_STREQ(null.c_str(), "");
    EXPECT_EQ(null.length() + null.capacity(), 0U);
    vek::stringOutOfMemoryHook = memoryHook;
    vek::stringBadIndexHook = indexHook;
}

TEST(stringMemory, textsBeyondTheLargestCapacityAreOutOfMemory) {
    for (const std::size_t length : {std::size_t{0xFFFFFFFF} - 4, string_t::notFound - 3, string_t::notFound}) {
        string_t text("text");
        EXPECT_EQ(reported([&] { text.append(nullptr, length); }), outOfMemory);
        EXPECT_EQ(text.capacity(), 0U);
    }
    for (const std::uint32_t step : {0xFFFFFFFFU, 64U, 1U}) { // rounding up must not wrap around, nor be what refuses
        vek::setGrowthStep(step);
        EXPECT_EQ(reported([] { string_t(string_t::notFound, 'x'); }), outOfMemory);
    }
    vek::stringSettings.sizesChanged = false;
}

TEST(stringMemory, allocatesNoOftenerThanItsStepsAsk) {
    const std::string longest(63, 'x');
    std::size_t before = 0;
    const auto taken = [&] {
        const std::size_t since = std::exchange(before, memory::counts().allocations + memory::counts().reallocations);
        return before - since;
    };
    taken();
    const string_t empty, other = empty, none("", 5);
    EXPECT_EQ(taken(), 0U);
    const string_t text(longest.c_str(), 99), copy = text;
    EXPECT_EQ(taken(), 1U);
    string_t grown;
    for (int i = 0; i < 1'000'000; ++i)
        grown.append("x", 1);
    EXPECT_EQ(grown.capacity(), 1'000'063U);
    EXPECT_EQ(taken(), 1 + (1'000'063U - 63) / 64);
}

TEST(hashMemory, aTableThatCantGrowKeepsItsEntries) {
    using word_t = vek::hashVtab::word_t;
    vek::wordVtab_t table;
    std::vector<word_t> stored; // or 0, by number
    std::size_t failures = 0;
    for (word_t word = 1; word < 300; ++word) {
        const std::int32_t before = table.count();
        memory::failAt(word % 5 ? 1 : 0);
        try {
            table.insert(&word);
        } catch (const std::bad_alloc &) {
            ++failures;
        }
        memory::stopFailing();
        stored.push_back(table.count() > before ? word : 0);
        ASSERT_LE(table.count(), table.threshold());
        ASSERT_LT(table.threshold(), table.length());
        for (std::size_t known = 1; known <= word; ++known)
            ASSERT_EQ(table.lookup(static_cast<std::uint32_t>(known)), stored[known - 1]);
    }
    EXPECT_GT(failures, 5U);
}

TEST(objMemory, anArrayIsResizedByItsStepOrStaysAsItIs) {
    vek::obj_t element;
    vek::objArray_t array;
    const auto resizedTo = [](auto change) {
        const std::size_t before = memory::counts().reallocations;
        change();
        return memory::counts().reallocations == before ? 0 : memory::counts().lastReallocation / sizeof(vek::obj_t *);
    };
    for (std::uint32_t n = 1; n <= 100; ++n) {
        memory::failAt(n % 32 == 1 ? 1 : 0);
        EXPECT_EQ(array.add(&element), n % 32 == 1 ? nullptr : &element);
        if (memory::stopFailing() > 0) {
            EXPECT_EQ(resizedTo([&] { array.add(&element); }), n + 31);
        }
        EXPECT_EQ(array.count(), n);
    }
    const std::size_t blocks = memory::counts().liveBlocks;
    for (std::uint32_t n = 99; n > 0; --n) {
        memory::failAt(n == 32 ? 1 : 0);
        EXPECT_EQ(resizedTo([&] { EXPECT_EQ(array.removeAt(n), &element); }), n % 32 == 0 ? n : 0);
        EXPECT_EQ(memory::stopFailing(), n == 32 ? 1U : 0U);
        EXPECT_EQ(array.count(), n);
    }
    array.removeAt(0);
    EXPECT_EQ(memory::counts().liveBlocks, blocks - 1);
}

} // namespace
