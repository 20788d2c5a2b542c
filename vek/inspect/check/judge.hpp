// What is wrong with the text of a single value, in the words of a finding; and what is to be written for one.
//
// Pure functions.
#pragma once

#include "vek/inspect/check/check.hpp"
#include "vek/inspect/words/nearest.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// The words of a finding.
struct findingWords_t {
    std::string message, consequence, suggestion{};

    /// Without what a host makes of it: for what is not written.
    std::string inShort() const { return withSuggestion(message, suggestion); }
};

/// What is wrong with a value, before it has a place.
struct valueFinding_t {
    findingCode_t code{};
    severity_t severity{};
    findingWords_t words;
    bool isThere = false;
    bool isPlain = false; ///< its suggestion has one meaning to any careful reader
};

/// Judges the text of a single value: of a list, of an element; of a 16-bit text, of a code.
valueFinding_t judgeValue(const fieldSchema_t &field, std::string_view value);

/// Which value of a field.
enum class part_t : std::uint8_t { whole, element, code };

/// A value as people write it, as the library would write it in a body: 3.5 becomes 3.500000, a separator in a text its
/// code. Nothing, and why, when a host would read something else.
std::optional<std::string> spelt(const fieldSchema_t &field, std::string_view value, part_t part, std::string &error);

/// The same for a 16-bit text: its list of codes.
std::optional<std::string> speltWide(std::string_view text, std::string &error);

/// What is said of a key that a record, or a list when it is null, has not; and of one that stands there again.
findingWords_t wordsOfUnknown(const recordSchema_t *record, std::string_view key, bool hasSuggestion = true);
/// The line breaks in a stretch of a text, each with those of some characters that follow it.
std::vector<place_t> lineBreaksIn(std::string_view text, place_t within, std::string_view with);
/// How a separator or brace is written in a text: "a \";\" in a text is written as the character 2".
std::string howToWrite(char separator);
findingWords_t wordsOfDuplicate(std::string_view key);

/// What a host's structure has for a key that isn't there, as it would write it: "0", "FALSE", "an empty text".
std::string valueOfAbsent(const fieldSchema_t &field);

/// A value for people, in quotes, a long one cut.
std::string shownValue(std::string_view value);

} // namespace vek::inspect
