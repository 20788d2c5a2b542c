// envelopeParts_t: where the parts of an envelope stand, also when it is damaged, and what a host reads of them.
//
// Pure functions; places are in the text that was given.
#pragma once

#include "vek/api/problem.hpp"
#include "vek/inspect/message/place.hpp"

#include <cstdint>
#include <string_view>

namespace vek::inspect {

/// U+FF01, which an input method of wide characters leaves where "!" was typed.
inline constexpr std::string_view wideMark = "\xEF\xBC\x81";

/// A number of an envelope.
struct envelopeNumber_t {
    place_t place; ///< of its digits and sign; empty, where it should be, when it isn't there
    bool isThere = false;
    std::int32_t value = 0; ///< what a host reads, so kept to 32 bits
};

/// An envelope taken apart as a person would: every part where it stands, the body up to the "!!" behind it. Of an
/// undamaged message, this is what a host reads too.
struct envelopeParts_t {
    place_t whole;       ///< the text without its terminating NUL
    place_t before;      ///< what stands in front of a "@@" with a number behind it, such as a byte order mark
    place_t startMarker; ///< "@@"; empty when it isn't there
    envelopeNumber_t id, length, echoTag, sequenceNumber;
    place_t body;      ///< with its outer braces; empty when there is none
    place_t endMarker; ///< "!!"; empty, where it should be, when it or its second half isn't there
    place_t behind;    ///< what stands behind the end marker: a line end that an editor left, say

    std::size_t rightLength = 0; ///< what the length should say: from "@@" to "!!", were they there, and the NUL
    problem_t problem;           ///< the first thing that a host's check finds wrong; none when it finds nothing
    bool isBodyRead = false;     ///< whether a host gets as far as the body
    place_t hostBody;            ///< what a host then takes for the body; the same as `body` unless damaged

    /// Exactly as the library writes an envelope: one blank between the numbers, the length in five places.
    bool isCanonical = false;

    /// Whether a host reads the very body that stands here.
    bool isWholeForHost() const { return isBodyRead && hostBody == body; }
};

/// Takes apart the envelope of a text, which may or may not end with its NUL.
envelopeParts_t takeEnvelopeApart(std::string_view text);

} // namespace vek::inspect
