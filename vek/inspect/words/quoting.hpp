// Bytes in double quotes, for lines that people read: what is not printable is escaped, every byte comes back.
//
// Pure functions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace vek::inspect {

/// The bytes of the well-formed UTF-8 character at the front of a text; 0 when there is none.
std::size_t utf8Size(std::string_view text);

/// Appends a character as UTF-8, a lone surrogate too.
void appendUtf8(std::string &out, std::uint32_t character);

/// The character of well-formed UTF-8, whose size is that of `bytes`.
std::uint32_t utf8Character(std::string_view bytes);

/// Appends "..." with \" \\ \n \r \t and \xHH for what is not printable or no UTF-8.
void appendQuoted(std::string &out, std::string_view bytes);

/// Reads what appendQuoted() wrote, from the quote at `at` on, which then stands behind the closing one. False when
/// it is not well-formed.
bool readQuoted(std::string_view text, std::size_t &at, std::string &bytes);

/// For a terminal: with \x and \u for whatever is not printable there, blanks of other kinds, and letters of other
/// scripts in words of Latin letters, which look like these. Line ends and tabs stay, and colours where they are the
/// program's own.
std::string visible(std::string_view text, bool keepsColours = false);

/// Whether a text is made of printable UTF-8.
bool isPrintable(std::string_view text);

/// Characters from one to another that are not printable: control characters, and those that turn the direction of
/// writing or have no shape. Escaped by appendQuoted(), and to be shown as marks by whoever shows texts.
struct characterRange_t {
    std::uint32_t first, last;
};
std::span<const characterRange_t> unprintableCharacters();

/// A key as it stands in paths: as it is when it is a word of letters, digits and "_", else quoted.
void appendPathKey(std::string &out, std::string_view key);

/// That of a key without a character.
inline constexpr std::string_view emptyKey = "\"\"";

} // namespace vek::inspect
