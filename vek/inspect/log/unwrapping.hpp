// unwrapper_t: the log that stands in another text: in UTF-16, in the strings of JSON, or with escapes in it.
//
// Of JSON (objects one behind the other, as journals and containers write them, or in an array) comes a line for each
// object, with its time in front and those of its strings that hold messages; lines between objects stay. Lists of
// bytes are strings too, strings may be JSON themselves, and a string that goes on in the next object (as that of a
// container's long line) goes on in the same line. Escapes are those of C, with \x and \u; a line end among them ends a
// line only within a message. So lines have the numbers that they have in the wrapping, as long as no string has
// several.
//
// Memory is bounded: an object of more than a megabyte stays as it is. Not safe for concurrent use.
#pragma once

#include "vek/inspect/words/utf16.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vek::inspect {

enum class wrapping_t : std::uint8_t { none, utf16LittleEnd, utf16BigEnd, json, escapes };

/// How a log is wrapped, by its first bytes (some thousand, when it has them).
wrapping_t wrappingOf(std::string_view start);

/// How many messages of a log are whole.
std::size_t wholeMessages(std::string_view log);

/// Whether a log's start shows what it is: a line with something in it, or as much, or a whole message; of JSON its
/// first object.
bool showsWhatItIs(std::string_view start);

/// How messages are encoded that were not found in a text, when its bytes show it, and what decodes them: "are base64
/// ..."; else empty.
std::string_view encodingIn(std::string_view start);

/// Whether a text begins as a dump of a message's bytes does: what stands beside them is no message.
bool isDump(std::string_view start);

/// Where the value at the start of a text ends; npos when it does not, 0 when it is no JSON.
std::size_t endOfJson(std::string_view text);

class unwrapper_t {
public:
    explicit unwrapper_t(wrapping_t wrapping)
        : wrapping_(wrapping),
          utf16_(wrapping == wrapping_t::utf16BigEnd ? utf16_t::order_t::bigEndian : utf16_t::order_t::littleEndian) {}

    /// What the next block holds; valid until the next call, and as long as the block.
    std::string_view take(std::string_view block);
    /// The same of what is left at the log's end.
    std::string_view finish();

private:
    void takeJson(bool isLast);
    void takeEscapes(std::string_view block, bool isLast);
    std::size_t takeEntry(std::string_view text, bool isLast);
    void put(char c);

    const wrapping_t wrapping_;
    std::string out_, kept_;
    utf16_t utf16_;
    bool isInArray_ = false;   // of JSON
    bool isLineStart_ = true;  // of JSON, outside of objects
    bool isContinued_ = false; // of JSON, the string goes on in the next object
    bool isInMessage_ = false; // of escapes
    char previous_ = '\0';
};

} // namespace vek::inspect
