#include "vek/inspect/words/lookAlikes.hpp"

#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/characters.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <algorithm>
#include <charconv>

namespace vek::inspect {

namespace {

// Characters that look like those of a message, and none of them is.
struct lookAlike_t {
    std::uint32_t first, last;
    std::string_view name;
    char meant = 0; // of the first one; 0 when it may be several
};
constexpr lookAlike_t lookAlikes[] = {
    {0xA0, 0xA0, "a no-break space", ' '},     {0xAD, 0xAD, "a soft hyphen"},
    {0x370, 0x3FF, "a Greek letter"},          {0x400, 0x4FF, "a Cyrillic letter"},
    {0x2000, 0x200A, "a wide blank", ' '},     {0x200B, 0x200F, "an invisible character", ' '},
    {0x2010, 0x2015, "a dash", '-'},           {0x2018, 0x201F, "a typographic quote"},
    {0x202F, 0x202F, "a narrow blank", ' '},   {0x2212, 0x2212, "a minus sign", '-'},
    {0x3000, 0x3000, "a wide blank", ' '},     {0xFEFF, 0xFEFF, "a byte order mark", ' '},
    {0xFF01, 0xFF5E, "a wide character", '!'},
};

const lookAlike_t *lookAlike(std::uint32_t code) {
    const auto *const kind = std::find_if(std::begin(lookAlikes), std::end(lookAlikes),
                                          [code](const auto &one) { return code >= one.first && code <= one.last; });
    return kind != std::end(lookAlikes) ? kind : nullptr;
}

// The ASCII character that one looks like, which is none; 0 when nobody knows.
char meantBy(std::uint32_t code) {
    const lookAlike_t *kind = lookAlike(code);
    return kind == nullptr      ? '\0'
           : kind->meant == '!' ? static_cast<char>('!' + (code - kind->first)) // each of its own
                                : kind->meant;
}

} // namespace

std::string inAscii(std::string_view value) {
    std::string text;
    for (value = value.substr(0, 200); !value.empty();) {
        const std::size_t size = std::max<std::size_t>(utf8Size(value), 1);
        const char meant = size > 1 ? meantBy(utf8Character(value.substr(0, size))) : '\0';
        if (meant != '\0')
            text += meant;
        else
            text += value.substr(0, size);
        value.remove_prefix(size);
    }
    return std::string(trimmed(text));
}

std::string oddCharacterIn(std::string_view text) {
    for (std::size_t at = 0; at < text.size() && at < 1000; ++at) {
        const std::size_t size = utf8Size(text.substr(at));
        if (size < 2)
            continue;
        const std::uint32_t code = utf8Character(text.substr(at, size));
        char digits[8];
        std::string hex(digits, std::to_chars(digits, digits + sizeof digits, code, 16).ptr);
        std::transform(hex.begin(), hex.end(), hex.begin(),
                       [](char c) { return c >= 'a' ? static_cast<char>(c - 32) : c; });
        hex.insert(0, hex.size() < 4 ? 4 - hex.size() : 0, '0');
        const lookAlike_t *kind = lookAlike(code);
        return joined({", with U+", hex, " in it", kind != nullptr ? ", " : "", kind != nullptr ? kind->name : ""});
    }
    return {};
}

// Each character beyond ASCII as one, so that it counts as one that differs.
std::string withoutOddCharacters(std::string_view word) {
    std::string text;
    for (const char c : word.substr(0, 200))
        if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U)
            text += static_cast<unsigned char>(c) < 0x80 ? c : '?';
    return text;
}

std::size_t otherQuoteSize(std::string_view text) {
    if (text.starts_with('\''))
        return 1;
    const std::uint32_t code = utf8Size(text) == 3 ? utf8Character(text.substr(0, 3)) : 0;
    return code >= 0x2018 && code <= 0x201F ? 3 : 0;
}

std::string_view withinOtherQuotes(std::string_view text) {
    const std::size_t front = otherQuoteSize(text);
    const bool isWide = text.size() >= 3 && otherQuoteSize(text.substr(text.size() - 3)) == 3;
    const std::size_t back = isWide ? 3 : text.ends_with('\'') ? 1 : 0;
    return front > 0 && back > 0 && text.size() >= front + back ? text.substr(front, text.size() - front - back) : text;
}

bool isBlankOfAnyKind(std::string_view text) {
    while (!text.empty()) {
        const std::size_t size = utf8Size(text);
        const bool isMark = text.front() == '>' && size == 1;
        if (size == 0 || (!isSpace(text.front()) && !isMark && meantBy(utf8Character(text.substr(0, size))) != ' '))
            return false;
        text.remove_prefix(size);
    }
    return true;
}

std::string_view withoutBlankAtEnd(std::string_view text, std::string_view others) {
    for (std::size_t size = 1; size <= std::min<std::size_t>(text.size(), 4); ++size) {
        const std::string_view last = text.substr(text.size() - size);
        const bool isOne = utf8Size(last) == size;
        if (isOne && (isBlankOfAnyKind(last) || others.find(last) != std::string_view::npos ||
                      meantBy(utf8Character(last)) == semicolon))
            return withoutBlankAtEnd(text.substr(0, text.size() - size), others);
    }
    return text;
}

} // namespace vek::inspect
