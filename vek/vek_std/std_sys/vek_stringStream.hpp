// Reading a string_t from an input stream.
//
// Each function does nothing when the stream has failed already. Else it replaces the text, whose buffer then has the
// capacity of its length, and returns the stream. As with std::getline, the stream fails when it ends before a
// character was read; a text that the end of the stream cuts off is read well. White space is that of 7-bit text.
#pragma once

#include "vek/vek_std/std_sys/vek_string.hpp"

#include <iosfwd>

namespace vek {

/// Reads up to `delim`, which is consumed and not stored.
std::istream &readToDelim(std::istream &stream, string_t &text, char delim);

/// Reads one word. White space before it is skipped, as the stream's skipws flag says; that behind it stays.
std::istream &readToken(std::istream &stream, string_t &text);

/// Skips white space, unless the settings say otherwise, then reads up to the end of the line, which is consumed.
std::istream &readLine(std::istream &stream, string_t &text);

} // namespace vek
