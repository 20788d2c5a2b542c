// check: every departure of a message from its format, and what a host makes of it.
//
// Pure functions over a tree. Findings own their words.
#pragma once

#include "vek/inspect/message/tree.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// What is found. Each has a stable name for people to write, see findingName().
enum class findingCode_t : std::uint8_t {
    // Of the envelope:
    noStartMarker,
    noEndMarker,
    noId,
    unknownId,
    noStructure, ///< an id of the catalogue that no structure belongs to
    wrongLength,
    headerNumber, ///< length, echo tag or sequence number is not there, or beyond 32 bits
    trailingText, ///< something behind "!!", such as a line end
    innerNul,
    tooLong,   ///< 100,000 characters and more
    bodyShape, ///< the body does not stand between one blank and "!!", in braces
    // Of the pairs:
    unbalancedBrace,
    openQuote,
    unknownKey,
    duplicateKey,
    missingKey,
    keyOrder,       ///< a host writes it elsewhere
    lineBreak,      ///< white space in front of a key, or a line end in a value
    swallowedToken, ///< a value was empty, so that the next token became the value
    emptyValue,
    strayValue,   ///< a value without a key among pairs with keys
    surplusValue, ///< behind the last field, or beyond the room
    positionalBody,
    keyedList,
    separators, ///< more or other separators than one "=", ";" or ","
    quotedValue,
    nestedMissing, ///< text where a record or a list should be
    // Of the values:
    noNumber,
    trailingCharacters, ///< a number, and then something else
    numberRange,
    numberSpelling, ///< a host reads it and writes it another way: 3.5 becomes 3.500000
    unknownName,
    noBoolean,
    decimalComma, ///< "3,5"
    countMismatch,
    beyondRoom,
    controlCharacter,
    leadingQuote, ///< a text that begins with a double quote
};
inline constexpr std::size_t findingCodeCount = static_cast<std::size_t>(findingCode_t::leadingQuote) + 1;

enum class severity_t : std::uint8_t {
    warning, ///< unusual, but a host reads what was meant
    error,   ///< a host reads something else, or nothing
};

/// The stable name, in lower case with hyphens: "unknown-key".
std::string_view findingName(findingCode_t code);
std::optional<findingCode_t> findingNamed(std::string_view name);

constexpr std::string_view severityName(severity_t severity) {
    return severity == severity_t::error ? "error" : "warning";
}

struct finding_t {
    findingCode_t code{};
    severity_t severity{};
    place_t place;           ///< where the caret goes
    std::string path;        ///< of the key, as tree_t::path; empty for the envelope
    std::string message;     ///< what is wrong, without a full stop: unknown key "FOCUS_VALEU"
    std::string consequence; ///< what a host makes of it: "a host ignores it; FOCUS_VALUE will be 0.000000"
    std::string suggestion;  ///< what it should be, when that is known: "FOCUS_VALUE", "81"

    /// message, and behind it what a host makes of it and "did you mean X?", in one line.
    std::string inWords() const;
};

/// All departures, in order of their places. Where nothing is found, reading the message and writing it gives the same
/// body again, byte for byte.
std::vector<finding_t> check(const tree_t &tree);

/// Whether check() would find anything; much faster, for what is only counted. `onlyErrors`: warnings don't count.
bool isClean(const tree_t &tree, bool onlyErrors = false);

/// What is wrong with a value that is to be put into a field, in a few words; empty when nothing is. `value` is as it
/// stands in a body; of a list's element when `isElement`.
std::string valueProblem(const fieldSchema_t &field, std::string_view value, bool isElement = false);

} // namespace vek::inspect
