#include "vek/text/scalarFields.hpp"

#include "vek/text/characterBlock.hpp"
#include "vek/vek_std/std_sys/vek_shortRuns.hpp"

#include <algorithm>

namespace vek {

char *writeAt(std::string_view word, char *to) {
    copyShort(word.data(), word.size(), to);
    return to + word.size();
}

// Blocks are copied whole, also what stands behind the text's end in the last one, while they are searched; from the
// first one with a special character on it goes by characters. Nothing is decided by what stands behind the end.
char *writeTextAt(const char *text, std::size_t size, [[maybe_unused]] std::size_t readable, char *to) {
    std::size_t at = 0;
#ifdef __SSE2__
    for (; at < size && at + characterBlock_t::size <= readable; at += characterBlock_t::size) {
        const characterBlock_t block(text + at);
        block.copyTo(to + at);
        const std::size_t left = size - at;
        const unsigned ofText = left < characterBlock_t::size ? (1U << left) - 1 : 0xFFFF;
        if ((block.structuralOr('\0') & ofText) != 0) [[unlikely]]
            break;
    }
#endif
    for (; at < size && text[at] != '\0'; ++at)
        to[at] = escaped(text[at]);
    return to + std::min(at, size);
}

void readText(std::string_view text, char *to) {
    if (!hasCodes(text)) [[likely]]
        copyShort(text.data(), text.size(), to);
    else
        std::transform(text.begin(), text.end(), to, unescaped);
}

// Most texts have no code in them and are copied as they are. The others are mended in the string's own buffer, which
// is private after the copy.
void stringCodec_t::read(std::string_view text, value_t &value) {
    if (!hasCodes(text)) [[likely]] {
        value = value_t::copyOf(text);
        return;
    }
    value = string_t(text.data(), text.size());
    for (std::size_t i = 0; i < value.length(); ++i)
        value[static_cast<std::int32_t>(i)] = unescaped(text[i]);
}

} // namespace vek
