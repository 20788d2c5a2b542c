#include "vek/text/scalarFields.hpp"

#include "vek/text/characterBlock.hpp"

#include <algorithm>
#include <bit>
#include <cstring>

namespace vek {

// The text is copied first and mended in the buffer, where whole blocks may be looked at even behind its end.
void writeText(const char *text, std::size_t size, bodyWriter_t &out) {
    constexpr std::size_t slack = 16;
    char *const start = out.room(size + slack);
    char *const end = start + size;
    std::memcpy(start, text, size);
    char *at = start;
#ifdef __SSE2__
    for (; at < end; at += characterBlock_t::size) {
        const unsigned special = characterBlock_t(at).equalAny('\0', '=', ';', ',', openBrace, closeBrace);
        if (special != 0 && at + std::countr_zero(special) < end)
            break;
    }
#endif
    for (; at < end && *at != '\0'; ++at)
        *at = escaped(*at);
    out.advance(std::min(at, end));
}

// Most texts have no code in them and are copied as they are. The others are mended in the string's own buffer, which
// is private after the copy.
void stringCodec_t::read(std::string_view text, value_t &value) {
    value = string_t(text.data(), text.size());
    if (std::none_of(text.begin(), text.end(), isEscapeCode))
        return;
    for (std::size_t i = 0; i < value.length(); ++i)
        value[static_cast<std::int32_t>(i)] = unescaped(text[i]);
}

} // namespace vek
