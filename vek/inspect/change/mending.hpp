// Mending: what can be done about the findings of a message, and a message with all done to it that is certain.
//
// Findings of check() have their remedies: another text for a stretch of the message. One is certain when it has one
// meaning to any careful reader, so that it may be applied unasked; what could be meant otherwise (a cut-off value, a
// count that is not its list's) is left to people. Pure functions; places are bytes of the text that was given.
#pragma once

#include "vek/inspect/check/check.hpp"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// What a remedy does, in short, for a button or a menu: "write FOCUS_VALUE for FOCUS_VALEU".
std::string inWords(const remedy_t &remedy, std::string_view text);

/// Where the length stands with the blanks in front that belong to it, and what is right there when the message has so
/// many other bytes. The length must be there.
place_t lengthPlace(const envelopeParts_t &envelope);
remedy_t rightLength(const envelopeParts_t &envelope, std::size_t others);

/// Remedies of a message, one or more, with the change of the length that goes with them when it was right and is not
/// among what they change; in order of their places. Of those that overlap the first stays.
std::vector<remedy_t> withLength(const tree_t &tree, std::vector<remedy_t> remedies);

/// The text with remedies in order of their places, which don't overlap.
std::string applied(std::string_view text, std::span<const remedy_t> remedies);

struct mending_t {
    std::string text;            ///< without NULs at its end; what was given when nothing is certain
    std::vector<finding_t> done; ///< what was put right, with its remedies and places in the text it was found in
    std::vector<finding_t> left; ///< what check() finds afterwards

    bool isSound() const; ///< no error is left
};

/// All that is certain done to one message, whatever stands around it. What is not at fault keeps the values that a
/// host reads of it, and mending the result changes nothing. Markers, numbers and length are put right only around a
/// body without errors: a message is not made acceptable that says something else than was meant. What takes more than
/// `budget`, in characters that are judged, is left as it was: what a hostile text may cost stays small.
mending_t mended(std::string_view text, std::size_t budget = 50'000'000);

} // namespace vek::inspect
