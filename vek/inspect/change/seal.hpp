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

struct sealOptions_t {
    std::optional<std::int32_t> id, echoTag, sequenceNumber; ///< to be written instead of the message's own
};

/// A valid message from anything readable: a message, also one with a wrong envelope, without one ("{...}", when the
/// options have the id), or with line breaks that an editor or a page put into it; the readable, JSON or flat form.
/// Numbers that are nowhere are -1 and 0. Only the envelope is mended, and of a wrapped message the line breaks
/// between keys and values and in keys are taken out; a value keeps its own.
formResult_t seal(std::string_view text, const sealOptions_t &options = {});

} // namespace vek::inspect
