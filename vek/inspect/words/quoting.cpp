// Goes over UTF-8 character by character; each byte that is none stands for itself.
#include "vek/inspect/words/quoting.hpp"

#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace vek::inspect {

namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";

// What is written as a backslash and a letter, and these letters.
constexpr std::string_view escapedBytes = "\"\\\n\r\t", escapeLetters = "\"\\nrt";

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

constexpr characterRange_t unprintable[] = {{0, 0x1F},        {0x7F, 0x9F},     {0xAD, 0xAD},
                                            {0x61C, 0x61C},   {0x200B, 0x200F}, {0x180E, 0x180E},
                                            {0x2028, 0x202E}, {0x2060, 0x206F}, {0xFEFF, 0xFEFF}};

bool isPrintableCharacter(std::string_view bytes) {
    const std::uint32_t character = utf8Character(bytes);
    return std::none_of(std::begin(unprintable), std::end(unprintable), [character](const characterRange_t &range) {
        return character >= range.first && character <= range.last;
    });
}

// Greek, Cyrillic and wide letters, of which many look like Latin ones.
bool isLookAlike(std::uint32_t character) {
    return (character >= 0x370 && character <= 0x52F) || (character >= 0xFF21 && character <= 0xFF5A);
}

bool isForeignBlank(std::uint32_t character) {
    return character == 0xA0 || character == 0x1680 || (character >= 0x2000 && character <= 0x200A) ||
           character == 0x202F || character == 0x205F || character == 0x3000;
}

// The size of a colour sequence at the front of a text, "ESC [ 1 ; 3 1 m"; 0 when there is none.
std::size_t colourSize(std::string_view text) {
    if (!text.starts_with("\x1b["))
        return 0;
    const std::size_t end = text.find_first_not_of("0123456789;", 2);
    return end < text.size() && text[end] == 'm' ? end + 1 : 0;
}

void appendHex(std::string &out, char byte) {
    out += "\\x";
    out += hexDigits[static_cast<unsigned char>(byte) >> 4];
    out += hexDigits[static_cast<unsigned char>(byte) & 15U];
}

bool readHex(std::string_view text, std::size_t at, char &byte) {
    if (text.size() < at + 2)
        return false;
    const std::size_t high = hexDigits.find(text[at]), low = hexDigits.find(text[at + 1]);
    if (high == std::string_view::npos || low == std::string_view::npos)
        return false;
    byte = static_cast<char>(high << 4 | low);
    return true;
}

} // namespace

std::size_t utf8Size(std::string_view text) {
    if (text.empty())
        return 0;
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x80)
        return 1;
    const std::size_t size = first >= 0xC2 && first <= 0xDF   ? 2
                             : (first & 0xF0U) == 0xE0        ? 3
                             : first >= 0xF0 && first <= 0xF4 ? 4
                                                              : 0;
    if (size == 0 || text.size() < size ||
        !std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(size), isContinuation))
        return 0;
    const auto second = static_cast<unsigned char>(text[1]);
    const bool isOverlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool isOutside = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
    return isOverlong || isOutside ? 0 : size;
}

std::uint32_t utf8Character(std::string_view bytes) {
    const auto first = static_cast<unsigned char>(bytes[0]);
    if (bytes.size() == 1)
        return first;
    std::uint32_t character = first & (0x7FU >> bytes.size());
    for (const char byte : bytes.substr(1))
        character = character << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
    return character;
}

void appendUtf8(std::string &out, std::uint32_t character) {
    const auto put = [&out](std::uint32_t byte) { out += static_cast<char>(byte); };
    if (character < 0x80)
        return put(character);
    if (character < 0x800) {
        put(0xC0 | character >> 6);
    } else {
        if (character < 0x10000) {
            put(0xE0 | character >> 12);
        } else {
            put(0xF0 | character >> 18);
            put(0x80 | (character >> 12 & 0x3F));
        }
        put(0x80 | (character >> 6 & 0x3F));
    }
    put(0x80 | (character & 0x3F));
}

void appendQuoted(std::string &out, std::string_view bytes) {
    out += '"';
    while (!bytes.empty()) {
        const std::size_t size = std::max<std::size_t>(utf8Size(bytes), 1);
        const std::string_view character = bytes.substr(0, size);
        if (const std::size_t known = escapedBytes.find(bytes[0]); known != std::string_view::npos) {
            out += '\\';
            out += escapeLetters[known];
        } else if (utf8Size(bytes) != 0 && isPrintableCharacter(character)) {
            out += character;
        } else {
            for (const char byte : character)
                appendHex(out, byte);
        }
        bytes.remove_prefix(size);
    }
    out += '"';
}

bool readQuoted(std::string_view text, std::size_t &at, std::string &bytes) {
    bytes.clear();
    if (at >= text.size() || text[at] != '"')
        return false;
    for (++at; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] != '\\') {
            bytes += text[at];
            continue;
        }
        if (++at == text.size())
            return false;
        if (const std::size_t known = escapeLetters.find(text[at]); known != std::string_view::npos) {
            bytes += escapedBytes[known];
        } else if (char byte = 0; text[at] == 'x' && readHex(text, at + 1, byte)) {
            bytes += byte;
            at += 2;
        } else {
            return false;
        }
    }
    if (at == text.size())
        return false;
    ++at;
    return true;
}

std::span<const characterRange_t> unprintableCharacters() {
    return unprintable;
}

std::string visible(std::string_view text, bool keepsColours) {
    std::string out;
    char code[16];
    const auto startsLatinWord = [text](std::size_t start) {
        const std::size_t end = std::min(text.find_first_of(" \t\n;=,{}", start), text.size());
        const std::string_view word = text.substr(start, end - start);
        return std::any_of(word.begin(), word.end(), [](char c) { return isAsciiLower(c) || isAsciiUpper(c); });
    };
    bool isLatin = startsLatinWord(0); // the word
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view rest = text.substr(at);
        const std::size_t size = std::max<std::size_t>(utf8Size(rest), 1), colour = keepsColours ? colourSize(rest) : 0;
        const std::string_view bytes = rest.substr(0, colour > 0 ? colour : size);
        at += bytes.size();
        const bool isCharacter = colour == 0 && utf8Size(rest) > 0;
        const std::uint32_t character = isCharacter ? utf8Character(bytes) : 0;
        if (!isCharacter || (character < 0x80 && !isWordCharacter(rest.front())))
            isLatin = startsLatinWord(at);
        const bool isShown = isCharacter && isPrintableCharacter(bytes) && !isForeignBlank(character) &&
                             !(isLatin && isLookAlike(character));
        if (isShown || colour > 0 || rest.front() == '\n' || rest.front() == '\t') {
            out += bytes;
        } else if (!isCharacter || character < 0x80) {
            appendHex(out, bytes.front());
        } else {
            std::snprintf(code, sizeof code, character > 0xFFFF ? "\\U%08x" : "\\u%04x",
                          static_cast<unsigned>(character));
            out += code;
        }
    }
    return out;
}

bool isPrintable(std::string_view text) {
    while (!text.empty()) {
        const std::size_t size = utf8Size(text);
        if (size == 0 || !isPrintableCharacter(text.substr(0, size)))
            return false;
        text.remove_prefix(size);
    }
    return true;
}

void appendPathKey(std::string &out, std::string_view key) {
    if (!key.empty() && std::all_of(key.begin(), key.end(), isWordCharacter))
        out += key;
    else
        appendQuoted(out, key);
}

} // namespace vek::inspect
