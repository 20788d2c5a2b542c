// What vekmsg load says in the end, on standard error.
#pragma once

#include <cstdint>
#include <string_view>

namespace vek::tool {

/// "8 messages loaded, 1 damaged", with the rate when they are many and it took more than a second.
void sayLoaded(std::int64_t messages, std::int64_t damaged, std::uint64_t milliseconds);

/// "device.log taken out, with all that was known of it".
void sayForgotten(std::string_view log);

/// "4 messages removed, older than 2026-03-01T12:00:00".
void sayRemoved(std::int64_t messages, std::string_view time);

/// "archive.sqlite holds 8 messages".
void sayHolds(std::string_view target, std::int64_t messages);

} // namespace vek::tool
