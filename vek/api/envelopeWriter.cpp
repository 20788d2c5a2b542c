#include "vek/api/private/envelopeWriter.hpp"

#include <cstring>

namespace vek {

bodyWriter_t renumberEnvelope(bodyWriter_t out, std::size_t lengthPosition, std::int32_t echoTag,
                              std::int32_t sequenceNumber) {
    char numbers[2 * (integerRoom + 1)];
    char *const end = detail::writeHeadNumber(sequenceNumber, detail::writeHeadNumber(echoTag, numbers));
    const auto size = static_cast<std::size_t>(end - numbers);
    const std::size_t from = lengthPosition + lengthDigits + 1;
    const std::size_t behind = out.text().find(' ', out.text().find(' ', from) + 1) + 1, rest = out.size() - behind;
    char *const start = out.room(size) - out.size();
    std::memmove(start + from + size, start + behind, rest);
    std::memcpy(start + from, numbers, size);
    out.advance(start + from + size + rest);
    detail::writeLength(out.size(), out.at(lengthPosition));
    return out;
}

} // namespace vek
