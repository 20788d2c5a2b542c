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
// The lines that reports name. They are fixed: a report stays the same when the code around it moves.
constexpr std::uint32_t outOfArrayLine = 149;
constexpr std::uint32_t badBoundLine = 156;
constexpr std::int32_t growthAddend = 10;

void reportOutOfArray() {
    report(" : OUT_OF_INTERNAL_ARRAY");
}
void reportBadBound() {
    report(" : BAD_BOUND_IN_INTERNAL_ARRAY");
}

// The key of an entry that begins with it: the low half of a longer word.
template <class Word>
std::uint32_t firstWordKey(const void *entry) {
    Word word = 0;
    if (entry)
        std::memcpy(&word, entry, sizeof word);
    return static_cast<std::uint32_t>(word);
}

// The product, cut toward zero. Lengths are read back by hosts, so they must come out the same everywhere: double
// holds them all, which float does not above 2^24. The limit leaves room for the addend that callers put on top.
std::int32_t scaled(std::int32_t n, float factor) {
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max() - growthAddend;
    return static_cast<std::int32_t>(std::min<double>(static_cast<double>(n) * static_cast<double>(factor), largest));
}

// The comparison is written so that what is no number counts as too small: no length can be computed with it.
float limited(double value, double lowest, double highest) {
    return static_cast<float>(value > lowest ? std::min(value, highest) : lowest);
}

// Six significant digits, as streams write a number, in every locale.
std::string textOf(double value) {
    char text[32];
    return {text, writeStandardReal(value, realForm_t::sixDigits, text, text + sizeof text)};
}

} // namespace

constinit processWide_t<errorHook_t> hashOutOfArrayHook = reportOutOfArray;
constinit processWide_t<errorHook_t> hashBadBoundHook = reportBadBound;

constinit processWide_t<std::uint32_t> hashVtab::findCounter_ = 0;
constinit processWide_t<std::uint32_t> hashVtab::loopCounter_ = 0;

hashVtab::hashVtab(std::int32_t bytesPerEntry, keyFunction_t key, std::size_t bytesPerWord)
    : keyFunction_(key), entrySize_(bytesPerEntry),
      wordSize_(std::min(bytesPerWord, static_cast<std::size_t>(bytesPerEntry))) {
    grow();
}

char *hashVtab::slot(std::int32_t index) const {
    return slots_.get() + static_cast<std::ptrdiff_t>(index) * static_cast<std::ptrdiff_t>(entrySize_);
}

// The slot of the key, or the empty slot where it belongs. Walks down from the key's own slot and around the lower
// end: iterators show the slot order, so the direction is not free to change. The walk ends because the threshold is
// below the length, which leaves at least one slot empty.
char *hashVtab::probe(std::uint32_t key) const {
    findCounter_.fetchAdd(1);
    auto index = static_cast<std::int32_t>(key % static_cast<std::uint32_t>(slotCount_));
    for (std::uint32_t found = keyOf(slot(index)); found != 0 && found != key; found = keyOf(slot(index))) {
        loopCounter_.fetchAdd(1);
        index = (index > 0 ? index : slotCount_) - 1;
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
    // Growing follows storing, so the entry is in the table even when the growth then throws. The next insertion makes
    // up for it first, or the last empty slot, where every search ends, could be filled.
    if (entries_ >= growthThreshold_)
        grow();
    char *place = probe(key);
    if (keyOf(place) != 0)
        return place;
    std::memcpy(place, entry, static_cast<std::size_t>(entrySize_));
    if (++entries_ >= growthThreshold_)
        grow();
    return nullptr;
}

// That a removal in vain lets the table grow is of no use to it, but callers see the length and the slot order.
hashVtab::word_t hashVtab::remove(const void *entry) {
    const auto *stored = static_cast<const char *>(find(keyOf(entry)));
    const word_t word = firstWord(stored);
    if (stored != nullptr)
        rebuild(slotCount_, stored);
    else
        grow();
    return word;
}

// Entries need not be aligned. A shorter word comes first in memory, which makes it the low half on the targets, all of
// them little-endian.
hashVtab::word_t hashVtab::firstWord(const void *entry) const {
    word_t word = 0;
    if (entry != nullptr)
        std::memcpy(&word, entry, wordSize_);
    return word;
}

// Grows at least once, and on while the new length has no room either: the factors may have been set lower since the
// last growth. The threshold is set last, so that it stays with the old array when there is no memory for a new one.
void hashVtab::grow() {
    std::int32_t newLength = slotCount_;
    std::int32_t newThreshold = 0;
    do {
        newLength = scaled(newLength, lengthFactor_) + growthAddend;
        newThreshold = scaled(newLength, thresholdFactor_);
    } while (entries_ >= newThreshold);
    rebuild(newLength, nullptr);
    growthThreshold_ = newThreshold;
}

// Moves the entries, except a dropped one, to a new array. An entry can't just be taken out of its slot: those that
// were probed past it would no longer be found. Marks of deleted entries would keep them in reach, but fill the table.
// The new array is there before anything changes, so a failed growth or removal leaves the table as it was.
void hashVtab::rebuild(std::int32_t newLength, const char *dropped) {
    const auto size = static_cast<std::size_t>(newLength) * static_cast<std::size_t>(entrySize_);
    const std::unique_ptr<char[]> old = std::exchange(slots_, std::make_unique<char[]>(size));
    const std::int32_t oldLength = std::exchange(slotCount_, newLength);
    const char *entry = old.get();
    for (std::int32_t i = 0; i < oldLength; ++i, entry += entrySize_) {
        if (entry == dropped)
            --entries_;
        else if (const std::uint32_t key = keyOf(entry); key != 0)
            std::memcpy(probe(key), entry, static_cast<std::size_t>(entrySize_));
    }
}

void hashVtab::resetStatistics() {
    findCounter_ = 0;
    loopCounter_ = 0;
}

void hashVtab::setGrowthFactor(double factor) {
    lengthFactor_ = limited(factor, 1.01, 2.0);
    resetStatistics();
}

void hashVtab::setLoadFactor(double factor) {
    thresholdFactor_ = limited(factor, 0.1, 0.99);
    resetStatistics();
}

void hashVtab::printStatistics(std::ostream &stream) const {
    const double average = static_cast<double>(loopCounter_) / std::max(findCounter_.get(), 1U);
    const auto filled = static_cast<std::int32_t>(std::trunc(entries_ * 100.0 / slotCount_ + 0.5));
    stream << "\nlength=" + std::to_string(slotCount_) + " sz=" + std::to_string(entrySize_) +
                  " count=" + std::to_string(entries_) + " capacity=" + std::to_string(growthThreshold_) +
                  " average loops/finds=" + textOf(average) + ". %filled=" + std::to_string(filled);
}

wordVtab_t::wordVtab_t(keyFunction_t key)
    : hashVtab(static_cast<std::int32_t>(sizeof(word_t)), key != nullptr ? key : firstWordKey<word_t>) {}

ordinalVtab_t::ordinalVtab_t()
    : hashVtab(static_cast<std::int32_t>(sizeof(pair_t)), firstWordKey<std::uint32_t>, sizeof(pair_t::key)) {}

std::uint32_t ordinalVtab_t::insertOrdinal(std::uint32_t key) {
    const pair_t pair{key, static_cast<std::uint32_t>(count()) + 1};
    const auto *stored = static_cast<const pair_t *>(insert(&pair));
    return stored != nullptr ? stored->ordinal : 0;
}

hashVtabIterator_t::hashVtabIterator_t(const hashVtab &walked, const void *entry) : table_(walked) {
    if (entry != nullptr)
        startAt(static_cast<const char *>(entry));
}

void hashVtabIterator_t::startAt(const char *entry) {
    // As numbers, since the pointer may be to anything: an offset before the first slot is a very large one.
    const auto first = reinterpret_cast<std::uintptr_t>(table_.slots_.get());
    const auto place = reinterpret_cast<std::uintptr_t>(entry);
    const std::uintptr_t offset = place - first;
    const auto size = static_cast<std::uintptr_t>(table_.entrySize_);
    if (offset / size >= static_cast<std::uintptr_t>(table_.slotCount_)) {
        signalError(location, outOfArrayLine, hashOutOfArrayHook);
        index_ = place < first ? -1 : table_.slotCount_;
    } else if (offset % size != 0) {
        signalError(location, badBoundLine, hashBadBoundHook);
    } else {
        index_ = static_cast<std::int32_t>(offset / size);
    }
}

// The first test keeps an iterator that started behind the array from counting on; both ends lead to -1, from where
// the walk begins anew.
void *hashVtabIterator_t::next() {
    while (index_ < table_.slotCount_ && ++index_ < table_.slotCount_) {
        if (char *entry = table_.slot(index_); table_.keyOf(entry) != 0)
            return entry;
    }
    index_ = -1;
    return nullptr;
}

} // namespace vek
