#include "api/envelopeWriter.hpp"

#include "text/numberText.hpp"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace vek {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t lengthDigits = 5;

void putNumber(bodyWriter_t &out, std::int32_t number) {
    out.advance(writeInteger(number, out.room(integerRoom)));
    out.put(' ');
}

} // namespace

std::size_t beginEnvelope(bodyWriter_t &out, std::int32_t id, envelopeNumbers_t &numbers) {
    numbers.sequenceNumber =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(numbers.sequenceNumber) + std::uint32_t{1});
    out.put("@@"sv);
    putNumber(out, id);
    const std::size_t lengthPosition = out.size();
    out.put("***** "sv);
    putNumber(out, numbers.echoTag);
    putNumber(out, numbers.sequenceNumber);
    return lengthPosition;
}

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
