#include "vek/api/private/envelopeWriter.hpp"

#include "vek/text/numberText.hpp"

#include <cstring>
#include <string_view>

namespace vek {

namespace {

using namespace std::string_view_literals;

char *writeWord(std::string_view word, char *to) {
    return to + word.copy(to, word.size());
}

char *writeNumber(std::int32_t number, char *to) {
    to = writeInteger(number, to);
    *to = ' ';
    return to + 1;
}

// With blanks in front; of a longer number the first five digits.
void patchLength(bodyWriter_t &out, std::size_t lengthPosition) {
    std::size_t left = out.size();
    while (left > longestReadableMessage)
        left /= 10;
    char digits[lengthDigits];
    for (std::size_t i = lengthDigits; i-- > 0; left /= 10)
        digits[i] = left != 0 ? static_cast<char>('0' + left % 10) : ' ';
    out.patch(lengthPosition, {digits, lengthDigits});
}

} // namespace

// By hand, not by a stream: the numbers of the envelope would take longer than a short body. One room() covers it all,
// so that `at` stays valid up to advance().
std::size_t beginEnvelope(bodyWriter_t &out, const envelopeNumbers_t &numbers) {
    char *at = writeWord(startMarker, out.room(3 * (integerRoom + 1) + 2 + lengthDigits + 1));
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
    patchLength(out, lengthPosition);
}

void renumberEnvelope(bodyWriter_t &out, std::size_t lengthPosition, std::int32_t echoTag,
                      std::int32_t sequenceNumber) {
    char numbers[2 * (integerRoom + 1)];
    const auto size = static_cast<std::size_t>(writeNumber(sequenceNumber, writeNumber(echoTag, numbers)) - numbers);
    const std::size_t from = lengthPosition + lengthDigits + 1;
    const std::size_t behind = out.text().find(' ', out.text().find(' ', from) + 1) + 1, rest = out.size() - behind;
    char *const start = out.room(size) - out.size();
    std::memmove(start + from + size, start + behind, rest);
    std::memcpy(start + from, numbers, size);
    out.advance(start + from + size + rest);
    patchLength(out, lengthPosition);
}

} // namespace vek
