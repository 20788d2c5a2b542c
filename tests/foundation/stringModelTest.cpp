// string_t over long random sequences of operations: texts, capacities and sharing against a model, searching and
// comparing against std::string.

#include "stringModel.hpp"
#include "vek/vek_std/std_sys/vek_stringStream.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <functional>
#include <random>
#include <sstream>

namespace {

char upper(char c) {
    return static_cast<char>(std::toupper(c));
}
char lower(char c) {
    return static_cast<char>(std::tolower(c));
}

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

    void replaceSomething(pair_t &one) {
        const std::size_t position = below(one.real.length() + 3);
        const std::size_t removed = below(3) == 0 ? below(400) : below(5);
        const std::size_t from = below(one.real.length() + 1);
        const bool isOwn = below(2);
        const std::string source = isOwn ? one.expected.text().substr(from, below(100)) : anyText();
        one.real.replace(position, removed, isOwn ? one.real.c_str() + from : source.data(), source.size());
        one.expected.replace(position, removed, source, isOwn);
    }

    void changeView(pair_t &one, const std::string &text) {
        const std::size_t start = below(one.real.length() + 1);
        const std::size_t extent = below(one.real.length() - start + 1);
        vek::subString_t view = one.real(static_cast<std::ptrdiff_t>(start), extent);
        EXPECT_EQ(one.expected.text().substr(start, extent), vek::string_t(view).c_str());
        view = text.c_str();
        one.expected.replace(start, extent, text);
        EXPECT_EQ(view.extent(), text.size());
        view.toUpper();
        one.expected.transform(start, text.size(), upper);
    }

    void readSomething(pair_t &one, const std::string &text) {
        std::istringstream stream(text);
        readToDelim(stream, one.real, '\n');
        one.expected.read(text.substr(0, text.find('\n')));
    }

    void change(pair_t &one, const pair_t &other) {
        const std::string text = anyText();
        const std::size_t n = text.size(), length = one.real.length(), i = below(length + 1);
        const std::function<void()> changes[] = {
            [&] {
                one = {vek::string_t(text.data(), n), text};
            },
            [&] { one = pair_t(other); },
            [&] {
                one = {other.real + text.c_str(), other.expected.text() + text};
            },
            [&] { one.real.append(text.c_str()), one.expected.replace(length, 0, text); },
            [&] { one.real.prepend(nullptr, n), one.expected.replace(0, 0, std::string(n, ' ')); },
            [&] { one.real.toLower(), one.expected.transform(0, length, lower); },
            [&] { replaceSomething(one); },
            [&] { changeView(one, text); },
            [&] { readSomething(one, text); },
            [&] {
                if (i < length) {
                    one.real[static_cast<std::int32_t>(i)] = '#';
                    one.expected.transform(i, 1, [](char) { return '#'; });
                }
            }};
        anyOf(changes)();
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
        EXPECT_EQ(toLower(real).c_str(), mapped(raw, lower));
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
