// string_t against a model of it over long random sequences of operations: texts, capacities, and which strings share.

#include "stringModel.hpp"
#include "vek_std/std_sys/vek_stringStream.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <functional>
#include <random>
#include <sstream>
#include <vector>

namespace {

struct pair_t {
    vek::string_t real;
    model::string_t expected;
};

class stringModel : public testing::TestWithParam<bool> {
protected:
    static constexpr std::size_t strings = 6;

    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random); }

    /// Mostly short, with the lengths around the capacities among them.
    std::string anyText() {
        static constexpr std::array<std::size_t, 12> lengths = {0, 1, 3, 62, 63, 64, 65, 127, 128, 191, 192, 300};
        std::string text(below(3) == 0 ? lengths[below(lengths.size())] : below(20), ' ');
        for (char &c : text)
            c = "abXY \n-"[below(7)];
        return text;
    }

    void changeSettings() {
        static constexpr std::array<std::uint32_t, 5> initials = {0, 10, 63, 64, 100};
        static constexpr std::array<std::uint32_t, 4> steps = {0, 7, 64, 100};
        static constexpr std::array<std::uint32_t, 3> slacks = {0, 63, 200};
        vek::setInitialCapacity(initials[below(initials.size())]);
        vek::setGrowthStep(steps[below(steps.size())]);
        vek::setSlackLimit(slacks[below(slacks.size())]);
    }

    void TearDown() override {
        vek::setInitialCapacity(63);
        vek::setGrowthStep(64);
        vek::setSlackLimit(63);
        vek::stringSettings.sizesChanged = false;
    }

    void replaceSomething(pair_t &one) {
        const std::size_t position = below(one.real.length() + 3);
        const std::size_t removed = below(3) == 0 ? below(400) : below(5);
        const std::string source = anyText();
        switch (below(3)) {
        case 0:
            one.real.replace(position, removed, source.data(), source.size());
            one.expected.replace(position, removed, source);
            break;
        case 1:
            one.real.replace(position, removed, nullptr, source.size());
            one.expected.replace(position, removed, std::string(source.size(), ' '));
            break;
        default: {
            const std::size_t from = below(one.real.length() + 1);
            const std::size_t count = below(one.real.length() - from + 1);
            const std::string own = one.expected.text().substr(from, count);
            one.real.replace(position, removed, one.real.c_str() + from, count);
            one.expected.replace(position, removed, own, true);
        }
        }
    }

    void assignView(pair_t &one) {
        const std::size_t start = below(one.real.length() + 1);
        const std::size_t extent = below(one.real.length() - start + 1);
        vek::subString_t view = one.real(static_cast<std::ptrdiff_t>(start), extent);
        EXPECT_EQ(one.expected.text().substr(start, extent), vek::string_t(view).c_str());
        const std::string text = anyText();
        view = text.c_str();
        one.expected.replace(start, extent, text);
        EXPECT_EQ(view.extent(), text.size());
        view.toUpper();
        one.expected.transform(start, text.size(), [](char c) { return static_cast<char>(std::toupper(c)); });
    }

    void readSomething(pair_t &one) {
        const std::string text = anyText() + (below(2) ? "\n" : "") + anyText();
        std::istringstream stream(text);
        readToDelim(stream, one.real, '\n');
        one.expected.read(text.substr(0, text.find('\n')));
    }

    void changeOne(pair_t &one, pair_t &other) {
        const std::string text = anyText();
        switch (below(12)) {
        case 0:
            one.real = text.c_str();
            one.expected = text;
            break;
        case 1:
            one.real = vek::string_t(text.size(), 'q');
            one.expected = std::string(text.size(), 'q');
            break;
        case 2:
        case 3:
            one = pair_t(other);
            break;
        case 4:
            one.real = other.real + text.c_str();
            one.expected = other.expected.text() + text;
            break;
        case 5:
            one.real.append(text.c_str());
            one.expected.replace(one.expected.text().size(), 0, text);
            break;
        case 6:
            one.real.prepend(text.data(), text.size());
            one.expected.replace(0, 0, text);
            break;
        case 7:
            one.real.toLower();
            one.expected.transform(0, one.expected.text().size(),
                                   [](char c) { return static_cast<char>(std::tolower(c)); });
            break;
        case 8:
            if (const std::size_t length = one.real.length()) {
                const std::size_t i = below(length);
                one.real[static_cast<std::int32_t>(i)] = '#';
                one.expected.transform(i, 1, [](char) { return '#'; });
            }
            break;
        case 9:
            assignView(one);
            break;
        case 10:
            readSomething(one);
            break;
        default:
            replaceSomething(one);
        }
    }

    std::mt19937 random{20240611};
    std::array<pair_t, strings> all;
};

TEST_P(stringModel, randomOperations) {
    for (int step = 0; step < 100000; ++step) {
        if (GetParam() && below(50) == 0)
            changeSettings();
        changeOne(all[below(strings)], all[below(strings)]);
        for (const pair_t &one : all) {
            ASSERT_EQ(one.real.length(), one.expected.text().size()) << step;
            ASSERT_EQ(one.real.c_str(), one.expected.text()) << step;
            ASSERT_EQ(one.real.capacity(), one.expected.capacity()) << step;
            for (const pair_t &other : all)
                ASSERT_EQ(one.real.c_str() == other.real.c_str(), one.expected.sharesWith(other.expected)) << step;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, stringModel, testing::Bool(),
                         [](const auto &context) { return context.param ? "changingSettings" : "defaultSettings"; });

/// The positions where a predicate holds, searched one by one.
std::size_t firstWhere(std::size_t from, std::size_t to, const std::function<bool(std::size_t)> &holds) {
    for (; from < to; ++from) {
        if (holds(from))
            return from;
    }
    return vek::string_t::notFound;
}

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

TEST(string, searchesAndHashesAsCharacterByCharacter) {
    std::mt19937 random(7);
    const auto anyText = [&](std::size_t length) {
        std::string text(random() % length, ' ');
        for (char &c : text)
            c = "aAbB\xE4"[random() % 5];
        return text;
    };
    for (int step = 0; step < 20000; ++step) {
        vek::setCaseSensitive(step % 2);
        const auto seen = [&](const std::string &text) { return step % 2 ? text : upper(text); };
        const std::string raw = anyText(20);
        const std::string text = seen(raw);
        const std::string pattern = seen(anyText(4));
        const char c = seen(std::string(1, "aAb"[random() % 3]))[0];
        const std::size_t start = random() % 22;
        const std::size_t end = text.size();
        const vek::string_t real(raw.c_str());

        const bool fits = start + pattern.size() <= end;
        const std::size_t at = firstWhere(start, fits ? end - pattern.size() + 1 : 0,
                                          [&](std::size_t i) { return text.substr(i, pattern.size()) == pattern; });
        EXPECT_EQ(real.index(vek::string_t(pattern.c_str()), start), at);
        EXPECT_EQ(real.first(c, start), firstWhere(start, end, [&](std::size_t i) { return text[i] == c; }));
        EXPECT_EQ(real.last(c), text.rfind(c));
        EXPECT_EQ(real.first("bB", start), firstWhere(start, end, [&](std::size_t i) { return upper(raw)[i] == 'B'; }));

        const std::string other = seen(anyText(3));
        EXPECT_EQ(real.compareTo(other.c_str()), (text > other) - (text < other));
        EXPECT_EQ(real == other.c_str(), text == other);
        EXPECT_EQ(real < other.c_str(), text < other);

        auto hash = static_cast<std::uint32_t>(end);
        for (std::size_t i = 0; i < end; ++i)
            hash ^= std::uint32_t{static_cast<unsigned char>(text[i])} << (8 * (i % 4));
        EXPECT_EQ(real.hash(), hash);
    }
    vek::setCaseSensitive(1);
}

} // namespace
