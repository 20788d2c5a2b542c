// hashVtab, a hash table of entries of one size, and its iterator.
//
// Entries are stored by value in one array of slots, which the table owns, and found by a 32-bit key that a function
// reads from the entry. A key of 0 marks an empty slot: such an entry can't be stored, and a zero-filled entry must
// have the key 0. Pointers to stored entries hold until the table grows or an entry is removed. Entries are copied as
// bytes; nothing is run on them. When memory runs out, std::bad_alloc is thrown and the table is as it was before it
// grew.
//
// Thread rule: a table is one thread's at a time. The statistics counters, which all tables share, count every thread.
#pragma once

#include "vek/vek_std/std_sys/vek_stdlib.hpp"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>

namespace vek {

/// Hooks for iterators that are started from a bad place. The defaults report " : OUT_OF_INTERNAL_ARRAY" and
/// " : BAD_BOUND_IN_INTERNAL_ARRAY".
extern processWide_t<errorHook_t> hashOutOfArrayHook;
extern processWide_t<errorHook_t> hashBadBoundHook;

class hashVtab {
public:
    /// Reads the key of an entry.
    using keyFunction_t = std::uint32_t (*)(const void *entry);
    /// The first word of an entry: large enough for a pointer. Entries of some tables begin with a shorter one.
    using word_t = std::uintptr_t;

    /// An empty table of 10 slots for entries of so many bytes.
    hashVtab(std::int32_t bytesPerEntry, keyFunction_t key) : hashVtab(bytesPerEntry, key, sizeof(word_t)) {}
    hashVtab(const hashVtab &) = delete;
    hashVtab &operator=(const hashVtab &) = delete;

    /// The stored entry with that key, or null.
    void *find(std::uint32_t key) const;
    /// Stores a copy of the entry. Null when it was added, or has the key 0; else the entry stored before under its
    /// key, which stays as it is.
    void *insert(const void *entry);
    /// Removes the stored entry with this entry's key and returns its first word. When there is none, the table grows
    /// and 0 is returned.
    word_t remove(const void *entry);

    std::int32_t count() const { return entries_; }
    /// Slots, empty or not.
    std::int32_t length() const { return slotCount_; }
    /// The count at which the table grows.
    std::int32_t threshold() const { return growthThreshold_; }

    /// How the length grows, 1.01 to 2.0, and how full the table may get, 0.1 to 0.99, from its next growth on. What
    /// lies outside becomes the nearer limit. Both reset the statistics counters.
    void setGrowthFactor(double factor);
    void setLoadFactor(double factor);
    float growthFactor() const { return lengthFactor_; }
    float loadFactor() const { return thresholdFactor_; }

    /// Writes one line, begun by a line end, on sizes and probing.
    void printStatistics(std::ostream &stream) const;
    /// Since the last reset, over all tables: probe sequences started, and slots they visited beyond the first.
    static std::uint32_t finds() { return findCounter_; }
    static std::uint32_t loops() { return loopCounter_; }

protected:
    /// A table whose entries begin with a word of so many bytes.
    hashVtab(std::int32_t bytesPerEntry, keyFunction_t key, std::size_t bytesPerWord);

    std::uint32_t keyOf(const void *entry) const { return keyFunction_(entry); }
    /// The first word of an entry, filled up with zeros; 0 for null.
    word_t firstWord(const void *entry) const;

private:
    friend class hashVtabIterator_t;

    char *slot(std::int32_t index) const;
    char *probe(std::uint32_t key) const;
    void grow();
    void rebuild(std::int32_t newLength, const char *dropped);
    static void resetStatistics();

    keyFunction_t keyFunction_;
    std::int32_t growthThreshold_ = 0;
    std::int32_t entries_ = 0;
    std::int32_t slotCount_ = 0;
    std::int32_t entrySize_;
    std::size_t wordSize_; // no more than an entry has
    std::unique_ptr<char[]> slots_;
    float lengthFactor_ = 1.2F;
    float thresholdFactor_ = 0.8F;

    static processWide_t<std::uint32_t> findCounter_;
    static processWide_t<std::uint32_t> loopCounter_;
};

/// A table whose entry is one word, such as a pointer.
struct wordVtab_t : hashVtab {
    /// Without a key function, the low 32 bits of the word are its key.
    explicit wordVtab_t(keyFunction_t key = nullptr);

    /// The stored word with that key, or with the entry's key; 0 when there is none.
    word_t lookup(std::uint32_t key) const { return firstWord(find(key)); }
    word_t lookup(const void *entry) const { return lookup(keyOf(entry)); }
};

/// A table that numbers keys 1, 2, 3 ... in the order of their first insertion. The first word of a pair is its key.
struct ordinalVtab_t : hashVtab {
    struct pair_t {
        std::uint32_t key;
        std::uint32_t ordinal;
    };

    ordinalVtab_t();

    /// 0 when the key was new (or is 0), else the number it got before.
    std::uint32_t insertOrdinal(std::uint32_t key);
};

/// Walks the entries of a table in slot order. The table must outlive it.
class hashVtabIterator_t {
public:
    /// Starts behind a stored entry, or at the beginning for null. A pointer to no entry is reported, and starts at
    /// the beginning; one behind the array ends the walk.
    explicit hashVtabIterator_t(const hashVtab &walked, const void *entry = nullptr);

    /// The following entry; null at the end, after which the walk begins anew.
    void *next();

private:
    void startAt(const char *entry);

    const hashVtab &table_;
    std::int32_t index_ = -1; // -1 before the first entry and after the last
};

} // namespace vek
