// JSON strings hold characters, a message any bytes: bytes that are none go as characters that nobody uses.
#include "vek/inspect/forms/private/jsonText.hpp"

#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/words/quoting.hpp"

#include <algorithm>
#include <array>
#include <cstring>

namespace vek::inspect {

namespace {

// What goes into a JSON string as it is.
constexpr auto isSimple = [] {
    std::array<bool, 256> set{};
    for (std::size_t c = 0x20; c < 0x7F; ++c)
        set[c] = c != '"' && c != '\\';
    return set;
}();

bool isByteCharacter(std::uint32_t character) {
    return character >= byteCharacters && character < byteCharacters + 0x80;
}

void appendEscape(std::string &out, std::uint32_t character) {
    constexpr std::string_view digits = "0123456789abcdef";
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += digits[character >> shift & 15U];
}

void appendSpecial(std::string &out, std::string_view character) {
    constexpr std::string_view escaped = "\"\\\n\r\t", letters = "\"\\nrt";
    if (const std::size_t known = escaped.find(character[0]); known != std::string_view::npos) {
        out += '\\';
        out += letters[known];
    } else if (static_cast<unsigned char>(character[0]) < 0x20 || character[0] == '\x7F') {
        appendEscape(out, static_cast<unsigned char>(character[0]));
    } else {
        out += character;
    }
}

// By words, as it is asked of all texts of an archive.
bool isAscii(std::string_view bytes) {
    constexpr std::uint64_t highBits = 0x8080808080808080U;
    std::uint64_t seen = 0, word = 0;
    for (; bytes.size() >= sizeof word; bytes.remove_prefix(sizeof word)) {
        std::memcpy(&word, bytes.data(), sizeof word);
        seen |= word;
    }
    for (const char byte : bytes)
        seen |= static_cast<unsigned char>(byte);
    return (seen & highBits) == 0;
}

} // namespace

bool isPlainAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return isSimple[static_cast<unsigned char>(c)]; });
}

void appendJsonString(std::string &out, std::string_view bytes) {
    if (isPlainAscii(bytes))
        return appendPieces(out, "\"", bytes, "\"");
    const auto isSpecial = [](char c) { return !isSimple[static_cast<unsigned char>(c)]; };
    auto special = std::find_if(bytes.begin(), bytes.end(), isSpecial);
    out += '"';
    while (!bytes.empty()) {
        const auto simple = static_cast<std::size_t>(special - bytes.begin());
        out += bytes.substr(0, simple);
        bytes.remove_prefix(simple);
        if (bytes.empty())
            break;
        const std::size_t size = utf8Size(bytes);
        const std::string_view character = bytes.substr(0, std::max<std::size_t>(size, 1));
        if (size == 0 || isByteCharacter(utf8Character(character)))
            for (const char byte : character)
                appendEscape(out, byteCharacters + (static_cast<unsigned char>(byte) & 0x7FU));
        else
            appendSpecial(out, character);
        bytes.remove_prefix(character.size());
        special = std::find_if(bytes.begin(), bytes.end(), isSpecial);
    }
    out += '"';
}

std::string_view wellFormed(std::string_view bytes, std::string &room) {
    if (isAscii(bytes))
        return bytes;
    room.clear();
    while (!bytes.empty()) {
        const std::size_t size = utf8Size(bytes);
        const std::string_view character = bytes.substr(0, std::max<std::size_t>(size, 1));
        if (size == 0 || isByteCharacter(utf8Character(character)))
            for (const char byte : character)
                appendUtf8(room, byteCharacters + (static_cast<unsigned char>(byte) & 0x7FU));
        else
            room += character;
        bytes.remove_prefix(character.size());
    }
    return room;
}

std::string jsonBytes(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const std::size_t size = std::max<std::size_t>(utf8Size(text), 1);
        const std::uint32_t character = size == 3 ? utf8Character(text.substr(0, size)) : 0;
        if (isByteCharacter(character))
            bytes += static_cast<char>(0x80 | (character - byteCharacters));
        else
            bytes += text.substr(0, size);
        text.remove_prefix(size);
    }
    return bytes;
}

} // namespace vek::inspect
