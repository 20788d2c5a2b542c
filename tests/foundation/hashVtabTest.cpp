// hashVtab: sizes, probing and removal by their rules, and its contents against std::unordered_map.

#include "vek/vek_std/std_sys/hashVtab.hpp"
#include "tests/foundation/reports.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <sstream>
#include <tuple>
#include <unordered_map>

namespace {

using vek::hashVtab;
using vek::hashVtabIterator_t;
using vek::wordVtab_t;
using word_t = hashVtab::word_t;

void add(wordVtab_t &table, std::initializer_list<word_t> words) {
    for (const word_t word : words)
        table.insert(&word);
}

using sizes_t = std::array<std::int32_t, 3>;
sizes_t sizesOf(const wordVtab_t &table) {
    return {table.count(), table.length(), table.threshold()};
}

TEST(hashVtab, growsAtItsThresholds) {
    wordVtab_t table;
    for (const sizes_t &sizes :
         {sizes_t{0, 10, 8}, {7, 10, 8}, {8, 22, 17}, {16, 22, 17}, {17, 36, 28}, {28, 53, 42}}) {
        while (table.count() < sizes[0])
            add(table, {static_cast<word_t>(table.count()) + 1});
        EXPECT_EQ(sizesOf(table), sizes);
    }
}

TEST(hashVtab, factorsStayInTheirLimits) {
    wordVtab_t table;
    using row_t = std::tuple<double, float, float>;
    for (const auto &[wanted, growth, load] :
         {row_t{5.0, 2.0F, 0.99F}, {0.5, 1.01F, 0.5F}, {0.01, 1.01F, 0.1F}, {std::nan(""), 1.01F, 0.1F}}) {
        for (const auto set : {&wordVtab_t::setGrowthFactor, &wordVtab_t::setLoadFactor}) {
            add(table, {1});
            (table.*set)(wanted);
            EXPECT_EQ(hashVtab::finds(), 0U);
        }
        EXPECT_EQ(std::pair(table.growthFactor(), table.loadFactor()), std::pair(growth, load));
    }
}

TEST(hashVtab, collisionsStepDown) {
    wordVtab_t table;
    table.setGrowthFactor(1.2); // resets the counters
    add(table, {3, 13});
    EXPECT_EQ(hashVtab::finds(), 2U);
    EXPECT_EQ(hashVtab::loops(), 1U);
    add(table, {20, 30}); // slot 0, then round to slot 9
    const auto *slot3 = static_cast<const word_t *>(table.find(3));
    EXPECT_EQ(table.find(13), slot3 - 1);
    EXPECT_EQ(table.find(30), slot3 + 6);
    EXPECT_EQ(table.find(23), nullptr);
}

TEST(hashVtab, removingAnAbsentKeyGrowsTheTable) {
    wordVtab_t table;
    const word_t word = 5;
    EXPECT_EQ(table.remove(&word), 0U);
    EXPECT_EQ(sizesOf(table), (sizes_t{0, 22, 17}));
    add(table, {5, 27});
    EXPECT_EQ(table.remove(&word), 5U);
    EXPECT_EQ(sizesOf(table), (sizes_t{1, 22, 17}));
    EXPECT_EQ(table.lookup(27) + table.lookup(5) + table.lookup(&word) + table.lookup(nullptr), 27U);
}

TEST(hashVtab, ordinalsNumberTheKeys) {
    vek::ordinalVtab_t table;
    for (const std::uint32_t expected : {0U, 1U}) {
        for (std::uint32_t key = 0; key < 100; ++key)
            EXPECT_EQ(table.insertOrdinal('A' + key), expected * (key + 1));
    }
    EXPECT_EQ(table.insertOrdinal(0) + table.insertOrdinal(0), 0U);
    const vek::ordinalVtab_t::pair_t pair{'B', 7};
    EXPECT_EQ(table.remove(&pair), word_t{'B'}); // the key alone
}

TEST(hashVtab, statisticsAreOneLine) {
    wordVtab_t table;
    table.setLoadFactor(0.8);
    const auto statistics = [&] {
        std::ostringstream stream;
        table.printStatistics(stream);
        return stream.str();
    };
    const std::string size = std::to_string(sizeof(word_t));
    EXPECT_EQ(statistics(), "\nlength=10 sz=" + size + " count=0 capacity=8 average loops/finds=0. %filled=0");
    add(table, {3, 13, 23, 4, 5, 6, 7});
    EXPECT_EQ(statistics(), "\nlength=10 sz=" + size + " count=7 capacity=8 average loops/finds=0.428571. %filled=70");
    add(table, {8, 9, 10, 11, 12});
    EXPECT_NE(statistics().find("%filled=55"), std::string::npos); // 54.5
}

TEST(hashVtabIterator, startsAtAnEntryOrReports) {
    const std::string outOfArray = "\n : OUT_OF_INTERNAL_ARRAY ; called from vek_std/std_sys/hashVtab,149\n";
    const std::string badBound = "\n : BAD_BOUND_IN_INTERNAL_ARRAY ; called from vek_std/std_sys/hashVtab,156\n";
    wordVtab_t table;
    add(table, {2, 5, 9});
    constexpr auto slot = static_cast<std::ptrdiff_t>(sizeof(word_t));
    const struct {
        std::ptrdiff_t offset;
        std::string report;
        word_t next; // 0: the walk ends
    } cases[] = {{2 * slot, "", 5},      {9 * slot, "", 0},          {-1, outOfArray, 2},
                 {-slot, outOfArray, 2}, {10 * slot, outOfArray, 0}, {5 * slot + 1, badBound, 2}};
    const char *slots = static_cast<const char *>(table.find(2)) - 2 * slot;
    for (const auto &one : cases) {
        const std::string report = reported([&] {
            hashVtabIterator_t walk(table, slots + one.offset);
            const auto *found = static_cast<const word_t *>(walk.next());
            EXPECT_EQ(found ? *found : 0, one.next) << one.offset;
            EXPECT_TRUE(found || walk.next() == table.find(2)); // begins anew
        });
        EXPECT_EQ(report, one.report) << one.offset;
    }
}

struct entry_t {
    char value;
    std::uint32_t key;
};

TEST(hashVtab, holdsWhatAnUnorderedMapHolds) {
    std::mt19937 random(11);
    for (int round = 0; round < 20; ++round) {
        hashVtab table(sizeof(entry_t), [](const void *entry) { return static_cast<const entry_t *>(entry)->key; });
        table.setGrowthFactor(1.0 + 0.1 * (round % 11));
        table.setLoadFactor(0.1 * (1 + round % 10));
        std::unordered_map<std::uint32_t, char> expected;
        for (int step = 0; step < 3000; ++step) {
            const auto key = static_cast<std::uint32_t>(random() % 300 * (random() % 2 ? 1 : 10));
            const entry_t entry{static_cast<char>(random() % 26), key};
            if (random() % 3) {
                const bool isAdded = key == 0 || expected.emplace(key, entry.value).second;
                EXPECT_EQ(table.insert(&entry) == nullptr, isAdded);
            } else if (expected.erase(key)) { // removing an absent key would grow the table
                table.remove(&entry);
            }
            const auto *found = static_cast<const entry_t *>(table.find(key));
            ASSERT_EQ(found ? found->value : -1, expected.contains(key) ? expected[key] : -1);
            ASSERT_EQ(table.count(), static_cast<std::int32_t>(expected.size()));
            ASSERT_LT(table.count(), table.threshold());
            ASSERT_LT(table.threshold(), table.length());
        }
        hashVtabIterator_t walk(table);
        while (const auto *entry = static_cast<const entry_t *>(walk.next())) {
            EXPECT_EQ(expected.at(entry->key), entry->value);
            expected.erase(entry->key);
        }
        EXPECT_TRUE(expected.empty());
    }
}

} // namespace
