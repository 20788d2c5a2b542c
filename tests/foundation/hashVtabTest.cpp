// hashVtab: sizes, probing and removal by their rules, and its contents against std::unordered_map.

#include "vek_std/std_sys/hashVtab.hpp"
#include "reports.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <sstream>
#include <unordered_map>

namespace {

using vek::hashVtab;
using vek::hashVtabIterator_t;
using vek::wordVtab_t;
using word_t = hashVtab::word_t;

struct entry_t {
    char text[5];
    std::uint32_t key;
};

std::uint32_t keyOfEntry(const void *entry) {
    return static_cast<const entry_t *>(entry)->key;
}

void add(wordVtab_t &table, std::initializer_list<word_t> words) {
    for (const word_t word : words)
        table.insert(&word);
}

word_t removeFrom(wordVtab_t &table, word_t word) {
    return table.remove(&word);
}

TEST(hashVtab, growsAtItsThresholds) {
    wordVtab_t table;
    struct {
        std::int32_t count, length, threshold;
    } const cases[] = {{0, 10, 8}, {7, 10, 8}, {8, 22, 17}, {16, 22, 17}, {17, 36, 28}, {28, 53, 42}};
    for (const auto &one : cases) {
        while (table.count() < one.count)
            add(table, {static_cast<word_t>(table.count()) + 1});
        EXPECT_EQ(table.length(), one.length) << one.count;
        EXPECT_EQ(table.threshold(), one.threshold) << one.count;
    }
}

TEST(hashVtab, growsUntilTheCountIsBelowTheThreshold) {
    wordVtab_t table;
    table.setLoadFactor(0.1);
    add(table, {1, 2, 3, 4, 5, 6, 7, 8}); // 22 -> 2, 36 -> 3, 53 -> 5, 73 -> 7, 97 -> 9
    EXPECT_EQ(table.length(), 97);
    EXPECT_EQ(table.threshold(), 9);
}

TEST(hashVtab, factorsStayInTheirLimits) {
    wordVtab_t table;
    struct {
        double wanted;
        float growth, load;
    } const cases[] = {{5.0, 2.0F, 0.99F},
                       {1.5, 1.5F, 0.99F},
                       {0.5, 1.01F, 0.5F},
                       {0.01, 1.01F, 0.1F},
                       {std::numeric_limits<double>::quiet_NaN(), 1.01F, 0.1F}};
    for (const auto &one : cases) {
        table.find(1);
        table.setGrowthFactor(one.wanted);
        EXPECT_EQ(hashVtab::finds(), 0U);
        table.find(1);
        table.setLoadFactor(one.wanted);
        EXPECT_EQ(hashVtab::finds(), 0U);
        EXPECT_EQ(table.growthFactor(), one.growth);
        EXPECT_EQ(table.loadFactor(), one.load);
    }
}

TEST(hashVtab, aCollisionStepsDown) {
    wordVtab_t table;
    table.setGrowthFactor(1.2); // resets the counters
    add(table, {3, 13});
    EXPECT_EQ(hashVtab::finds(), 2U);
    EXPECT_EQ(hashVtab::loops(), 1U);
    const auto *slot3 = static_cast<const word_t *>(table.find(3));
    EXPECT_EQ(table.find(13), slot3 - 1);
    add(table, {20, 30}); // slot 0, then round to slot 9
    EXPECT_EQ(table.find(30), slot3 + 6);
    EXPECT_EQ(table.find(23), nullptr);
}

TEST(hashVtab, storesNoKeyZero) {
    wordVtab_t table;
    add(table, {0, 0});
    EXPECT_EQ(table.count(), 0);
    EXPECT_EQ(table.find(0), nullptr);
    EXPECT_EQ(table.lookup(nullptr), 0U);
}

TEST(hashVtab, insertKeepsTheEntryStoredFirst) {
    hashVtab table(sizeof(entry_t), keyOfEntry);
    const entry_t first{"one", 7}, second{"two", 7};
    EXPECT_EQ(table.insert(&first), nullptr);
    const auto *stored = static_cast<const entry_t *>(table.insert(&second));
    EXPECT_STREQ(stored->text, "one");
    EXPECT_EQ(stored, table.find(7));
    EXPECT_EQ(table.count(), 1);
}

TEST(hashVtab, removingAnAbsentKeyGrowsTheTable) {
    wordVtab_t table;
    EXPECT_EQ(removeFrom(table, 5), 0U);
    EXPECT_EQ(table.count(), 0);
    EXPECT_EQ(table.length(), 22);
    EXPECT_EQ(table.threshold(), 17);
    add(table, {5, 27});
    EXPECT_EQ(removeFrom(table, 5), 5U);
    EXPECT_EQ(table.length(), 22);
    EXPECT_EQ(table.lookup(27), 27U);
}

TEST(hashVtab, ordinalsNumberTheKeys) {
    vek::ordinalVtab_t table;
    EXPECT_EQ(table.insertOrdinal('A'), 0U);
    EXPECT_EQ(table.insertOrdinal('B'), 0U);
    EXPECT_EQ(table.insertOrdinal('A'), 1U);
    EXPECT_EQ(table.insertOrdinal(0), 0U);
    for (std::uint32_t key = 1000; key < 1100; ++key)
        EXPECT_EQ(table.insertOrdinal(key), 0U);
    EXPECT_EQ(table.insertOrdinal('B'), 2U);
    EXPECT_EQ(table.insertOrdinal(1099), 102U);
}

TEST(hashVtab, statisticsAreOneLine) {
    wordVtab_t table;
    const auto statistics = [&] {
        std::ostringstream stream;
        table.printStatistics(stream);
        return stream.str();
    };
    const std::string size = std::to_string(sizeof(word_t));
    table.setLoadFactor(0.8);
    EXPECT_EQ(statistics(), "\nlength=10 sz=" + size + " count=0 capacity=8 average loops/finds=0. %filled=0");
    add(table, {3, 13, 23});
    EXPECT_EQ(statistics(), "\nlength=10 sz=" + size + " count=3 capacity=8 average loops/finds=1. %filled=30");
    table.find(4);
    table.find(5);
    table.find(6);
    table.find(7);
    EXPECT_EQ(statistics(), "\nlength=10 sz=" + size + " count=3 capacity=8 average loops/finds=0.428571. %filled=30");
}

TEST(hashVtabIterator, startsAtAnEntryOrReports) {
    constexpr char outOfArray[] = "\n : OUT_OF_INTERNAL_ARRAY ; called from vek_std/std_sys/hashVtab,149\n";
    constexpr char badBound[] = "\n : BAD_BOUND_IN_INTERNAL_ARRAY ; called from vek_std/std_sys/hashVtab,156\n";
    wordVtab_t table;
    add(table, {2, 5, 9});
    const char *slots = static_cast<const char *>(table.find(2)) - 2 * sizeof(word_t);
    const auto bytes = [](int slot) { return slot * static_cast<std::ptrdiff_t>(sizeof(word_t)); };
    struct {
        const char *place;
        const char *report;
        word_t next; // 0: the walk ends
    } const cases[] = {{nullptr, "", 2},
                       {slots, "", 2},
                       {slots + bytes(2), "", 5},
                       {slots + bytes(9), "", 0},
                       {slots - 1, outOfArray, 2},
                       {slots - bytes(1), outOfArray, 2},
                       {slots + bytes(10), outOfArray, 0},
                       {slots + bytes(10) + 1, outOfArray, 0},
                       {slots + bytes(5) + 1, badBound, 2}};
    for (const auto &one : cases) {
        EXPECT_EQ(reported([&] {
                      hashVtabIterator_t walk(table, one.place);
                      const auto *found = static_cast<const word_t *>(walk.next());
                      EXPECT_EQ(found ? *found : 0, one.next);
                      if (!found) {
                          EXPECT_EQ(walk.next(), table.find(2)); // and begins anew
                      }
                  }),
                  one.report);
    }
}

TEST(hashVtab, holdsWhatAnUnorderedMapHolds) {
    std::mt19937 random(11);
    for (int round = 0; round < 20; ++round) {
        hashVtab table(sizeof(entry_t), keyOfEntry);
        table.setGrowthFactor(1.0 + 0.1 * (round % 11));
        table.setLoadFactor(0.1 * (1 + round % 10));
        std::unordered_map<std::uint32_t, char> expected;
        for (int step = 0; step < 3000; ++step) {
            entry_t entry{"", static_cast<std::uint32_t>(random() % 300 * (random() % 2 ? 1 : 10))};
            entry.text[0] = static_cast<char>('a' + random() % 26);
            if (random() % 3) {
                const bool isNew = entry.key != 0 && expected.emplace(entry.key, entry.text[0]).second;
                EXPECT_EQ(table.insert(&entry) == nullptr, isNew || entry.key == 0);
            } else if (expected.contains(entry.key)) { // removing an absent key grows the table
                table.remove(&entry);
                expected.erase(entry.key);
            }
            const auto *found = static_cast<const entry_t *>(table.find(entry.key));
            ASSERT_EQ(found ? found->text[0] : '-', expected.contains(entry.key) ? expected[entry.key] : '-');
            ASSERT_EQ(table.count(), static_cast<std::int32_t>(expected.size()));
            ASSERT_LT(table.count(), table.threshold());
            ASSERT_LT(table.threshold(), table.length());
        }
        hashVtabIterator_t walk(table);
        while (const auto *entry = static_cast<const entry_t *>(walk.next())) {
            EXPECT_EQ(expected.at(entry->key), entry->text[0]);
            expected.erase(entry->key);
        }
        EXPECT_TRUE(expected.empty());
    }
}

} // namespace
