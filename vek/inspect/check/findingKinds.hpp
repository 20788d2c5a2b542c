// What can be found in a message: one row a finding, from which the tool, the page, JSON and the documentation take all
// they say of it apart from a message. A code without a row, or with its row elsewhere, does not compile.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vek::inspect {

enum class severity_t : std::uint8_t {
    warning, ///< unusual, but a host reads what was meant
    error,   ///< a host reads something else, or nothing
};

constexpr std::string_view severityName(severity_t severity) {
    return severity == severity_t::error ? "error" : "warning";
}

/// What is found. Each has a stable name for people to write.
/// A row of findingKinds below belongs to each.
enum class findingCode_t : std::uint8_t {
    // Of the envelope:
    noStartMarker,
    noEndMarker,
    noId,
    unknownId,
    noStructure,
    wrongLength,
    headerNumber,
    trailingText,
    innerNul,
    tooLong,
    bodyShape,
    // Of the pairs:
    unbalancedBrace,
    openQuote,
    unknownKey,
    duplicateKey,
    missingKey,
    keyOrder,
    lineBreak,
    swallowedToken,
    emptyValue,
    strayValue,
    surplusValue,
    positionalBody,
    keyedList,
    separators,
    missingSeparator,
    quotedValue,
    nestedMissing,
    // Of the values:
    noNumber,
    trailingCharacters,
    numberRange,
    numberSpelling,
    unknownName,
    noBoolean,
    decimalComma,
    countMismatch,
    listForm,
    beyondRoom,
    controlCharacter,
    leadingQuote,
    otherQuotes,

    endOfCodes, // no finding
};
inline constexpr std::size_t findingCodeCount = static_cast<std::size_t>(findingCode_t::endOfCodes);

/// All there is to know of a finding before it is found.
struct findingKind_t {
    findingCode_t code{};
    std::string_view name; ///< stable, in lower case with hyphens: "unknown-key"
    severity_t severity{}; ///< at worst; in a milder form some are warnings
    std::string_view about;
    std::int32_t exampleId{}; ///< 0: the example is a whole message
    std::string_view example; ///< the body of one that has it; empty for what would be too long to be written here
    std::string_view remedy;  ///< whole sentences, in Markdown
};

/// Every kind, in order of the codes.
inline constexpr std::array<findingKind_t, findingCodeCount> findingKinds = [] {
    using enum findingCode_t;
    using enum severity_t;
    return std::array<findingKind_t, findingCodeCount>{{
        // Of the envelope:
        {noStartMarker, "no-start-marker", error, "the text does not begin with \"@@\" and a number", 0,
         "@4118    37 7 42 {DEVICE_STATE=3;}!!", "Begin the message with `@@`."},
        {noEndMarker, "no-end-marker", error, "the text does not end with \"!!\"", 0,
         "@@4118    38 7 42 {DEVICE_STATE=3;}",
         "The end of the message was lost on its way: look for it in the log, or send the message again. If all else "
         "is there, write `!!` behind it."},
        {noId, "no-id", error, "no number stands behind \"@@\"", 0, "@@x4118    39 7 42 {DEVICE_STATE=3;}!!",
         "Write the id of the message behind `@@`."},
        {unknownId, "unknown-id", error, "an id that the catalogue does not have", 0,
         "@@9999    38 7 42 {DEVICE_STATE=3;}!!",
         "Look for the id on [docs/messages.md](messages.md): the number is wrong, or the message is of another "
         "system."},
        {noStructure, "no-structure", warning, "an id of the catalogue that no structure belongs to", 0,
         "@@4190    23 7 42 {}!!", "None: the id is known, and hosts have nothing to put such a message into."},
        {wrongLength, "wrong-length", error, "the length is not that of the message with its NUL", 0,
         "@@4118    99 7 42 {DEVICE_STATE=3;}!!",
         "Write the length anew. Where the text was cut off, look for the rest of it first."},
        {headerNumber, "header-number", error, "length, echo tag or sequence number is not there, or beyond 32 bits", 0,
         "@@4118    36 7 {DEVICE_STATE=3;}!!",
         "Write length, echo tag and sequence number behind the id, with a blank between them."},
        {trailingText, "trailing-text", error, "something behind \"!!\", such as a line end", 0,
         "@@4118    38 7 42 {DEVICE_STATE=3;}!!\n", "Take off what stands behind `!!` before the text goes to a host."},
        {innerNul, "inner-nul", error, "a NUL inside the text", 0,
         std::string_view("@@4118    38 7 42 {DEVICE_STAT\0=3;}!!", 37),
         "A host's text ends at the NUL: find out what wrote it, and put the right character in its place."},
        {tooLong, "too-long", error, "more characters than a message may have", 4130, "",
         "Make several messages of it: of a longer one the length can't be written."},
        {bodyShape, "body-shape", error, "the body does not stand between one blank and \"!!\", in braces", 0,
         "@@4118    36 7 42 DEVICE_STATE=3;!!", "Put the body in braces, behind one blank."},
        // Of the pairs:
        {unbalancedBrace, "unbalanced-brace", error, "a brace without its other one", 4112,
         "{MEDIA_NAME={a;FOCUS_VALUE=3.500000;}",
         "Write the brace that is missing, or take out the one that is too much."},
        {openQuote, "open-quote", error, "a double quote without its closing one", 4112,
         "{MEDIA_NAME=\"a;FOCUS_VALUE=3.500000;}", "Close the quotation, or take out its beginning."},
        {unknownKey, "unknown-key", error, "a key that the record does not have", 4112,
         "{MEDIA_NAME=a;FOCUS_VALEU=3.250000;}", "Spell the key as [docs/messages.md](messages.md) does."},
        {duplicateKey, "duplicate-key", error, "a key that stood there before", 4112,
         "{MEDIA_NAME=a;FOCUS_VALUE=3.250000;FOCUS_VALUE=1.000000;}",
         "Keep the one that is meant: a host reads the first."},
        {missingKey, "missing-key", warning, "a key that a host always writes is not there", 4112, "{MEDIA_NAME=a;}",
         "Write the key with its value, if 0 or empty is not what is meant."},
        {keyOrder, "key-order", warning, "a host writes the key elsewhere", 4112,
         "{FOCUS_VALUE=3.250000;MEDIA_NAME=a;}", "None is needed; a host writes its own order."},
        {lineBreak, "line-break", error, "white space in front of a key or a text, or a line end in a value", 4112,
         "{MEDIA_NAME=a;\nFOCUS_VALUE=3.250000;}", "Take out what an editor or a page has wrapped."},
        {swallowedToken, "swallowed-token", error, "a value was empty, so that the next token became the value", 4112,
         "{MEDIA_NAME=;FOCUS_VALUE=3.250000;}",
         "Leave a key without value out: behind `=` a host takes whatever comes next."},
        {emptyValue, "empty-value", warning, "nothing stands where a value should be", 4130,
         "{DEVICE_MEDIA_NAME_ARRAY={\"\",b,};}",
         "Write a value. In a list the empty place counts as an element; of a record, leave the key out."},
        {strayValue, "stray-value", error, "a value without a key among pairs with keys", 4112,
         "{MEDIA_NAME=a;3.250000;}", "Write the key that the value belongs to in front of it."},
        {surplusValue, "surplus-value", error, "a value behind that of the last field", 4112, "{a,3.250000,x,}",
         "Take the value out: the record has no field for it."},
        {positionalBody, "positional-body", warning, "values without keys, told apart by their order", 4112,
         "{a,3.250000,}", "Write the keys, so that no value can come to stand for another."},
        {keyedList, "keyed-list", warning, "a list whose elements have keys", 4119,
         "{DATA_PATH_PORT={DATA_PATH_PORT0=1;};}", "Write the elements without keys, as hosts do."},
        {separators, "separators", error, "more or other separators than one \"=\", \";\" or \",\"", 4112,
         "{MEDIA_NAME=a;FOCUS_VALUE==3.250000;}", "Leave one of them."},
        {missingSeparator, "missing-separator", error, "two tokens that a host takes for one", 4112,
         "{MEDIA_NAME=VioletFOCUS_VALUE=3.250000;}", "Write the separator between them."},
        {quotedValue, "quoted-value", warning, "a key or value in double quotes", 4112,
         "{MEDIA_NAME=Violet;FOCUS_VALUE=\"3.250000\";}", "Take the quotes off; a host writes none."},
        {nestedMissing, "nested-missing", error, "text where a record or a list should be", 4193, "{JOB_NAME=Hi;}",
         "Write what belongs there in braces, as a record or a list."},
        // Of the values:
        {noNumber, "no-number", error, "text where a number should be", 4118, "{DEVICE_STATE=x;}", "Write a number."},
        {trailingCharacters, "trailing-characters", error, "a number, and then something else", 4112,
         "{MEDIA_NAME=a;FOCUS_VALUE=3.5x;}", "Leave the number alone: units are not written."},
        {numberRange, "number-range", error, "a number that its field can't hold", 4118, "{DEVICE_STATE=4294967297;}",
         "Write a number that the field can hold."},
        {numberSpelling, "number-spelling", warning, "a host reads the number and writes it another way", 4118,
         "{DEVICE_STATE=007;}", "None is needed; a host writes it its own way."},
        {unknownName, "unknown-name", error, "a name that the enumeration does not have", 4103,
         "{MAX_OUTPUT=1.000000;OUT_CONTENT=1.000000;OUTPUT_TYPE=sheet_E;}",
         "Write one of the names on [docs/messages.md](messages.md#enumerations), capitals and all."},
        {noBoolean, "no-boolean", error, "neither TRUE nor FALSE", 4117, "{ID=1;}", "Write `TRUE` or `FALSE`."},
        {decimalComma, "decimal-comma", error, "a number with a comma for its point", 4112,
         "{MEDIA_NAME=a;FOCUS_VALUE=3,5;}", "Write a point."},
        {countMismatch, "count-mismatch", error, "a list has more or fewer elements than its count says", 4161,
         "{STATUS=1;LOW_STATUS=2;SEVERITY=3;NUM_OF_MESSAGES=3;MSGS={a,b,};}",
         "Find out which of them is right, the list or its count, and change the other one."},
        {listForm, "list-form", warning, "a range or an array that a host writes with other elements", 4171,
         "{DRUM_ID=1;INDEX=2;COLOR_TABLE={{VALUE=0.000000;FLAGS=1;},};}",
         "None is needed; a host writes its own form."},
        {beyondRoom, "beyond-room", error, "more elements or characters than there is room for", 4182,
         "{MEDIA_TYPE=mediaFilm_e;UNLOAD_MEDIA_TYPE=1;UNLOAD_POLICY=1;FILM_FEED=1.000000;"
         "CASSETTE_NAME=Northlight violet 0.3 and one and a half more;}",
         "Shorten it: the structure has no room for more."},
        {controlCharacter, "control-character", warning, "a control character in a text", 4112,
         "{MEDIA_NAME=a\tb;FOCUS_VALUE=3.250000;}", "Take the character out of the text."},
        {leadingQuote, "leading-quote", warning, "a text that begins with a double quote", 4112,
         "{MEDIA_NAME=\"a;b\";FOCUS_VALUE=3.250000;}",
         "Take the quotes off. Separators and braces in the text are then written by their codes, as a host does."},
        {otherQuotes, "other-quotes", warning, "a text in single or typographic quotes, which a host takes for its own",
         4112, "{MEDIA_NAME='a';FOCUS_VALUE=3.250000;}",
         "Take them off, unless they are part of the text: a host knows double quotes only, and needs none."},
    }};
}();

static_assert(
    [] {
        for (std::size_t i = 0; i < findingCodeCount; ++i)
            if (findingKinds[i].code != static_cast<findingCode_t>(i) || findingKinds[i].remedy.empty())
                return false;
        return true;
    }(),
    "a finding has no row, or not in the order of the codes");

constexpr const findingKind_t &findingKind(findingCode_t code) {
    return findingKinds[static_cast<std::size_t>(code)];
}
constexpr std::string_view findingName(findingCode_t code) {
    return findingKind(code).name;
}
constexpr std::optional<findingCode_t> findingNamed(std::string_view name) {
    const auto *const found =
        std::find_if(findingKinds.begin(), findingKinds.end(), [&](const auto &kind) { return kind.name == name; });
    return found != findingKinds.end() ? std::optional(found->code) : std::nullopt;
}

} // namespace vek::inspect
