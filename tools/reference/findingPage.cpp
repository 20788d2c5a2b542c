// Each finding with an example, what check() says of it, and the remedy. The words are check()'s own.
#include "tools/reference/pages.hpp"

#include "tools/reference/markdown.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/message/written.hpp"

#include <algorithm>
#include <optional>
#include <ostream>
#include <stdexcept>

namespace vek {

namespace {

using namespace inspect;

constexpr std::string_view findingIntroduction = R"(# What is found in messages

What `vekmsg check`, the inspector and `vekInspectToJson` find, by its stable name, the `code` in JSON. An **error**
means that a host reads something else than the text seems to say, or nothing; a **warning**, that it reads what was
meant, but writes it another way. A finding that is an error may be a warning in a milder form. Certain remedies are done by `vekmsg seal`, as it says there.

Of each an example, and below it what `vekmsg check` says. Control characters are shown as pictures (␊ is a line end, ␀ a
NUL). What a host makes of the rest of a message is on [text-format.md](text-format.md).

| Finding | | |
|---|---|---|
)";

struct example_t {
    findingCode_t code;
    std::int32_t id;       ///< 0: `text` is a whole message
    std::string_view text; ///< a body
    std::string_view remedy;
};

std::vector<example_t> examples() {
    using enum findingCode_t;
    return {
        {noStartMarker, 0, "@4118    37 7 42 {DEVICE_STATE=3;}!!", "Begin the message with `@@`."},
        {noEndMarker, 0, "@@4118    38 7 42 {DEVICE_STATE=3;}",
         "The end of the message was lost on its way: look for it in the log, or send the message again. If all else "
         "is there, write `!!` behind it."},
        {noId, 0, "@@x4118    39 7 42 {DEVICE_STATE=3;}!!", "Write the id of the message behind `@@`."},
        {unknownId, 0, "@@9999    38 7 42 {DEVICE_STATE=3;}!!",
         "Look for the id on [messages.md](messages.md): the number is wrong, or the message is of another system."},
        {noStructure, 0, "@@4190    23 7 42 {}!!",
         "None: the id is known, and hosts have nothing to put such a message into."},
        {wrongLength, 0, "@@4118    99 7 42 {DEVICE_STATE=3;}!!",
         "Write the length anew. Where the text was cut off, look for the rest of it first."},
        {headerNumber, 0, "@@4118    36 7 {DEVICE_STATE=3;}!!",
         "Write length, echo tag and sequence number behind the id, with a blank between them."},
        {trailingText, 0, "@@4118    38 7 42 {DEVICE_STATE=3;}!!\n",
         "Take off what stands behind `!!` before the text goes to a host."},
        {innerNul, 0, std::string_view("@@4118    38 7 42 {DEVICE_STAT\0=3;}!!", 37),
         "A host's text ends at the NUL: find out what wrote it, and put the right character in its place."},
        {tooLong, 4130, "", "Make several messages of it: of a longer one the length can't be written."},
        {bodyShape, 0, "@@4118    36 7 42 DEVICE_STATE=3;!!", "Put the body in braces, behind one blank."},
        {unbalancedBrace, 4112, "{MEDIA_NAME={a;FOCUS_VALUE=3.500000;}",
         "Write the brace that is missing, or take out the one that is too much."},
        {openQuote, 4112, "{MEDIA_NAME=\"a;FOCUS_VALUE=3.500000;}", "Close the quotation, or take out its beginning."},
        {unknownKey, 4112, "{MEDIA_NAME=a;FOCUS_VALEU=3.250000;}",
         "Spell the key as [messages.md](messages.md) does; `vekmsg describe ID` lists the keys of a message."},
        {duplicateKey, 4112, "{MEDIA_NAME=a;FOCUS_VALUE=3.250000;FOCUS_VALUE=1.000000;}",
         "Keep the one that is meant: a host reads the first."},
        {missingKey, 4112, "{MEDIA_NAME=a;}", "Write the key with its value, if 0 or empty is not what is meant."},
        {keyOrder, 4112, "{FOCUS_VALUE=3.250000;MEDIA_NAME=a;}", "None is needed; a host writes its own order."},
        {lineBreak, 4112, "{MEDIA_NAME=a;\nFOCUS_VALUE=3.250000;}", "Take out what an editor or a page has wrapped."},
        {swallowedToken, 4112, "{MEDIA_NAME=;FOCUS_VALUE=3.250000;}",
         "Leave a key without value out: behind `=` a host takes whatever comes next."},
        {emptyValue, 4130, "{DEVICE_MEDIA_NAME_ARRAY={\"\",b,};}",
         "Write a value. In a list the empty place counts as an element; of a record, leave the key out."},
        {strayValue, 4112, "{MEDIA_NAME=a;3.250000;}", "Write the key that the value belongs to in front of it."},
        {surplusValue, 4112, "{a,3.250000,x,}", "Take the value out: the record has no field for it."},
        {positionalBody, 4112, "{a,3.250000,}", "Write the keys, so that no value can come to stand for another."},
        {keyedList, 4119, "{DATA_PATH_PORT={DATA_PATH_PORT0=1;};}", "Write the elements without keys, as hosts do."},
        {separators, 4112, "{MEDIA_NAME=a;FOCUS_VALUE==3.250000;}", "Leave one of them."},
        {quotedValue, 4112, "{MEDIA_NAME=Violet;FOCUS_VALUE=\"3.250000\";}",
         "Take the quotes off; a host writes none."},
        {missingSeparator, 4112, "{MEDIA_NAME=VioletFOCUS_VALUE=3.250000;}", "Write the separator between them."},
        {nestedMissing, 4193, "{JOB_NAME=Hi;}", "Write what belongs there in braces, as a record or a list."},
        {noNumber, 4118, "{DEVICE_STATE=x;}", "Write a number."},
        {trailingCharacters, 4112, "{MEDIA_NAME=a;FOCUS_VALUE=3.5x;}",
         "Leave the number alone: units are not written."},
        {numberRange, 4118, "{DEVICE_STATE=4294967297;}", "Write a number that the field can hold."},
        {numberSpelling, 4118, "{DEVICE_STATE=007;}", "None is needed; a host writes it its own way."},
        {unknownName, 4103, "{MAX_OUTPUT=1.000000;OUT_CONTENT=1.000000;OUTPUT_TYPE=sheet_E;}",
         "Write one of the names on [messages.md](messages.md#enumerations), capitals and all."},
        {noBoolean, 4117, "{ID=1;}", "Write `TRUE` or `FALSE`."},
        {decimalComma, 4112, "{MEDIA_NAME=a;FOCUS_VALUE=3,5;}", "Write a point."},
        {countMismatch, 4161, "{STATUS=1;LOW_STATUS=2;SEVERITY=3;NUM_OF_MESSAGES=3;MSGS={a,b,};}",
         "Find out which of them is right, the list or its count, and change the other one."},
        {listForm, 4171, "{DRUM_ID=1;INDEX=2;COLOR_TABLE={{VALUE=0.000000;FLAGS=1;},};}",
         "None is needed; a host writes its own form."},
        {beyondRoom, 4182,
         "{MEDIA_TYPE=mediaFilm_e;UNLOAD_MEDIA_TYPE=1;UNLOAD_POLICY=1;FILM_FEED=1.000000;"
         "CASSETTE_NAME=Northlight violet 0.3 and one and a half more;}",
         "Shorten it: the structure has no room for more."},
        {controlCharacter, 4112, "{MEDIA_NAME=a\tb;FOCUS_VALUE=3.250000;}", "Take the character out of the text."},
        {leadingQuote, 4112, "{MEDIA_NAME=\"a;b\";FOCUS_VALUE=3.250000;}",
         "Take the quotes off where the text does without. One with separators or braces in it is read, and a host "
         "writes it without quotes, as something else: choose another text."},
    };
}

std::string textOf(const example_t &example) {
    if (example.code == findingCode_t::tooLong)
        return sealed(example.id, 7, 42, joined({"{DEVICE_MEDIA_NAME_ARRAY={", std::string(100'000, 'n'), ",};}"}));
    return example.id == 0 ? std::string(example.text) : sealed(example.id, 7, 42, example.text);
}

// Control characters as U+2400 to U+241F, and the beginning of what is too long to be shown.
std::string withPictures(std::string_view text) {
    std::string shown;
    for (const char c : text.substr(0, 400))
        if (static_cast<unsigned char>(c) < 0x20)
            shown.append("\xE2\x90").append(1, static_cast<char>(0x80 + c));
        else
            shown += c;
    return text.size() > 400 ? shown.substr(0, 80) + "…" : shown;
}

void writeFinding(std::ostream &out, const findingKind_t &kind, const example_t &example) {
    const std::string text = textOf(example);
    const auto isIt = [&](const finding_t &finding) { return finding.code == kind.code; };
    const std::vector<finding_t> findings = check(tree_t(text));
    const auto found = std::find_if(findings.begin(), findings.end(), isIt);
    if (found == findings.end())
        throw std::runtime_error(
            joined({"check() does not find ", kind.name, " in its example, ", text.substr(0, 200)}));
    out << "\n## " << kind.name << "\n\n"
        << (kind.severity == severity_t::error ? "An error: " : "A warning: ") << kind.about << ".\n\n```\n"
        << withPictures(text) << "\n"
        << withPictures(found->inWords()) << "\n```\n\n"
        << example.remedy;
    const formResult_t whole = seal(text);
    if (whole.isRead()) {
        const std::vector<finding_t> left = check(tree_t(whole.text));
        if (std::none_of(left.begin(), left.end(), isIt))
            out << " `vekmsg seal` does that.";
    }
    out << "\n";
}

} // namespace

void writeFindingPage(std::ostream &out) {
    out << generatedNotice << findingIntroduction;
    for (const findingKind_t &kind : findingKinds())
        out << "| " << link(code(kind.name), anchorOf(kind.name)) << " | " << severityName(kind.severity) << " | "
            << kind.about << " |\n";
    const std::vector<example_t> all = examples();
    for (const findingKind_t &kind : findingKinds()) {
        const auto example =
            std::find_if(all.begin(), all.end(), [&](const example_t &one) { return one.code == kind.code; });
        if (example == all.end())
            throw std::runtime_error(joined({"no example of ", kind.name}));
        writeFinding(out, kind, *example);
    }
}

} // namespace vek
