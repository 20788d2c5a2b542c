#include "vek/api/private/envelopeWriter.hpp"

#include "vek/text/numberText.hpp"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace vek {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t lengthDigits = 5;

char *writeWord(std::string_view word, char *to) {
    return to + word.copy(to, word.size());
}

char *writeNumber(std::int32_t number, char *to) {
    to = writeInteger(number, to);
    *to = ' ';
    return to + 1;
}

} // namespace

// A number that is there already isn't stored again: threads that only read don't take the numbers from each other.
void readEnvelope(std::string_view text, std::int32_t &id, std::string_view &body) {
    const envelopeNumbers_t before{id, headerNumbers.echoTag, headerNumbers.sequenceNumber};
    envelopeNumbers_t numbers = before;
    readEnvelope(text, numbers, body);
    id = numbers.id;
    if (numbers.echoTag != before.echoTag)
        headerNumbers.echoTag = numbers.echoTag;
    if (numbers.sequenceNumber != before.sequenceNumber)
        headerNumbers.sequenceNumber = numbers.sequenceNumber;
}

// Unsigned, since the step from the largest number to the smallest is wanted and would be undefined.
takenNumber_t::takenNumber_t()
    : previous_(headerNumbers.sequenceNumber.fetchAdd(1)),
      value_(static_cast<std::int32_t>(static_cast<std::uint32_t>(previous_) + 1U)) {}

takenNumber_t::~takenNumber_t() {
    if (!isKept_)
        headerNumbers.sequenceNumber.replace(value_, previous_);
}

// By hand, not by a stream: the numbers of the envelope would take longer than a short body. One room() covers it all,
// so that `at` stays valid up to advance().
std::size_t beginEnvelope(bodyWriter_t &out, const envelopeNumbers_t &numbers) {
    char *at = writeWord("@@", out.room(3 * (integerRoom + 1) + 2 + lengthDigits + 1));
    out.advance(writeNumber(numbers.id, at));
    const std::size_t lengthPosition = out.size();
    at = writeWord("***** ", out.room(0));
    out.advance(writeNumber(numbers.sequenceNumber, writeNumber(numbers.echoTag, at)));
    return lengthPosition;
}

// The length comes last and counts itself, which it can because it always has five places: readers find the body by
// counting from the end, and trust a text only when the length is right.
void endEnvelope(bodyWriter_t &out, std::size_t lengthPosition) {
    out.put("!!\0"sv);
    char digits[lengthDigits + 20];
    std::fill_n(digits, lengthDigits, ' ');
    const char *const end = std::to_chars(digits + lengthDigits, std::end(digits), out.size()).ptr;
    // The last five characters of the padded number; of a longer number the first five digits.
    const char *const start = std::min(const_cast<const char *>(digits + lengthDigits), end - lengthDigits);
    out.patch(lengthPosition, {start, lengthDigits});
}

} // namespace vek
