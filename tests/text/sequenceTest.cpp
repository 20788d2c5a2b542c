// Lists and containers by the operations of the standard library, against std::vector.
#include "vek/records/media.hpp"
#include "vek/text/growableList.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <ranges>
#include <span>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace vek;

using list_t = growableList_t<string_t, 3>;

static_assert(std::ranges::contiguous_range<list_t> && std::ranges::sized_range<const list_t>);
static_assert(std::ranges::random_access_range<const CassetteArray> && std::ranges::sized_range<CassetteArray>);
static_assert(std::is_constructible_v<std::span<const double>, growableList_t<double>>);

const string_t &textOf(const string_t &text) {
    return text;
}
const string_t &textOf(const string_t *text) {
    return *text;
}

/// Goes over a sequence's own texts.
template <class Iterator>
struct texts_t {
    using value_type = string_t;
    using difference_type = std::ptrdiff_t;
    Iterator at;

    const string_t &operator*() const { return textOf(*at); }
    texts_t &operator++() {
        ++at;
        return *this;
    }
    void operator++(int) { ++at; }
    bool operator==(const texts_t &) const = default;
};

template <class Sequence>
std::vector<string_t> textsOf(const Sequence &sequence) {
    std::vector<string_t> texts;
    for (const auto &element : sequence)
        texts.push_back(textOf(element));
    return texts;
}

template <class Sequence>
class Sequences : public testing::Test {};
using sequences_t = testing::Types<list_t, DeviceMediaNameArray>;
TYPED_TEST_SUITE(Sequences, sequences_t, );

TYPED_TEST(Sequences, HoldWhatAVectorHolds) {
    std::mt19937 random(17);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    std::vector<string_t> expected;
    TypeParam sequence;
    for (int step = 0; step < 3000; ++step) {
        const string_t text = std::to_string(step);
        const std::size_t place = below(expected.size() + 1), first = below(place + 1);
        const auto at = [](auto &all, std::size_t i) { return all.begin() + static_cast<std::ptrdiff_t>(i); };
        const std::vector<string_t> part(at(expected, first), at(expected, place));
        std::ptrdiff_t where = -1, expectedWhere = -1;
        // Where an iterator stands that a change returned: counted when the change is done, since it may move all.
        const auto in = [](auto &all, auto iterator) { return std::distance(all.begin(), iterator); };
        switch (below(expected.size() < 60 ? 7 : 9)) {
        case 0:
            sequence.push_back(text);
            expected.push_back(text);
            break;
        case 1:
            where = in(sequence, sequence.insert(at(sequence, place), text));
            expectedWhere = in(expected, expected.insert(at(expected, place), text));
            break;
        case 2: // its own, also while it grows
            if (!sequence.empty()) {
                sequence.insert(at(sequence, place), textOf(sequence[0]));
                sequence.push_back(textOf(sequence[sequence.size() - 1]));
                expected.insert(at(expected, place), string_t(expected[0]));
                expected.push_back(string_t(expected.back()));
            }
            break;
        case 3: {
            using own_t = texts_t<decltype(sequence.begin())>;
            where = in(sequence,
                       sequence.insert(at(sequence, first), own_t{at(sequence, first)}, own_t{at(sequence, place)}));
            expectedWhere = in(expected, expected.insert(at(expected, first), part.begin(), part.end()));
            break;
        }
        case 4:
            sequence.insert(sequence.begin(), {text, "second"});
            expected.insert(expected.begin(), {text, "second"});
            break;
        case 5:
            if (place < expected.size()) {
                where = in(sequence, sequence.erase(at(sequence, place)));
                expectedWhere = in(expected, expected.erase(at(expected, place)));
            }
            break;
        case 6: {
            TypeParam other(expected.begin(), expected.end());
            EXPECT_TRUE(other == sequence);
            other.push_back("more");
            EXPECT_TRUE(other != sequence);
            break;
        }
        default:
            where = in(sequence, sequence.erase(at(sequence, first), at(sequence, place)));
            expectedWhere = in(expected, expected.erase(at(expected, first), at(expected, place)));
        }
        ASSERT_EQ(where, expectedWhere) << step;
        ASSERT_EQ(sequence.size(), expected.size()) << step;
        ASSERT_EQ(textsOf(sequence), expected) << step;
    }
    sequence = {"a", "b"};
    EXPECT_EQ(textsOf(sequence), (std::vector<string_t>{"a", "b"}));
    std::istringstream words("c d");
    sequence.insert(sequence.end(), std::istream_iterator<std::string>(words), std::istream_iterator<std::string>());
    std::ranges::copy(expected, std::back_inserter(sequence));
    EXPECT_EQ(sequence.size(), 4 + expected.size());
    sequence.reserve(1000);
    EXPECT_EQ(sequence.capacity(), 1000);
    EXPECT_EQ(textOf(sequence[3]), "d");
    EXPECT_EQ(textOf(std::as_const(sequence)[1]), "b");
}

TEST(Containers, AreMadeWithRoomAndTheirItemsReplaced) {
    CassetteArray cassettes(3);
    EXPECT_TRUE(cassettes.capacity() == 3 && cassettes.empty() && CassetteArray(-1).capacity() == 10);
    Cassette plate, film;
    plate.name = "plate";
    film.name = "film";
    cassettes = {plate, film, plate};
    cassettes.add(nullptr);
    EXPECT_EQ(cassettes.replace(3, *cassettes[0]).name, "plate");
    EXPECT_EQ(cassettes.replace(1, *cassettes[1]).name, "film"); // by itself
    EXPECT_EQ(cassettes.replace(0, new Cassette(film))->name, "film");
    EXPECT_TRUE(cassettes == CassetteArray({film, film, plate, plate}));
    const CassetteArray copy = cassettes;
    cassettes.replace(2, nullptr);
    EXPECT_TRUE(copy != cassettes && cassettes == CassetteArray(cassettes));
    EXPECT_EQ(std::ranges::count(copy, std::string_view("film"), &Cassette::name), 2);
}

} // namespace
