// plainEnvelope_t: what reading a message takes from an envelope that is as this library writes it, with its length
// right.
//
// A short cut past readEnvelope, which takes a text apart that has any other envelope, and to which this says the same.
// What is the same for every message is most of a short one.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/text/numberText.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vek {

struct plainEnvelope_t {
    std::int32_t id = 0, echoTag = 0, sequenceNumber = 0;
    std::string_view body;

    /// False of a text that is to be read by readEnvelope; nothing is known then.
    bool read(std::string_view text) {
        constexpr std::size_t idAt = startMarker.size(), idDigits = 4, lengthAt = idAt + idDigits + 1;
        constexpr std::size_t echoTagAt = lengthAt + lengthDigits + 1, shortest = echoTagAt + 5, beyondLongest = 9999;
        if (text.size() < shortest || text.size() >= beyondLongest || !text.starts_with(startMarker) ||
            !text.ends_with(endMarker))
            return false;
        const char *const start = text.data();
        id = numberOfFourDigits(wordAt(start + idAt));
        // The length is compared with what it has to be, which takes less than reading it.
        const auto length = static_cast<std::uint32_t>(text.size() + 1);
        if (id < 0 || start[lengthAt - 1] != ' ' || start[lengthAt] != ' ' ||
            wordAt(start + lengthAt + 1) != fourPlaces(length) || start[lengthAt + lengthDigits] != ' ')
            return false;
        const char *const behindEchoTag = number(start + echoTagAt, echoTag);
        const char *const behind = behindEchoTag != nullptr ? number(behindEchoTag, sequenceNumber) : nullptr;
        if (behind == nullptr)
            return false;
        body = {behind, static_cast<std::size_t>(start + text.size() - endMarker.size() - behind)};
        return true;
    }

private:
    static std::uint32_t wordAt(const char *at) {
        std::uint32_t word = 0;
        std::memcpy(&word, at, sizeof word);
        return word;
    }

    /// A number of one to nine digits and a blank, and returns the place behind it; null when something else is here.
    /// The marker at the end is no digit, so nothing has to look for the end of the text.
    static const char *number(const char *at, std::int32_t &value) {
        const bool isNegative = *at == '-';
        at += isNegative ? 1 : 0;
        const char *const digits = at;
        std::int32_t read = 0;
        constexpr int mostDigits = 9; // no overflow
        for (; isDigit(*at) && at - digits < mostDigits; ++at)
            read = read * 10 + (*at - '0');
        value = isNegative ? -read : read;
        return at != digits && *at == ' ' ? at + 1 : nullptr;
    }
};

} // namespace vek
