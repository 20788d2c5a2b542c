// string_t beside its model, and hashVtab beside std::unordered_map: the input's bytes say what is done.
#include "tests/foundation/stringChanges.hpp"
#include "vek/vek_std/std_sys/hashVtab.hpp"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <unordered_map>

namespace {

void expect(bool isRight, const char *what) {
    if (isRight)
        return;
    std::fprintf(stderr, "should be so: %s\n", what);
    std::abort();
}

class bytes_t {
public:
    bytes_t(const std::uint8_t *data, std::size_t size) : at_(data), end_(data + size) {}

    bool isAtEnd() const { return at_ == end_; }
    std::size_t next() { return isAtEnd() ? 0 : *at_++; }
    std::size_t below(std::size_t limit) { return next() % limit; }
    template <class Choices>
    auto anyOf(const Choices &choices) {
        return std::data(choices)[below(std::size(choices))];
    }

private:
    const std::uint8_t *at_, *end_;
};

struct pair_t {
    vek::string_t real;
    model::string_t expected;
};

void setSizes(std::uint32_t initialCapacity, std::uint32_t growthStep, std::uint32_t slackLimit) {
    vek::setInitialCapacity(initialCapacity);
    vek::setGrowthStep(growthStep);
    vek::setSlackLimit(slackLimit);
}

/// Mostly short, with the lengths around the capacities among them.
std::string anyText(bytes_t &bytes) {
    const std::size_t kind = bytes.next();
    std::string text(
        kind % 4 == 0 ? bytes.anyOf(std::array<std::size_t, 8>{62, 63, 64, 65, 127, 128, 192, 300}) : kind % 20, ' ');
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = "azXY \n@[`{"[(kind + i * i) % 10];
    return text;
}

void changeStrings(bytes_t &bytes) {
    constexpr std::size_t longest = 4000;
    std::array<pair_t, 3> all;
    changes::with_t with{}; // a stream takes longer to make than most changes
    while (!bytes.isAtEnd()) {
        const std::size_t which = bytes.next();
        pair_t &one = all[which % 3];
        const pair_t &other = all[which / 3 % 3];
        if (one.real.length() > longest) // appended to itself a few times
            one = {};
        const std::size_t length = one.real.length();
        const std::size_t start = bytes.next() * (length + 1) / 256, removed = bytes.next();
        const std::size_t extent = bytes.next() * (length - start + 1) / 256;
        with.text = anyText(bytes);
        with.position = start + which % 2 * 2;
        with.removed = removed < 200 ? removed % 5 : 2 * removed;
        with.start = start;
        with.extent = extent;
        const changes::change_t &change = changes::all[bytes.below(std::size(changes::all))];
        with.input.clear();
        with.input.str(with.text);
        change.real(one.real, other.real, with);
        with.input.clear();
        with.input.str(with.text);
        change.expected(one.expected, other.expected, with);
        expect(one.real.length() == one.expected.text().size() && one.real.c_str() == one.expected.text(), "the text");
        expect(one.real.capacity() == one.expected.capacity(), "the capacity");
        for (const pair_t &third : all)
            expect((one.real.c_str() == third.real.c_str()) == one.expected.sharesWith(third.expected),
                   "who shares the text");
    }
}

struct entry_t {
    char value;
    std::uint32_t key;
};

void changeTable(bytes_t &bytes) {
    vek::hashVtab table(sizeof(entry_t), [](const void *entry) { return static_cast<const entry_t *>(entry)->key; });
    table.setGrowthFactor(1.0 + 0.1 * static_cast<double>(bytes.below(11)));
    table.setLoadFactor(0.1 * static_cast<double>(1 + bytes.below(10)));
    std::unordered_map<std::uint32_t, char> expected;
    while (!bytes.isAtEnd()) {
        const std::size_t what = bytes.next();
        const auto key = static_cast<std::uint32_t>(bytes.next() * (what % 2 == 0 ? 1 : 10));
        const entry_t entry{static_cast<char>(what), key};
        if (what % 3 > 0) {
            const bool isAdded = key == 0 || expected.emplace(key, entry.value).second;
            expect((table.insert(&entry) == nullptr) == isAdded, "whether the entry was new");
        } else if (expected.erase(key) > 0) { // removing an absent key would grow the table
            table.remove(&entry);
        }
        const auto *found = static_cast<const entry_t *>(table.find(key));
        expect(found != nullptr ? expected.contains(key) && expected[key] == found->value : !expected.contains(key),
               "what is found");
        expect(table.count() == static_cast<std::int32_t>(expected.size()) && table.count() < table.threshold() &&
                   table.threshold() < table.length(),
               "the sizes");
    }
    vek::hashVtabIterator_t walk(table);
    while (const auto *entry = static_cast<const entry_t *>(walk.next()))
        expect(expected.erase(entry->key) == 1, "that the walk meets every entry once");
    expect(expected.empty(), "that the walk meets every entry");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    bytes_t bytes(data, size);
    const std::size_t what = bytes.next();
    if (what % 2 == 0) {
        changeTable(bytes);
        return 0;
    }
    if (what % 16 == 1) // else the usual sizes
        setSizes(bytes.anyOf(std::array{0U, 10U, 63U, 64U, 100U}), bytes.anyOf(std::array{0U, 7U, 64U, 100U}),
                 bytes.anyOf(std::array{0U, 63U, 200U}));
    changeStrings(bytes);
    setSizes(63, 64, 63);
    vek::stringSettings.sizesChanged = false;
    return 0;
}
