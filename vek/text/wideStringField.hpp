// 16-bit texts, which stand in a body as lists of character codes, the terminating 0 included: "Hi" is {72,105,0,}.
//
// These fields keep their values and own their storage. Threads may read one at the same time, as long as none changes
// it.
#pragma once

#include "vek/text/fieldArray.hpp"
#include "vek/text/growableList.hpp"
#include "vek/vek_std/std_sys/vek_lifetime.hpp"

#include <algorithm>
#include <atomic>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string_view>

namespace vek {

/// One character of a 16-bit text. Codes of 0x8000 and above are written as the signed 16-bit number.
struct wideCharacter_t {
    std::int16_t code = 0;
    std::uint16_t isSet = 0;

    bodyWriter_t writeElement(bodyWriter_t out) const;
    void fromText(std::string_view text);
    canonicalCursor_t readAt(canonicalCursor_t at);
};

/// The characters of one 16-bit text.
class wideElements_t {
public:
    explicit wideElements_t(pass_t) {}

    wideCharacter_t &element(std::int32_t index, pass_t) { return characters_[index]; }
    const wideCharacter_t &element(std::int32_t index, pass_t) const { return characters_[index]; }
    bodyWriter_t write(std::int32_t index, bodyWriter_t out) const { return characters_[index].writeElement(out); }
    std::int32_t printed() const { return characters_.count(); }
    std::int32_t allocated() const { return characters_.count(); }
    wideCharacter_t *begin() { return characters_.begin(); }
    const wideCharacter_t *begin() const { return characters_.begin(); }
    void append() { characters_.add(); }
    void clear() { characters_.clear(); }
    void allocate(std::int32_t count) { characters_.resize(count); }
    void reserve(std::int32_t count) { characters_.reserve(count); }
    void describe(fieldDescription_t &description) const;

private:
    growableList_t<wideCharacter_t> characters_;
};

/// The characters of a 16-bit text one behind the other, made when they are first asked for. Threads may ask at the
/// same time; who changes it is alone.
class joinedCharacters_t {
public:
    joinedCharacters_t() = default;
    ~joinedCharacters_t() { std::free(made_.load(std::memory_order_relaxed)); }
    joinedCharacters_t(const joinedCharacters_t &) = delete;
    joinedCharacters_t &operator=(const joinedCharacters_t &) = delete;

    /// The first `count` characters of `elements`, and a 0 behind them. Throws std::bad_alloc.
    const char16_t *of(const wideElements_t &elements, std::int32_t count) const {
        const char16_t *made = made_.load(std::memory_order_acquire);
        return made != nullptr ? made : make(elements, count);
    }
    void clear() {
        std::free(made_.load(std::memory_order_relaxed));
        made_.store(nullptr, std::memory_order_relaxed);
    }

private:
    const char16_t *make(const wideElements_t &elements, std::int32_t count) const;

    mutable std::atomic<char16_t *> made_ = nullptr; // of the C heap, as lists are
    [[maybe_unused]] std::uint32_t unused_[2] = {};  // the members behind lie where hosts were told
};

class wideStringField_t : public fieldArray_t<wideElements_t> {
public:
    wideStringField_t(textGroup_t &parent, std::string_view key) : fieldArray_t(parent, key) {}

    /// Element `ordinal` of a list with the given key.
    wideStringField_t(std::string_view outerKey, std::int32_t ordinal) : fieldArray_t(outerKey, ordinal) {}

    /// Takes a copy of the characters and a terminating 0, and sets the field.
    wideStringField_t &operator=(std::u16string_view text);
    wideStringField_t &operator=(const wideStringField_t &other) { return *this = other.text(); }
    void operator=(const std::convertible_to<std::string_view> auto &) = delete; // 16-bit characters: u"Spring"

    /// Takes over the values as they were read, and whether the field is set.
    void copyFrom(const wideStringField_t &other);

    /// The characters without the terminating 0; they are followed by a 0 in memory. Valid until the field changes. As
    /// everything that only reads, for any number of threads at once. Throws std::bad_alloc.
    std::u16string_view text() const VEK_LIFETIMEBOUND;
    operator std::u16string_view() const VEK_LIFETIMEBOUND { return text(); }
    bool operator==(std::u16string_view other) const { return text() == other; }
    bool operator==(const wideStringField_t &other) const { return text() == other.text(); }

    /// How many values the field was given: the characters and the terminating 0.
    std::int32_t count() const { return found_; }

    /// Whether each of the values stands in the text. One that was read from an empty quoted text does not.
    bool isWhole() const;

    /// Removes the text, and unsets the field.
    void clear();

    /// The parse pass. Characters beyond those of a text that the field held before are dropped, but counted.
    void fromText(std::string_view text) override;

    canonicalCursor_t readAt(canonicalCursor_t at) override;
    bodyWriter_t collectPairs(bodyWriter_t out) const override;

    void describe(fieldDescription_t &description) const override {
        fieldArray_t::describe(description);
        description.bindTo(*this);
    }

private:
    joinedCharacters_t text_;
};

/// The 16-bit texts of a list.
class wideStringElements_t {
public:
    wideStringElements_t(pass_t, std::string_view &key) : key_(key.data()), keyLength_(key.size()) {}

    wideStringField_t &element(std::int32_t index, pass_t) { return *texts_[index]; }
    const wideStringField_t &element(std::int32_t index, pass_t) const { return *texts_[index]; }
    bodyWriter_t write(std::int32_t index, bodyWriter_t out) const;
    std::int32_t printed() const { return texts_.count(); }
    std::int32_t allocated() const { return texts_.count(); }
    void append();
    void clear() { texts_.clear(); }
    void reserve(std::int32_t) {}
    void describe(fieldDescription_t &description) const;

    const std::unique_ptr<wideStringField_t> *begin() const { return texts_.begin(); }
    const std::unique_ptr<wideStringField_t> *end() const { return texts_.end(); }

private:
    const char *key_;
    std::size_t keyLength_;
    growableList_t<std::unique_ptr<wideStringField_t>> texts_;
};

struct wideStringListField_t : fieldArray_t<wideStringElements_t> {
    wideStringListField_t(textGroup_t &parent, std::string_view key) : fieldArray_t(parent, key, key) {}

    /// Goes over the texts themselves.
    template <class Text>
    struct iterator_t {
        using value_type = wideStringField_t;
        using difference_type = std::ptrdiff_t;
        using reference = Text &;
        using pointer = Text *;
        using iterator_category = std::forward_iterator_tag;

        const std::unique_ptr<wideStringField_t> *at = nullptr;

        Text &operator*() const { return **at; }
        Text *operator->() const { return at->get(); }
        iterator_t &operator++() {
            ++at;
            return *this;
        }
        iterator_t operator++(int) { return {at++}; }
        bool operator==(const iterator_t &) const = default;
    };

    /// Takes over the texts, and whether the field is set. Throws std::bad_alloc.
    void copyFrom(const wideStringListField_t &other);
    bool operator==(const wideStringListField_t &other) const {
        return std::equal(begin(), end(), other.begin(), other.end());
    }

    /// Appends a text and sets it. Throws std::bad_alloc.
    wideStringField_t &add(std::u16string_view text);
    void add(const std::convertible_to<std::string_view> auto &) = delete; // 16-bit characters: u"Cyan"

    void push_back(std::u16string_view text) { add(text); }

    std::int32_t count() const { return elements_.allocated(); }
    std::size_t size() const { return static_cast<std::size_t>(count()); }

    /// The text at `index`, which must be at least 0 and below count(); it is not checked.
    wideStringField_t &at(std::int32_t index) { return elements_.element(index, pass_t::parse); }
    const wideStringField_t &at(std::int32_t index) const { return elements_.element(index, pass_t::print); }
    wideStringField_t &operator[](std::integral auto index) { return at(static_cast<std::int32_t>(index)); }
    const wideStringField_t &operator[](std::integral auto index) const { return at(static_cast<std::int32_t>(index)); }

    /// Removes every text, and unsets the field.
    void clear();

    iterator_t<wideStringField_t> begin() { return {elements_.begin()}; }
    iterator_t<wideStringField_t> end() { return {elements_.end()}; }
    iterator_t<const wideStringField_t> begin() const { return {elements_.begin()}; }
    iterator_t<const wideStringField_t> end() const { return {elements_.end()}; }

    void describe(fieldDescription_t &description) const override {
        fieldArray_t::describe(description);
        description.bindTo(*this);
    }
};

} // namespace vek
