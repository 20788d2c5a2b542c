// The one table of findings. A code without a row, or with its row elsewhere, does not compile.
#include "vek/inspect/check/check.hpp"

#include <algorithm>
#include <array>

namespace vek::inspect {

namespace {

constexpr std::array<findingKind_t, findingCodeCount> kinds = [] {
    using enum findingCode_t;
    using enum severity_t;
    return std::array<findingKind_t, findingCodeCount>{{
        // Of the envelope:
        {noStartMarker, "no-start-marker", error, "the text does not begin with \"@@\" and a number"},
        {noEndMarker, "no-end-marker", error, "the text does not end with \"!!\""},
        {noId, "no-id", error, "no number stands behind \"@@\""},
        {unknownId, "unknown-id", error, "an id that the catalogue does not have"},
        {noStructure, "no-structure", warning, "an id of the catalogue that no structure belongs to"},
        {wrongLength, "wrong-length", error, "the length is not that of the message with its NUL"},
        {headerNumber, "header-number", error, "length, echo tag or sequence number is not there, or beyond 32 bits"},
        {trailingText, "trailing-text", error, "something behind \"!!\", such as a line end"},
        {innerNul, "inner-nul", error, "a NUL inside the text"},
        {tooLong, "too-long", error, "more characters than a message may have"},
        {bodyShape, "body-shape", error, "the body does not stand between one blank and \"!!\", in braces"},
        // Of the pairs:
        {unbalancedBrace, "unbalanced-brace", error, "a brace without its other one"},
        {openQuote, "open-quote", error, "a double quote without its closing one"},
        {unknownKey, "unknown-key", error, "a key that the record does not have"},
        {duplicateKey, "duplicate-key", error, "a key that stood there before"},
        {missingKey, "missing-key", warning, "a key that a host always writes is not there"},
        {keyOrder, "key-order", warning, "a host writes the key elsewhere"},
        {lineBreak, "line-break", error, "white space in front of a key, or a line end in a value"},
        {swallowedToken, "swallowed-token", error, "a value was empty, so that the next token became the value"},
        {emptyValue, "empty-value", warning, "nothing stands where a value should be"},
        {strayValue, "stray-value", error, "a value without a key among pairs with keys"},
        {surplusValue, "surplus-value", error, "a value behind that of the last field"},
        {positionalBody, "positional-body", warning, "values without keys, told apart by their order"},
        {keyedList, "keyed-list", warning, "a list whose elements have keys"},
        {separators, "separators", error, "more or other separators than one \"=\", \";\" or \",\""},
        {missingSeparator, "missing-separator", error, "two tokens that a host takes for one"},
        {quotedValue, "quoted-value", warning, "a key or value in double quotes"},
        {nestedMissing, "nested-missing", error, "text where a record or a list should be"},
        // Of the values:
        {noNumber, "no-number", error, "text where a number should be"},
        {trailingCharacters, "trailing-characters", error, "a number, and then something else"},
        {numberRange, "number-range", error, "a number that its field can't hold"},
        {numberSpelling, "number-spelling", warning, "a host reads the number and writes it another way"},
        {unknownName, "unknown-name", error, "a name that the enumeration does not have"},
        {noBoolean, "no-boolean", error, "neither TRUE nor FALSE"},
        {decimalComma, "decimal-comma", error, "a number with a comma for its point"},
        {countMismatch, "count-mismatch", error, "a list has more or fewer elements than its count says"},
        {listForm, "list-form", warning, "a range or an array that a host writes with other elements"},
        {beyondRoom, "beyond-room", error, "more elements or characters than there is room for"},
        {controlCharacter, "control-character", warning, "a control character in a text"},
        {leadingQuote, "leading-quote", warning, "a text that begins with a double quote"},
    }};
}();

constexpr bool haveTheirRows = [] {
    for (std::size_t i = 0; i < findingCodeCount; ++i)
        if (kinds[i].code != static_cast<findingCode_t>(i) || kinds[i].name.empty())
            return false;
    return true;
}();
static_assert(haveTheirRows, "a finding has no row, or not in the order of the codes");

} // namespace

std::span<const findingKind_t, findingCodeCount> findingKinds() {
    return kinds;
}

std::string_view findingName(findingCode_t code) {
    return kinds[static_cast<std::size_t>(code)].name;
}

severity_t worstSeverity(findingCode_t code) {
    return kinds[static_cast<std::size_t>(code)].severity;
}

std::optional<findingCode_t> findingNamed(std::string_view name) {
    const auto *const found =
        std::find_if(kinds.begin(), kinds.end(), [&](const auto &kind) { return kind.name == name; });
    return found != kinds.end() ? std::optional(found->code) : std::nullopt;
}

} // namespace vek::inspect
