// Sealing: a message whose envelope is right, whatever it was before.
//
// Pure functions.
#pragma once

#include "vek/inspect/forms.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vek::inspect {

struct sealOptions_t {
    std::optional<std::int32_t> id, echoTag, sequenceNumber; ///< to be written instead of the message's own
};

/// The envelope that the library writes, around a body: the length is the text's with its NUL (of 100,000 and more, its
/// first five digits), nothing behind "!!".
std::string sealed(std::int32_t id, std::int32_t echoTag, std::int32_t sequenceNumber, std::string_view body);

/// A valid message from anything readable: a message, also one with a wrong envelope, without one ("{...}", when the
/// options have the id), or with line breaks that an editor or a page put into it; the readable, JSON or flat form.
/// Numbers that are nowhere are -1 and 0. Only the envelope is mended, and of a wrapped message the line breaks
/// between keys and values and in keys are taken out; a value keeps its own.
formResult_t seal(std::string_view text, const sealOptions_t &options = {});

/// A message with the record's declared defaults; nothing when the id has no structure.
std::optional<std::string> newMessage(std::int32_t id, std::int32_t echoTag = -1, std::int32_t sequenceNumber = 0);

/// What a host keeps of a message: read into a structure and written again, with the numbers that it read. Nothing when
/// the id has no structure. Throws std::bad_alloc.
std::optional<std::string> asRead(const tree_t &tree);

} // namespace vek::inspect
