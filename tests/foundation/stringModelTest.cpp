// string_t over long random sequences of operations: texts, capacities and sharing against a model, searching and
// comparing against std::string.

#include "tests/foundation/stringChanges.hpp"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace {

using model::lower;
using model::upper;

struct pair_t {
    vek::string_t real;
    model::string_t expected;
};

class stringModel : public testing::TestWithParam<bool> {
protected:
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random); }
    template <class Choices>
    auto anyOf(const Choices &choices) {
        return std::data(choices)[below(std::size(choices))];
    }

    /// Mostly short, with the lengths around the capacities among them.
    std::string anyText() {
        std::string text(below(3) == 0 ? anyOf(std::array<std::size_t, 10>{0, 62, 63, 64, 65, 127, 128, 191, 192, 300})
                                       : below(20),
                         ' ');
        for (char &c : text)
            c = anyOf(std::string_view("azXY \n@[`{"));
        return text;
    }

    void setSizes(std::uint32_t initialCapacity, std::uint32_t growthStep, std::uint32_t slackLimit) {
        vek::setInitialCapacity(initialCapacity);
        vek::setGrowthStep(growthStep);
        vek::setSlackLimit(slackLimit);
    }

    void TearDown() override {
        setSizes(63, 64, 63);
        vek::stringSettings.sizesChanged = false;
    }

    void change(pair_t &one, const pair_t &other) {
        const std::size_t length = one.real.length(), start = below(length + 1);
        changes::with_t with{anyText(), below(length + 3), below(3) == 0 ? below(400) : below(5), start,
                             below(length - start + 1)};
        const changes::change_t &change = anyOf(changes::all);
        with.input.str(with.text);
        change.real(one.real, other.real, with);
        with.input.clear();
        with.input.str(with.text);
        change.expected(one.expected, other.expected, with);
    }

    std::mt19937 random{20240611};
};

TEST_P(stringModel, randomChanges) {
    std::array<pair_t, 6> all;
    for (int step = 0; step < 100000; ++step) {
        if (GetParam() && below(50) == 0)
            setSizes(anyOf(std::array{0U, 10U, 63U, 64U, 100U}), anyOf(std::array{0U, 7U, 64U, 100U}),
                     anyOf(std::array{0U, 63U, 200U}));
        change(all[below(all.size())], all[below(all.size())]);
        for (const pair_t &one : all) {
            ASSERT_EQ(one.real.length(), one.expected.text().size()) << step;
            ASSERT_EQ(one.real.c_str(), one.expected.text()) << step;
            ASSERT_EQ(one.real.capacity(), one.expected.capacity()) << step;
            for (const pair_t &other : all)
                ASSERT_EQ(one.real.c_str() == other.real.c_str(), one.expected.sharesWith(other.expected)) << step;
        }
    }
}

/// With the parameter, case counts.
TEST_P(stringModel, randomSearches) {
    vek::setCaseSensitive(GetParam());
    const auto anyLetters = [&](std::size_t limit) {
        std::string text(below(limit), ' ');
        for (char &c : text)
            c = anyOf(std::string_view("aAbB\xE4@[`{"));
        return text;
    };
    const auto mapped = [](std::string text, auto map) {
        std::transform(text.begin(), text.end(), text.begin(), map);
        return text;
    };
    const auto seen = [&](const std::string &text) { return GetParam() ? text : mapped(text, upper); };
    for (int step = 0; step < 20000; ++step) {
        const std::string raw = anyLetters(20), text = seen(raw), pattern = anyLetters(4), other = anyLetters(3);
        const char c = anyOf(std::string_view("abAB"));
        const std::size_t start = below(22);
        const vek::string_t real(raw.c_str());
        EXPECT_EQ(real.index(vek::string_t(pattern.c_str()), start), text.find(seen(pattern), start));
        EXPECT_EQ(real.first(c, start), text.find(seen({c}), start));
        EXPECT_EQ(real.last(c), text.rfind(seen({c})));
        EXPECT_EQ(real.first("bx", start), raw.find('b', start)); // a set always tells case apart
        EXPECT_EQ(real.compareTo(other.c_str()), (text > seen(other)) - (text < seen(other)));
        EXPECT_EQ(real == other.c_str(), text == seen(other));
        EXPECT_EQ(real < other.c_str(), text < seen(other));
        const vek::string_t realOther(other);
        const auto order = text <=> seen(other);
        EXPECT_TRUE((real <=> other.c_str()) == order && (real <=> other) == order && (real <=> realOther) == order);
        EXPECT_EQ(real == other, order == 0);
        EXPECT_EQ(std::string_view(other) == real, order == 0);
        EXPECT_EQ(real == realOther, order == 0);
        const std::hash<vek::string_t> hashed;
        EXPECT_TRUE(order != 0 || hashed(real) == hashed(realOther));
        EXPECT_EQ(toLower(real).c_str(), mapped(raw, lower));
        EXPECT_EQ(toUpper(real).c_str(), mapped(raw, upper));
        EXPECT_EQ(isLower(real), raw == mapped(raw, lower));
        EXPECT_EQ(isUpper(real), raw == mapped(raw, upper));
        auto hash = static_cast<std::uint32_t>(text.size());
        for (std::size_t i = 0; i < text.size(); ++i)
            hash ^= std::uint32_t{static_cast<unsigned char>(text[i])} << (8 * (i % 4));
        EXPECT_EQ(real.hash(), hash);
    }
    vek::setCaseSensitive(1);
}

INSTANTIATE_TEST_SUITE_P(, stringModel, testing::Bool());

} // namespace
