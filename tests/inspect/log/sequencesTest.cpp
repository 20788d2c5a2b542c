#include "vek/inspect/log/sequences.hpp"

#include <gtest/gtest.h>

#include <random>

namespace {

using vek::inspect::sequences_t;

// Of several senders whose numbers lie close together, overtake each other and jump.
TEST(Sequences, TakeARunAsItsNumbers) {
    std::mt19937 random(5);
    const auto below = [&random](std::uint32_t count) { return static_cast<std::int32_t>(random() % count); };
    for (int log = 0; log < 300; ++log) {
        sequences_t whole, oneByOne;
        const std::int32_t start = log % 3 == 0 ? INT32_MAX - 2000 : 0;
        for (int run = 0; run < 20; ++run) {
            const std::int32_t first = start + below(5) * below(300), count = 1 + below(60);
            whole.takeRun(first, static_cast<std::uint64_t>(count));
            for (std::int32_t i = 0; i < count; ++i)
                oneByOne.take(first + i);
            ASSERT_EQ(whole.gaps(), oneByOne.gaps());
            ASSERT_EQ(whole.missing(), oneByOne.missing());
            ASSERT_EQ(whole.inWords(), oneByOne.inWords());
        }
    }
}

} // namespace
