// Bytes as JSON strings, and back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vek::inspect {

/// Bytes from 0x80 on that are no UTF-8 are written as the characters that begin here, in order.
inline constexpr std::uint32_t byteCharacters = 0xEF80;

/// Whether bytes stand in a JSON string as they are: printable ASCII but for quotes and backslashes.
bool isPlainAscii(std::string_view bytes);

} // namespace vek::inspect
