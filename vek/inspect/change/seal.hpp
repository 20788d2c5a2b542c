// Sealing: a message whose envelope is right, whatever it was before.
//
// Pure functions.
#pragma once

#include "vek/inspect/forms/forms.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vek::inspect {

/// What is refused.
enum class strictness_t : std::uint8_t {
    judged,  ///< whatever check() would call an error afterwards
    certain, ///< what can only be guessed: a message that is cut off, a number that is missing
    forced,  ///< nothing that can be written
};

struct sealOptions_t {
    std::optional<std::int32_t> id, echoTag, sequenceNumber; ///< to be written instead of the message's own
    strictness_t strictness = strictness_t::judged;
};

/// A valid message from anything readable: a message, also one with a wrong envelope, without one ("{...}", when the
/// options have the id), or with line breaks that an editor or a page put into it; the readable, JSON or flat form.
/// Numbers of which none is there are -1 and 0. Only the envelope is mended, and of a wrapped message the line breaks
/// between keys and values and in keys are taken out; a value keeps its own.
formResult_t seal(std::string_view text, const sealOptions_t &options = {});

/// What sealing changed, in words: "length 9 -> 62, \"!!\" added"; empty when nothing.
std::string changesOf(std::string_view before, std::string_view sealed);

} // namespace vek::inspect
