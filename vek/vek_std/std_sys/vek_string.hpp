// string_t, the text string of the message structures, and subString_t, a view into one.
//
// A string is a handle, one pointer, to a shared body: copying is one increment, and the first operation that changes
// a shared body makes a private copy. Buffers grow and shrink in the steps of stringSettings. Nothing throws: errors go
// to the hooks of stringRep_t, then a fallback holds. A string that got no memory has a null body: its length is 0, it
// reads as "", and every operation on it is safe and tries again for memory.
//
// Positions count from 0; "not found" is all bits set. Upper and lower case are those of 7-bit letters, whatever the
// locale.
//
// Thread rule: none of this is guarded, and copies share; one thread at a time.
#pragma once

#include "vek/vek_std/std_sys/vek_stringRep.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vek {

class string_t;

/// A run of characters of a string. It owns nothing and is valid while its owner lives. The null view, which views
/// nothing and changes nothing, starts at -1.
class subString_t {
public:
    subString_t(string_t *viewed, std::int32_t first, std::uint32_t count)
        : owner_(viewed), startPosition_(first), characters_(count) {}
    subString_t(const subString_t &) = default;
    /// Views what the other view views; the characters stay as they are.
    subString_t &operator=(const subString_t &) = default;

    /// Replaces the viewed characters in the owner and views the new text. A null pointer stands for "".
    subString_t &operator=(const string_t &text);
    subString_t &operator=(const char *text);

    /// Are the texts equal? Null equals a view of no characters. While case counts, the owner's text takes part from
    /// the view's start to its own end, not only to the view's end.
    bool operator==(const char *text) const;

    void toLower();
    void toUpper();

    /// The view's character i, in an owner made private. A bad index is reported and gives the first character.
    char &operator[](std::int32_t i);

    bool isNull() const { return startPosition_ < 0; }
    std::int32_t start() const { return startPosition_; }
    std::uint32_t extent() const { return characters_; }

private:
    friend class string_t;
    subString_t &assign(const char *text, std::size_t length);
    /// Where the viewed characters begin, and how many of them the owner still has.
    const char *begin() const;
    std::size_t present() const;

    string_t *owner_;
    std::int32_t startPosition_;
    std::uint32_t characters_;
};

/// A handle to a shared text.
class string_t {
public:
    static constexpr std::size_t notFound = static_cast<std::size_t>(-1);

    /// What strip takes away.
    enum stripMode_t { leading_e = 0, trailing_e = 1, both_e = 2 };

    string_t() : body(stringRep_t::empty()) {}
    /// n times the character c.
    string_t(std::size_t n, char c);
    /// A copy of the text; of "" for a null pointer.
    string_t(const char *text);
    /// A copy of at most n characters, up to the terminator; nothing behind the n characters is read.
    string_t(const char *text, std::size_t n);
    /// A copy of the viewed characters.
    string_t(const subString_t &view);
    string_t(const string_t &other) noexcept : body(stringRep_t::share(other.body)) {}
    /// Leaves the other with a null body.
    string_t(string_t &&other) noexcept : body(std::exchange(other.body, nullptr)) {}
    ~string_t() { stringRep_t::release(body); }

    string_t &operator=(const string_t &other) {
        string_t shared(other); // counted before this string's own body is released
        std::swap(body, shared.body);
        return *this;
    }
    string_t &operator=(string_t &&other) noexcept {
        std::swap(body, other.body);
        return *this;
    }

    std::size_t length() const { return body != nullptr ? body->length : 0; }
    /// Characters that fit without a larger buffer.
    std::size_t capacity() const { return body != nullptr ? body->capacity : 0; }
    /// The text with its terminator. Valid until this string is changed, assigned to or destroyed.
    const char *c_str() const { return body != nullptr ? body->data : ""; }
    /// A string of the same text that shares no body with this one.
    string_t deepCopy() const { return {ownBody_t(), makeBody(c_str(), length())}; }

    // Changing. Source texts may be part of this very string.

    /// Appends the text; a null pointer appends nothing.
    string_t &append(const char *text) { return append(text, text != nullptr ? std::strlen(text) : 0); }
    /// Appends exactly n characters; n blanks for a null pointer.
    string_t &append(const char *text, std::size_t n);
    string_t &prepend(const char *text) { return prepend(text, text != nullptr ? std::strlen(text) : 0); }
    string_t &prepend(const char *text, std::size_t n) { return replace(0, 0, text, n); }
    /// Replaces `removed` characters at `position` by exactly `inserted` characters of `source`, by blanks when it is
    /// null. What lies behind the end of the text is left out of `position` and `removed`.
    string_t &replace(std::size_t position, std::size_t removed, const char *source, std::size_t inserted);
    void toLower();
    void toUpper();

    /// Character i, in a body made private. A bad index is reported and gives the first character; of an empty string,
    /// one that belongs to no text.
    char &operator[](std::int32_t i);

    // Comparing: by bytes up to the terminator, or without regard to case when the settings say so.

    /// -1, 0 or 1.
    int compareTo(const string_t &other) const;
    /// Null equals the empty string.
    bool operator==(const char *text) const;
    bool operator<(const char *text) const;
    /// No letter of the other case. True for the empty string.
    bool isUpper() const;
    bool isLower() const;
    /// Equal texts hash equal, also without regard to case.
    std::uint32_t hash() const;

    // Searching, from `start` on. Without regard to case when the settings say so, except for sets.

    /// Position of the pattern, whose length is stored. A null pattern is empty; an empty pattern is found at `start`.
    std::size_t index(const char *pattern, std::size_t start, std::size_t &patternLength) const;
    std::size_t index(const char *pattern, std::size_t start = 0) const;
    std::size_t index(const string_t &pattern, std::size_t start = 0) const { return index(pattern.c_str(), start); }
    std::size_t first(char c, std::size_t start = 0) const;
    /// First character that belongs to the set; a null set has none.
    std::size_t first(const char *set, std::size_t start = 0) const;
    std::size_t last(char c) const;

    // Viewing.

    /// The view of `extent` characters from `start`, or the null view when they are not all there.
    subString_t operator()(std::ptrdiff_t start, std::size_t extent);
    /// The view of the first occurrence of the pattern, or the null view.
    subString_t subString(const char *pattern, std::size_t start = 0);
    /// The view without the leading and trailing characters c, or the null view when nothing else is there.
    subString_t strip(stripMode_t mode = both_e, char c = ' ');

private:
    friend class subString_t;
    template <class>
    friend struct layoutOf; // pins where the members lie
    friend class stringReader_t;
    friend string_t concatenated(const char *head, std::size_t headLength, const char *tail, std::size_t tailLength);

    struct ownBody_t {};
    /// Takes over the body's reference.
    string_t(ownBody_t, stringRep_t *made) : body(made) {}
    static stringRep_t *makeBody(std::size_t length) {
        return length > 0 ? stringRep_t::make(length) : stringRep_t::empty();
    }
    static stringRep_t *makeBody(const char *text, std::size_t length) {
        return length > 0 ? stringRep_t::make(text, length) : stringRep_t::empty();
    }
    /// Makes the body private; false without memory, with a null body.
    bool makePrivate();
    /// Keeps the body after a change that went well, else leaves a null body.
    void keepIf(bool changed);
    /// The character at `position`, made private; a spare one when there is none.
    char &characterAt(std::size_t position);
    void mapCharacters(std::size_t position, std::size_t count, char (*map)(char));

    stringRep_t *body;
};

static_assert(sizeof(string_t) == sizeof(void *));

inline string_t &string_t::append(const char *text, std::size_t n) {
    // The common case: room is left, and the capacity is the rounded one before and after.
    if (body != nullptr && body->isPrivate() && text != nullptr && n <= body->capacity - body->length &&
        !stringSettings.sizesChanged) [[likely]] {
        char *end = body->data + body->length;
        body->length += static_cast<std::uint32_t>(n);
        std::memmove(end, text, n);
        end[n] = '\0';
        return *this;
    }
    return replace(length(), 0, text, n);
}

/// Each builds a new string of both texts; a null pointer stands for "".
string_t operator+(const string_t &head, const char *tail);
string_t operator+(const char *head, const string_t &tail);
string_t operator+(const string_t &head, const string_t &tail);

string_t toLower(const string_t &text);
string_t toUpper(const string_t &text);
inline bool isUpper(const string_t &text) {
    return text.isUpper();
}
inline bool isLower(const string_t &text) {
    return text.isLower();
}

} // namespace vek
