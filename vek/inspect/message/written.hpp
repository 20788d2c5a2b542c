// Messages as the library writes them: around a given body, of declared defaults, of what a host has read.
//
// Pure functions.
#pragma once

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

} // namespace vek::inspect
