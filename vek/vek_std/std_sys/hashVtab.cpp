#include "vek/vek_std/std_sys/hashVtab.hpp"

#include "vek/vek_std/std_sys/private/standardReals.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <ostream>
#include <string>
#include <utility>

namespace vek {
namespace {

constexpr char location[] = "vek_std/std_sys/hashVtab";
constexpr std::uint32_t outOfArrayLine = 149;
constexpr std::uint32_t badBoundLine = 156;
constexpr std::int32_t growthAddend = 10;

void reportOutOfArray() {
    report(" : OUT_OF_INTERNAL_ARRAY");
}
void reportBadBound() {
    report(" : BAD_BOUND_IN_INTERNAL_ARRAY");
}

/// The key of an entry that begins with it: the low half of a longer word.
template <class Word>
std::uint32_t firstWordKey(const void *entry) {
    Word word = 0;
    if (entry)
        std::memcpy(&word, entry, sizeof word);
    return static_cast<std::uint32_t>(word);
}

/// The product, cut toward zero.
std::int32_t scaled(std::int32_t n, float factor) {
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max() - growthAddend;
    return static_cast<std::int32_t>(std::min<double>(static_cast<double>(n) * static_cast<double>(factor), largest));
}

/// What is no number counts as too small.
float limited(double value, double lowest, double highest) {
    return static_cast<float>(value > lowest ? std::min(value, highest) : lowest);
}

/// Six significant digits, as streams write a number, in every locale.
std::string textOf(double value) {
    char text[32];
    return {text, writeStandardReal(value, realForm_t::sixDigits, text, text + sizeof text)};
}

} // namespace

constinit errorHook_t hashOutOfArrayHook = reportOutOfArray;
constinit errorHook_t hashBadBoundHook = reportBadBound;

constinit std::uint32_t hashVtab::findCounter = 0;
constinit std::uint32_t hashVtab::loopCounter = 0;

hashVtab::hashVtab(std::int32_t bytesPerEntry, keyFunction_t key) : keyFunction(key), entrySize(bytesPerEntry) {
    grow();
}

char *hashVtab::slot(std::int32_t index) const {
    return slots.get() + static_cast<std::ptrdiff_t>(index) * static_cast<std::ptrdiff_t>(entrySize);
}

/// The slot of the key, or the empty slot where it belongs.
char *hashVtab::probe(std::uint32_t key) const {
    ++findCounter;
    auto index = static_cast<std::int32_t>(key % static_cast<std::uint32_t>(slotCount));
    for (std::uint32_t found = keyOf(slot(index)); found != 0 && found != key; found = keyOf(slot(index))) {
        ++loopCounter;
        index = (index > 0 ? index : slotCount) - 1;
    }
    return slot(index);
}

void *hashVtab::find(std::uint32_t key) const {
    char *place = probe(key);
    return keyOf(place) != 0 ? place : nullptr;
}

void *hashVtab::insert(const void *entry) {
    const std::uint32_t key = keyOf(entry);
    if (key == 0)
        return nullptr;
    if (entries >= growthThreshold) // the last growth got no memory
        grow();
    char *place = probe(key);
    if (keyOf(place) != 0)
        return place;
    std::memcpy(place, entry, static_cast<std::size_t>(entrySize));
    if (++entries >= growthThreshold)
        grow();
    return nullptr;
}

hashVtab::word_t hashVtab::remove(const void *entry) {
    const auto *stored = static_cast<const char *>(find(keyOf(entry)));
    const word_t word = firstWord(stored);
    if (stored)
        rebuild(slotCount, stored);
    else
        grow();
    return word;
}

hashVtab::word_t hashVtab::firstWord(const void *entry) const {
    word_t word = 0;
    if (entry)
        std::memcpy(&word, entry, std::min(sizeof word, static_cast<std::size_t>(entrySize)));
    return word;
}

void hashVtab::grow() {
    std::int32_t newLength = slotCount;
    std::int32_t newThreshold = 0;
    do {
        newLength = scaled(newLength, lengthFactor) + growthAddend;
        newThreshold = scaled(newLength, thresholdFactor);
    } while (entries >= newThreshold);
    rebuild(newLength, nullptr);
    growthThreshold = newThreshold;
}

/// Moves the entries, except a dropped one, to a new array. There are no marks of deleted entries to step over.
void hashVtab::rebuild(std::int32_t newLength, const char *dropped) {
    const auto size = static_cast<std::size_t>(newLength) * static_cast<std::size_t>(entrySize);
    const std::unique_ptr<char[]> old = std::exchange(slots, std::make_unique<char[]>(size));
    const std::int32_t oldLength = std::exchange(slotCount, newLength);
    const char *entry = old.get();
    for (std::int32_t i = 0; i < oldLength; ++i, entry += entrySize) {
        if (entry == dropped)
            --entries;
        else if (const std::uint32_t key = keyOf(entry))
            std::memcpy(probe(key), entry, static_cast<std::size_t>(entrySize));
    }
}

void hashVtab::resetStatistics() {
    findCounter = loopCounter = 0;
}

void hashVtab::setGrowthFactor(double factor) {
    lengthFactor = limited(factor, 1.01, 2.0);
    resetStatistics();
}

void hashVtab::setLoadFactor(double factor) {
    thresholdFactor = limited(factor, 0.1, 0.99);
    resetStatistics();
}

void hashVtab::printStatistics(std::ostream &stream) const {
    const double average = static_cast<double>(loopCounter) / std::max(findCounter, 1U);
    const auto filled = static_cast<std::int32_t>(std::trunc(entries * 100.0 / slotCount + 0.5));
    stream << "\nlength=" + std::to_string(slotCount) + " sz=" + std::to_string(entrySize) +
                  " count=" + std::to_string(entries) + " capacity=" + std::to_string(growthThreshold) +
                  " average loops/finds=" + textOf(average) + ". %filled=" + std::to_string(filled);
}

wordVtab_t::wordVtab_t(keyFunction_t key)
    : hashVtab(static_cast<std::int32_t>(sizeof(word_t)), key ? key : firstWordKey<word_t>) {}

ordinalVtab_t::ordinalVtab_t() : hashVtab(static_cast<std::int32_t>(sizeof(pair_t)), firstWordKey<std::uint32_t>) {}

std::uint32_t ordinalVtab_t::insertOrdinal(std::uint32_t key) {
    const pair_t pair{key, static_cast<std::uint32_t>(count()) + 1};
    const auto *stored = static_cast<const pair_t *>(insert(&pair));
    return stored ? stored->ordinal : 0;
}

hashVtabIterator_t::hashVtabIterator_t(const hashVtab &walked, const void *entry) : table(walked) {
    if (entry)
        startAt(static_cast<const char *>(entry));
}

void hashVtabIterator_t::startAt(const char *entry) {
    // As numbers, since the pointer may be to anything: an offset before the first slot is a very large one.
    const auto first = reinterpret_cast<std::uintptr_t>(table.slots.get());
    const auto place = reinterpret_cast<std::uintptr_t>(entry);
    const std::uintptr_t offset = place - first;
    const auto size = static_cast<std::uintptr_t>(table.entrySize);
    if (offset / size >= static_cast<std::uintptr_t>(table.slotCount)) {
        signalError(location, outOfArrayLine, hashOutOfArrayHook);
        index = place < first ? -1 : table.slotCount;
    } else if (offset % size != 0) {
        signalError(location, badBoundLine, hashBadBoundHook);
    } else {
        index = static_cast<std::int32_t>(offset / size);
    }
}

void *hashVtabIterator_t::next() {
    while (index < table.slotCount && ++index < table.slotCount) {
        if (char *entry = table.slot(index); table.keyOf(entry) != 0)
            return entry;
    }
    index = -1;
    return nullptr;
}

} // namespace vek
