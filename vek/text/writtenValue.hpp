// The values of a body while they are written: 32-bit integers, reals, words of the library's own, and texts; alone, as
// a pair with a key, or as an element of a list.
#pragma once

#include "vek/text/bodyWriter.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vek {

/// A text value: up to `size` characters or its first NUL, with the separators and braces in it as codes. `readable`,
/// at least `size`, is how many characters are there to be read.
struct writtenText_t {
    const char *text;
    std::size_t size;
    std::size_t readable;
};

/// The room that a value needs: also for what is written behind its end, and counts for nothing.
constexpr std::size_t roomOf(std::int32_t) {
    return integerRoom;
}
constexpr std::size_t roomOf(double) {
    return realRoom;
}
constexpr std::size_t roomOf(std::string_view word) {
    return word.size();
}
constexpr std::size_t roomOf(const writtenText_t &text) {
    constexpr std::size_t slack = 16;
    return text.size + slack;
}

/// Writes a value where there is the room for it, and returns its end.
inline char *writeAt(std::int32_t value, char *to) {
    return writeInteger(value, to);
}
inline char *writeAt(double value, char *to) {
    return writeReal(value, to);
}
char *writeAt(std::string_view word, char *to);
char *writeTextAt(const char *text, std::size_t size, std::size_t readable, char *to);
inline char *writeAt(const writtenText_t &text, char *to) {
    return writeTextAt(text.text, text.size, text.readable, to);
}

template <class Value>
bodyWriter_t writeValue(const Value &value, bodyWriter_t out) {
    out.advance(writeAt(value, out.room(roomOf(value))));
    return out;
}

namespace detail {

/// A value and what ends it, behind `from`, which is taken back to `start` when the value turns out to be empty.
template <class Value>
[[gnu::always_inline]] inline bodyWriter_t writeEnded(const Value &value, char end, char *start, char *from,
                                                      bodyWriter_t out) {
    char *const behind = writeAt(value, from);
    *behind = end;
    out.advance(behind != from ? behind + 1 : start);
    return out;
}

} // namespace detail

/// Writes a key, which best is one that the compiler knows, and a "=".
inline char *writeKeyAt(std::string_view key, char *to) {
    std::memcpy(to, key.data(), key.size());
    to[key.size()] = equalsSign;
    return to + key.size() + 1;
}

/// Appends KEY=value; or, when the value turns out to be empty, nothing.
template <class Value>
[[gnu::always_inline]] inline bodyWriter_t writePair(std::string_view key, const Value &value, bodyWriter_t out) {
    char *const start = out.room(key.size() + 1 + roomOf(value) + 1);
    return detail::writeEnded(value, semicolon, start, writeKeyAt(key, start), out);
}

/// Appends a value and a comma, or nothing.
template <class Value>
bodyWriter_t writeElement(const Value &value, bodyWriter_t out) {
    char *const start = out.room(roomOf(value) + 1);
    return detail::writeEnded(value, comma, start, start, out);
}

} // namespace vek
