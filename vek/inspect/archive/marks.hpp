// Marks: numbers by which messages of a log are known again in another one, as in an extract of it. The first messages
// of a log all have one, further ones one of eight; which, is chosen by what they are.
#pragma once

#include "vek/inspect/log/logTime.hpp"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// Collects the marks of messages one behind the other. Not safe for concurrent use.
class markMaker_t {
public:
    /// Messages of a log's start that all have one.
    static constexpr std::size_t first = 64;

    /// `isGoingOn`: what comes is not the log's start.
    explicit markMaker_t(bool isGoingOn = false) : count_(isGoingOn ? first : 0) {}

    /// A message with the time on its line: without a date nobody can tell it from another one that says the same.
    void add(std::string_view text, const std::optional<logTime_t> &time);
    std::size_t count() const { return count_; }

    std::vector<std::int64_t> marks;
    std::size_t chosen = 0; ///< of them, those that a long log would have, too

private:
    std::size_t count_; // of messages
};

} // namespace vek::inspect
