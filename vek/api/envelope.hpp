// The envelope around a body: "@@", message id, length, two header numbers, body, "!!".
//
// There is one reader of it, for all that look at messages, and it takes whatever the calls take: white space and signs
// in front of numbers, numbers that are missing or beyond 32 bits. Header-only, since hosts that want to know what is
// wrong with a text read envelopes too. Pure functions; places are bytes of the text that was given.
#pragma once

#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vek {

inline constexpr std::string_view startMarker = "@@", endMarker = "!!";

/// The places that the length has, blanks in front of its digits.
inline constexpr std::size_t lengthDigits = 5;

/// The characters, its NUL included, of the longest message that can be read back as the library writes it: what the
/// places of the length can say.
inline constexpr std::size_t longestReadableMessage = 99999;

/// The numbers of an envelope.
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

/// A number as it stands in an envelope.
struct envelopeField_t {
    std::size_t start = 0;  ///< of its sign or digits; where they should be when it isn't there
    std::size_t end = 0;    ///< where reading goes on: of a number that isn't there, behind a sign without digits
    std::int32_t value = 0; ///< at the limit when it is beyond 32 bits; 0 when it isn't there
    bool isThere = false;

    std::int32_t valueOr(std::int32_t otherwise) const { return isThere ? value : otherwise; }
};

/// What stands in front of a body, also where no call reads so far.
struct envelopeHead_t {
    bool hasStartMarker = false; ///< without it a call reads nothing; the numbers are then those that people see
    envelopeField_t id, length, echoTag, sequenceNumber;

    /// The numbers of a message, for an answer to it; those that aren't there are as before.
    envelopeNumbers_t numbers(const envelopeNumbers_t &before = {}) const {
        return !hasStartMarker ? before
                               : envelopeNumbers_t{id.valueOr(before.id), echoTag.valueOr(before.echoTag),
                                                   sequenceNumber.valueOr(before.sequenceNumber)};
    }
};

struct envelope_t {
    envelopeHead_t head;
    envelopeResult_t result = envelopeResult_t::wrongMarker;
    std::string_view body;     ///< a view into the text, by counting from its end: it may contain "!!"
    std::size_t endMarker = 0; ///< where "!!" should be, of a text whose length is right

    /// Whether a call reads on behind the length.
    bool isReadOn() const { return head.hasStartMarker && result != envelopeResult_t::wrongLength; }
    /// Whether a call gets as far as the body, which may be empty.
    bool isBodyRead() const { return body.data() != nullptr; }

    /// The numbers after a call has read this, which keeps those that it does not get to.
    envelopeNumbers_t numbersForHost(const envelopeNumbers_t &before) const {
        const envelopeNumbers_t all = head.numbers(before);
        return isReadOn() ? all : envelopeNumbers_t{all.id, before.echoTag, before.sequenceNumber};
    }
};

namespace detail {

/// Reads over an envelope's text, character by character.
class envelopeScan_t {
public:
    envelopeScan_t(std::string_view text, std::size_t from)
        : start_(text.data()), at_(start_ + from), end_(start_ + text.size()) {}

    /// Reads a decimal number behind optional white space, at the largest or smallest value when it is beyond 32 bits.
    /// When there is none, white space and a lone sign are skipped all the same.
    envelopeField_t number() {
        while (at_ != end_ && *at_ < '0' && isSpace(*at_)) // most often a digit, of which one look tells
            ++at_;
        const std::size_t start = place();
        bool isNegative = false;
        if (at_ != end_ && *at_ < '0' && (*at_ == '-' || *at_ == '+'))
            isNegative = *at_++ == '-';
        const char *const digits = at_;
        std::uint32_t value = 0;
        for (; at_ != end_ && isDigit(*at_); ++at_)
            value = value * 10 + static_cast<std::uint32_t>(*at_ - '0');
        constexpr std::ptrdiff_t mostDigits = 9; // no overflow
        if (at_ - digits > mostDigits)
            value = saturated(digits, isNegative);
        return {start, place(), static_cast<std::int32_t>(isNegative ? 0U - value : value), at_ != digits};
    }

private:
    std::size_t place() const { return static_cast<std::size_t>(at_ - start_); }

    /// The number whose digits go up to here, or the limit.
    std::uint32_t saturated(const char *digit, bool isNegative) const {
        const std::int64_t limit = std::int64_t{INT32_MAX} + (isNegative ? 1 : 0);
        std::int64_t value = 0;
        for (; digit != at_; ++digit)
            value = std::min(value * 10 + (*digit - '0'), limit);
        return static_cast<std::uint32_t>(value);
    }

    const char *start_, *at_, *end_;
};

} // namespace detail

/// The text without its terminating NUL, which is part of a message and may be part of the view.
inline std::string_view withoutNul(std::string_view text) {
    return text.ends_with('\0') ? text.substr(0, text.size() - 1) : text;
}

/// Takes the front of an envelope apart, of which the text may be a piece only: it ends there when the last number's
/// end is the text's.
inline envelopeHead_t readEnvelopeHead(std::string_view text) {
    const bool hasStartMarker = text.starts_with(startMarker);
    const std::size_t halfMarker = text.starts_with(startMarker.front()) ? 1 : 0;
    detail::envelopeScan_t scan(text, hasStartMarker ? startMarker.size() : halfMarker);
    return {hasStartMarker, scan.number(), scan.number(), scan.number(), scan.number()};
}

/// Takes an envelope apart. `text` is the whole text without its NUL.
inline envelope_t readEnvelope(std::string_view text) {
    envelope_t envelope{readEnvelopeHead(text), envelopeResult_t::wrongMarker, {}, 0};
    const envelopeHead_t &head = envelope.head;
    if (!head.hasStartMarker)
        return envelope;
    if (head.length.value < 0 || static_cast<std::size_t>(head.length.value) != text.size() + 1) {
        envelope.result = envelopeResult_t::wrongLength;
        return envelope;
    }
    std::size_t at = head.sequenceNumber.end;
    constexpr std::size_t separator = 1;
    if (const std::size_t unread = text.size() - at; unread >= separator + endMarker.size()) {
        envelope.body = {text.data() + at + separator, unread - separator - endMarker.size()};
        at = text.size() - endMarker.size();
    }
    envelope.endMarker = at;
    while (at != text.size() && isSpace(text[at]))
        ++at;
    if (text.substr(at, endMarker.size()) == endMarker)
        envelope.result = envelopeResult_t::correct;
    return envelope;
}

} // namespace vek
