// The envelope around a body: "@@", message id, length, two header numbers, body, "!!".
//
// Header-only, since hosts that want to know what is wrong with a text read envelopes too. Pure functions.
#pragma once

#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vek {

/// The numbers of an envelope. Reading leaves those alone that it can't read.
struct envelopeNumbers_t {
    std::int32_t id = 0;
    std::int32_t echoTag = -1;       ///< that of the last message read; written into every message
    std::int32_t sequenceNumber = 0; ///< that of the last message read; each message written counts one up
};

enum class envelopeResult_t : std::int32_t {
    correct = 0,
    wrongMarker = 4, ///< no "@@" at the start, or no "!!" behind the body
    wrongLength = 6, ///< the length is not the text's, its NUL included
};

/// Where the parts of an envelope stand in its text, as far as reading got: what a report on a damaged text needs.
struct envelopePlaces_t {
    std::size_t id = 0;
    std::size_t length = 0;
    std::size_t endMarker = 0;     ///< where "!!" should be
    bool hasId = false;            ///< a number stands behind "@@"
    std::int32_t statedLength = 0; ///< 0 when it can't be read
    std::size_t behindLength = 0;
};

namespace detail {

/// Reads over an envelope's text, character by character.
struct envelopeScan_t {
    const char *at;
    const char *end;

    void skipSpace() {
        while (at != end && isSpace(*at))
            ++at;
    }

    /// Reads a decimal number behind optional white space, at the largest or smallest value when it is beyond 32 bits.
    /// When there is none, the target keeps its value; white space and a lone sign are skipped all the same. Tells
    /// whether there was one.
    bool number(std::int32_t &target) {
        skipSpace();
        bool isNegative = false;
        if (at != end && (*at == '-' || *at == '+'))
            isNegative = *at++ == '-';
        const char *const digits = at;
        std::uint32_t value = 0;
        for (; at != end && isDigit(*at); ++at)
            value = value * 10 + static_cast<std::uint32_t>(*at - '0');
        if (at == digits)
            return false;
        constexpr std::ptrdiff_t mostDigits = 9; // no overflow
        if (at - digits > mostDigits)
            value = saturated(digits, isNegative);
        target = static_cast<std::int32_t>(isNegative ? 0U - value : value);
        return true;
    }

private:
    /// The number whose digits go up to `at`, or the limit.
    std::uint32_t saturated(const char *digit, bool isNegative) const {
        const std::int64_t limit = std::int64_t{INT32_MAX} + (isNegative ? 1 : 0);
        std::int64_t value = 0;
        for (; digit != at; ++digit)
            value = std::min(value * 10 + (*digit - '0'), limit);
        return static_cast<std::uint32_t>(value);
    }
};

} // namespace detail

/// Takes an envelope apart. `text` is the whole text without its NUL; `body` becomes a view into it, and stays as it is
/// when no body is reached. The body is cut by counting from the end of the text, so it may contain "!!".
inline envelopeResult_t readEnvelope(std::string_view text, envelopeNumbers_t &numbers, std::string_view &body,
                                     envelopePlaces_t &places) {
    if (text.substr(0, 2) != "@@")
        return envelopeResult_t::wrongMarker;
    detail::envelopeScan_t scan{text.data() + 2, text.data() + text.size()};
    const auto place = [&] { return static_cast<std::size_t>(scan.at - text.data()); };
    scan.skipSpace();
    places.id = place();
    places.hasId = scan.number(numbers.id);
    scan.skipSpace();
    places.length = place();
    scan.number(places.statedLength);
    places.behindLength = place();
    if (places.statedLength < 0 || static_cast<std::size_t>(places.statedLength) != text.size() + 1)
        return envelopeResult_t::wrongLength;
    scan.number(numbers.echoTag);
    scan.number(numbers.sequenceNumber);
    constexpr std::ptrdiff_t separator = 1;
    constexpr std::ptrdiff_t endMarker = 2;
    if (const std::ptrdiff_t unread = scan.end - scan.at; unread >= separator + endMarker) {
        body = {scan.at + separator, static_cast<std::size_t>(unread - separator - endMarker)};
        scan.at = scan.end - endMarker;
    }
    places.endMarker = place();
    scan.skipSpace();
    const std::string_view rest(scan.at, static_cast<std::size_t>(scan.end - scan.at));
    return rest.substr(0, 2) == "!!" ? envelopeResult_t::correct : envelopeResult_t::wrongMarker;
}

/// The echo tag and the sequence number of a text whose length is wrong, which readEnvelope leaves unread.
inline void readHeaderNumbers(std::string_view text, const envelopePlaces_t &places, envelopeNumbers_t &numbers) {
    detail::envelopeScan_t scan{text.data() + places.behindLength, text.data() + text.size()};
    scan.number(numbers.echoTag);
    scan.number(numbers.sequenceNumber);
}

inline envelopeResult_t readEnvelope(std::string_view text, envelopeNumbers_t &numbers, std::string_view &body) {
    envelopePlaces_t places;
    return readEnvelope(text, numbers, body, places);
}

} // namespace vek
