#include "text/scalarFields.hpp"

#include <algorithm>

namespace vek {

void writeText(const char *text, std::size_t size, bodyWriter_t &out) {
    char *to = out.room(size);
    for (std::size_t i = 0; i < size && text[i] != '\0'; ++i)
        *to++ = escaped(text[i]);
    out.advance(to);
}

void stringCodec_t::read(std::string_view text, value_t &value) {
    value = string_t(text.data(), text.size());
    if (std::none_of(text.begin(), text.end(), isEscapeCode))
        return;
    for (std::size_t i = 0; i < value.length(); ++i)
        value[static_cast<std::int32_t>(i)] = unescaped(text[i]);
}

} // namespace vek
