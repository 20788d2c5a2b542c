// Writes the envelope around a body.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/text/bodyWriter.hpp"
#include "vek/text/numberText.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vek {

namespace detail {

inline char *writeHeadNumber(std::int32_t number, char *to) {
    to = writeInteger(number, to);
    *to = ' ';
    return to + 1;
}

/// With blanks in front; of a longer number the first five digits.
inline void writeLength(std::size_t length, char *to) {
    while (length > longestReadableMessage)
        [[unlikely]] length /= 10;
    const auto number = static_cast<std::uint32_t>(length);
    const std::uint32_t upper = number / 10000;
    *to = upper != 0 ? static_cast<char>('0' + upper) : ' ';
    const std::uint32_t lower = upper != 0 ? fourDigits(number % 10000) : fourPlaces(number);
    static_assert(lengthDigits == 1 + sizeof lower);
    std::memcpy(to + 1, &lower, sizeof lower);
}

} // namespace detail

/// Writes what stands in front of the body, with these very numbers. The length has a placeholder, whose position is
/// returned. Throws std::bad_alloc.
inline std::size_t beginEnvelope(bodyWriter_t &out, const envelopeNumbers_t &numbers) {
    // By hand and inline: what is the same for every message is most of a short one. One room() covers it all.
    char *const start = out.room(3 * (integerRoom + 1) + startMarker.size() + lengthDigits + 1);
    std::memcpy(start, startMarker.data(), startMarker.size());
    char *const length = detail::writeHeadNumber(numbers.id, start + startMarker.size());
    std::memcpy(length, "***** ", lengthDigits + 1);
    const std::size_t lengthPosition = out.size() + static_cast<std::size_t>(length - start);
    char *const echoTag = length + lengthDigits + 1;
    out.advance(detail::writeHeadNumber(numbers.sequenceNumber, detail::writeHeadNumber(numbers.echoTag, echoTag)));
    return lengthPosition;
}

/// Writes what stands behind the body, the NUL included, and patches the length; of a length of 100,000 and more only
/// the first five digits. Throws std::bad_alloc.
inline void endEnvelope(bodyWriter_t &out, std::size_t lengthPosition) {
    constexpr std::size_t endSize = endMarker.size() + 1;
    char *const end = out.room(endSize);
    std::memcpy(end, "!!", endSize);
    out.advance(end + endSize);
    // The length comes last and counts itself, which it can because it always has five places: readers find the body by
    // counting from the end, and trust a text only when the length is right.
    detail::writeLength(out.size(), out.at(lengthPosition));
}

/// Puts other header numbers into a whole message, and patches the length again. Returns the place behind it. Throws
/// std::bad_alloc.
bodyWriter_t renumberEnvelope(bodyWriter_t out, std::size_t lengthPosition, std::int32_t echoTag,
                              std::int32_t sequenceNumber);

} // namespace vek
