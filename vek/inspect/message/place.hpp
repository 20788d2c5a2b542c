// place_t: a stretch of a text, by the bytes it takes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vek::inspect {

/// Bytes of a text, from `start` to in front of `end`. A message that is taken apart has less than 4 GB.
struct place_t {
    std::uint32_t start = 0;
    std::uint32_t end = 0;

    std::size_t size() const { return end - start; }
    bool isEmpty() const { return start == end; }
    std::string_view in(std::string_view text) const { return text.substr(start, end - start); }
    bool operator==(const place_t &) const = default;
};

} // namespace vek::inspect
