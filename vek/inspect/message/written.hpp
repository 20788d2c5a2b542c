// Messages as the library writes them: around a given body, of declared defaults, of what a host has read.
//
// Pure functions.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/inspect/message/tree.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vek::inspect {

/// The envelope that the library writes, around a body: the length is the text's with its NUL (of 100,000 and more, its
/// first five digits), nothing behind "!!".
std::string sealed(std::int32_t id, std::int32_t echoTag, std::int32_t sequenceNumber, std::string_view body);

/// A message with the record's declared defaults; nothing when the id has no structure.
std::optional<std::string> newMessage(std::int32_t id, std::int32_t echoTag = -1, std::int32_t sequenceNumber = 0);

/// What a host keeps of a message: read into a structure and written again, with the numbers that it read. Nothing when
/// the id has no structure. Throws std::bad_alloc.
std::optional<std::string> asRead(const tree_t &tree);

/// A message that the library writes as it stands.
struct writtenMessage_t {
    std::string_view text;
    envelope_t envelope; ///< whose numbers are all there
    const recordSchema_t *record;
};

/// What a text is that comes back byte for byte when it is read and written again; nothing of any other one. Throws
/// std::bad_alloc.
std::optional<writtenMessage_t> writtenMessage(std::string_view text);

} // namespace vek::inspect
