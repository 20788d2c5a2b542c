// string_t, the text string of the message structures, and subString_t, a view into one.
//
// A string is a handle, one pointer, to a shared body: copying is one increment, and the first operation that changes
// a shared body makes a private copy. Buffers grow and shrink in the steps of stringSettings. Nothing throws: errors go
// to the hooks of stringRep_t, then a fallback holds. A string that got no memory has a null body: its length is 0, it
// reads as "", and every operation on it is safe and tries again for memory.
//
// It meets the standard library's texts by value: what shows itself as a std::string_view, std::string above all, makes
// one, is assigned, compared and appended; a string_t is seen as a std::string_view. A view of it is valid as long as
// c_str().
//
// Positions count from 0; "not found" is all bits set. Upper and lower case are those of 7-bit letters, whatever the
// locale.
//
// Thread rule: a string is one thread's at a time. Strings of several threads may share a body.
#pragma once

#include "vek/vek_std/std_sys/vek_lifetime.hpp"
#include "vek/vek_std/std_sys/vek_stringRep.hpp"

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <string_view>
#include <type_traits>
#include <utility>

namespace vek {

class string_t;

/// The texts of the standard library. C strings, which may be null, have operations of their own.
template <class Text>
concept standardText_t = !std::derived_from<Text, string_t> && !std::convertible_to<const Text &, const char *> &&
                         std::convertible_to<const Text &, std::string_view>;

/// A run of characters of a string. It owns nothing and is valid while its owner lives. The null view, which views
/// nothing and changes nothing, starts at -1.
class subString_t {
public:
    subString_t(string_t *viewed, std::int32_t first, std::uint32_t count)
        : owner_(viewed), startPosition_(first), characters_(count) {}
    subString_t(const subString_t &) = default;
    /// A view that is kept views what the other view views; the characters stay as they are.
    subString_t &operator=(const subString_t &) & = default;
    /// A view that was just made, as in `a(0, 2) = b(0, 2)`, has its characters replaced by those of the other.
    subString_t &operator=(const subString_t &text) &&;

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
    enum stripMode_t : std::int32_t { leading_e = 0, trailing_e = 1, both_e = 2 };

    string_t() : body(stringRep_t::empty()) {}
    /// n times the character c.
    string_t(std::size_t n, char c);
    /// A copy of the text; of "" for a null pointer.
    string_t(const char *text);
    /// A copy of at most n characters, up to the terminator; nothing behind the n characters is read.
    string_t(const char *text, std::size_t n);
    /// A copy of the viewed characters.
    string_t(const subString_t &view);
    /// A copy of the whole text, NULs included.
    template <standardText_t Text>
    string_t(const Text &text) : string_t(ownBody_t(), std::string_view(text)) {}
    /// The text of a constant body. (With other sizes than the default ones, a copy that has them.)
    explicit string_t(const stringRep_t &constant)
        : body(stringSettings.sizesChanged ? makeBody(constant.data, constant.length)
                                           : const_cast<stringRep_t *>(&constant)) {}
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
    const char *c_str() const VEK_LIFETIMEBOUND { return body != nullptr ? body->data : ""; }
    /// A copy of the text, which has no NUL.
    static string_t copyOf(std::string_view text) { return {ownBody_t(), makeBody(text.data(), text.size())}; }
    /// The text, NULs in it included.
    operator std::string_view() const VEK_LIFETIMEBOUND { return {c_str(), length()}; }
    /// A string of the same text that shares no body with this one.
    string_t deepCopy() const { return {ownBody_t(), makeBody(c_str(), length())}; }

    // Changing. Source texts may be part of this very string.

    /// Appends the text; a null pointer appends nothing.
    string_t &append(const char *text) { return append(text, text != nullptr ? std::strlen(text) : 0, true); }
    /// Appends exactly n characters; n blanks for a null pointer.
    string_t &append(const char *text, std::size_t n) { return append(text, n, false); }
    string_t &append(std::string_view text) { return append(text.data(), text.size()); }
    string_t &prepend(const char *text) { return prepend(text, text != nullptr ? std::strlen(text) : 0); }
    string_t &prepend(const char *text, std::size_t n) { return replace(0, 0, text, n); }
    /// Replaces `removed` characters at `position` by exactly `inserted` characters of `source`, by blanks when it is
    /// null. What lies behind the end of the text is left out of `position` and `removed`.
    string_t &replace(std::size_t position, std::size_t removed, const char *source, std::size_t inserted);
    void toLower();
    void toUpper();

    /// Character i, in a body made private. A bad index is reported and gives the first character; of an empty string,
    /// one that belongs to no text.
    char &operator[](std::int32_t i) VEK_LIFETIMEBOUND;

    // Comparing: by bytes, or without regard to case when the settings say so. compareTo and the comparisons with a C
    // string go up to the first NUL, the others over the whole texts.

    /// -1, 0 or 1.
    int compareTo(const string_t &other) const;
    /// Null equals the empty string.
    bool operator==(const char *text) const;
    bool operator<(const char *text) const;
    bool operator==(const string_t &other) const { return body == other.body || compareWhole(other) == 0; }
    template <standardText_t Text>
    bool operator==(const Text &text) const {
        return compareWhole(text) == 0;
    }
    std::weak_ordering operator<=>(const char *text) const;
    std::weak_ordering operator<=>(const string_t &other) const { return compareWhole(other) <=> 0; }
    template <standardText_t Text>
    std::weak_ordering operator<=>(const Text &text) const {
        return compareWhole(text) <=> 0;
    }
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
    /// Of a character's code, as in first(0), which is no null set.
    template <std::integral Code>
    std::size_t first(Code code, std::size_t start = 0) const {
        return first(static_cast<char>(code), start);
    }
    /// First character that belongs to the set; a null set has none.
    std::size_t first(const char *set, std::size_t start = 0) const;
    std::size_t last(char c) const;

    // Viewing.

    /// The view of `extent` characters from `start`, or the null view when they are not all there.
    subString_t operator()(std::ptrdiff_t start, std::size_t extent) VEK_LIFETIMEBOUND;
    /// The view of the first occurrence of the pattern, or the null view.
    subString_t subString(const char *pattern, std::size_t start = 0) VEK_LIFETIMEBOUND;
    /// The view without the leading and trailing characters c, or the null view when nothing else is there. The mode is
    /// one of stripMode_t, or its number; any other number stands for both ends.
    subString_t strip(std::int32_t mode = both_e, char c = ' ') VEK_LIFETIMEBOUND;
    subString_t strip(char c) = delete; // no mode

    // Reading from a stream. Each does nothing when the stream has failed already. Else it replaces the text, whose
    // buffer then has the capacity of its length, and returns the stream. As with std::getline, the stream fails when
    // it ends before a character was read, a text that the end of the stream cuts off is read well, and a stream buffer
    // that throws makes the stream bad. White space is that of 7-bit text.

    /// Reads up to `delim`, which is consumed and not stored.
    std::istream &readToDelim(std::istream &stream, char delim);
    /// Reads one word, of any width, and resets the stream's. White space before it is skipped, as the stream's skipws
    /// flag says; that behind it stays.
    std::istream &readToken(std::istream &stream);
    /// Skips white space, unless the settings say otherwise, then reads up to the end of the line, which is consumed.
    std::istream &readLine(std::istream &stream);

private:
    friend class subString_t;
    template <class>
    friend struct layoutOf; // pins where the members lie
    friend class stringReader_t;
    friend string_t concatenated(const char *head, std::size_t headLength, const char *tail, std::size_t tailLength);

    struct ownBody_t {};
    /// Takes over the body's reference.
    string_t(ownBody_t, stringRep_t *made) : body(made) {}
    string_t(ownBody_t, std::string_view text) : body(makeBody(text.data(), text.size())) {}
    static stringRep_t *makeBody(std::size_t length) {
        return length > 0 ? stringRep_t::make(length) : stringRep_t::empty();
    }
    static stringRep_t *makeBody(const char *text, std::size_t length) {
        return length > 0 ? stringRep_t::make(text, length) : stringRep_t::empty();
    }
    /// Does the text begin in this one?
    bool isOwnText(const char *text) const;
    /// The common case of append: room is left, and the capacity is the rounded one before and after. What is rare is
    /// one call that shares nothing with it, so that the common case runs straight through.
    static bool hasRoom(const stringRep_t *own, std::size_t n);
    /// `hasNul`: one stands behind the n characters, and is copied with them: of a short literal that is one step less.
    string_t &append(const char *text, std::size_t n, bool hasNul);
    /// append, whatever it takes.
    string_t &appendGrowing(const char *text, std::size_t n);
    /// -1, 0 or 1. Takes no std::string_view, which the host may have from another standard library.
    int compareWhole(const char *text, std::size_t length) const;
    int compareWhole(std::string_view other) const { return compareWhole(other.data(), other.size()); }
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

inline bool string_t::hasRoom(const stringRep_t *own, std::size_t n) {
    return own != nullptr && own->isPrivate() && !stringSettings.sizesChanged && n <= own->capacity - own->length;
}

inline string_t &string_t::append(const char *text, std::size_t n, bool hasNul) {
    stringRep_t *const own = body;
    if (text == nullptr || !hasRoom(own, n)) [[unlikely]]
        return appendGrowing(text, n);
    const std::uint32_t before = own->length;
    own->length = before + static_cast<std::uint32_t>(n);
    char *const end = own->data + before;
    std::memmove(end, text, n + (hasNul ? 1 : 0));
    if (!hasNul)
        end[n] = '\0';
    return *this;
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

/// Writes the text as the stream writes a std::string_view, with its width and fill.
std::ostream &operator<<(std::ostream &stream, const string_t &text);

} // namespace vek

/// Each converts to the other; comparing algorithms of the standard library want to know which way.
template <>
struct std::common_type<vek::string_t, std::string_view> {
    using type = std::string_view;
};
template <>
struct std::common_type<std::string_view, vek::string_t> {
    using type = std::string_view;
};

/// Equal texts hash equal, also without regard to case.
template <>
struct std::hash<vek::string_t> {
    std::size_t operator()(const vek::string_t &text) const {
        return vek::stringSettings.caseSensitive != 0 ? std::hash<std::string_view>()(text) : text.hash();
    }
};
