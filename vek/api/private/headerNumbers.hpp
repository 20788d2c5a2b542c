// The two header numbers of this process: set when the library is loaded, then by every message read or written.
//
// They are taken over and used as one pair, so that a message has numbers that some order of the calls explains. Any
// thread may read and write messages.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/vek_std/std_sys/vek_processWide.hpp"

#include <cstdint>

namespace vek {

/// Both numbers in one word, the sequence number in its upper half.
class alignas(8) headerNumbers_t {
public:
    constexpr headerNumbers_t() : headerNumbers_t(envelopeNumbers_t().echoTag, envelopeNumbers_t().sequenceNumber) {}
    constexpr headerNumbers_t(std::int32_t echoTag, std::int32_t sequenceNumber)
        : both_(std::uint64_t{static_cast<std::uint32_t>(sequenceNumber)} << 32 | static_cast<std::uint32_t>(echoTag)) {
    }

    std::int32_t echoTag() const { return static_cast<std::int32_t>(static_cast<std::uint32_t>(both_)); }
    std::int32_t sequenceNumber() const { return static_cast<std::int32_t>(both_ >> 32); }
    bool operator==(const headerNumbers_t &) const = default;

    /// Those of the next message: from the largest sequence number to the smallest.
    headerNumbers_t countedUp() const {
        headerNumbers_t next = *this;
        next.both_ += std::uint64_t{1} << 32;
        return next;
    }

private:
    std::uint64_t both_;
};

/// Apart from other data, since threads that convert take turns at them.
alignas(64) extern constinit processWide_t<headerNumbers_t> headerNumbers;

/// The header numbers of a message that is being read.
struct readHeaderNumbers_t {
    headerNumbers_t numbers;
    bool hasEchoTag = false;
    bool hasSequenceNumber = false;

    explicit readHeaderNumbers_t(const envelope_t &envelope)
        : numbers(envelope.head.echoTag.value, envelope.head.sequenceNumber.value),
          hasEchoTag(envelope.isReadOn() && envelope.head.echoTag.isThere),
          hasSequenceNumber(envelope.isReadOn() && envelope.head.sequenceNumber.isThere) {}
    /// Of one that has both.
    explicit readHeaderNumbers_t(const headerNumbers_t &both)
        : numbers(both), hasEchoTag(true), hasSequenceNumber(true) {}

    /// Makes them those of the process. Numbers that are there already aren't stored again: threads that only read
    /// don't take them from each other.
    void takeOver() const {
        headerNumbers_t before = headerNumbers;
        if (hasEchoTag && hasSequenceNumber) [[likely]] {
            if (before != numbers)
                headerNumbers = numbers;
        } else if (hasEchoTag || hasSequenceNumber) {
            while (!headerNumbers.replace(before, {hasEchoTag ? numbers.echoTag() : before.echoTag(),
                                                   hasEchoTag ? before.sequenceNumber() : numbers.sequenceNumber()})) {
            }
        }
    }
};

} // namespace vek
