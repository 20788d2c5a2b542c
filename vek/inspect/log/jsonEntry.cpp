// Goes over the JSON of a log's line by hand: a line may hold anything, and nothing of it but strings, numbers under a
// name of a time, and lists of bytes is of interest.
#include "vek/inspect/log/private/jsonEntry.hpp"

#include "vek/inspect/log/logTime.hpp"
#include "vek/inspect/log/unwrapping.hpp"
#include "vek/inspect/schema/schema.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/utf16.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <iterator>

namespace vek::inspect {

namespace {

constexpr int deepest = 3;

bool isTimeKey(std::string_view key) {
    std::string lower(key);
    std::transform(lower.begin(), lower.end(), lower.begin(), asciiToLower);
    return lower.find("time") != std::string::npos || lower == "ts" || lower == "@t" || lower == "t" || lower == "date";
}

int hexDigit(char c) {
    return isDigit(c) ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// Up to `most` digits of a base.
std::uint32_t digits(std::string_view text, std::size_t &at, std::size_t most, int base) {
    std::uint32_t value = 0;
    for (const std::size_t end = at + most;
         at < std::min(end, text.size()) && hexDigit(text[at]) >= 0 && hexDigit(text[at]) < base; ++at)
        value = value * static_cast<std::uint32_t>(base) + static_cast<std::uint32_t>(hexDigit(text[at]));
    return value;
}

std::uint32_t utf16Unit(std::string_view text, std::size_t &at) {
    const std::size_t start = at;
    const std::uint32_t unit = digits(text, at, 4, 16);
    return at == start + 4 ? unit : UINT32_MAX;
}

std::string withoutEscapes(std::string_view text) {
    std::string out;
    for (std::size_t at = 0; at < text.size();)
        if (text[at] != '\\' || !appendUnescaped(out, text, at))
            out += text[at++];
    return out;
}

// A list of nothing but bytes, as a journal has what is no text.
bool readBytes(std::string_view json, std::string &bytes) {
    for (std::size_t at = 1; at < json.size();) {
        at = std::min(json.find_first_not_of(" \t\r\n,", at), json.size());
        const std::size_t start = at;
        const std::uint32_t byte = digits(json, at, 3, 10);
        if (at == start || byte > UINT8_MAX)
            return at < json.size() && json[at] == ']' && !bytes.empty();
        bytes += static_cast<char>(byte);
    }
    return false;
}

bool hasMessage(std::string_view text) {
    for (std::size_t at = 0; (at = text.find("@@", at)) != std::string_view::npos; ++at) {
        const std::size_t number = text.find_first_not_of(" \t+@", at);
        if (number != std::string_view::npos && isDigit(text[number]))
            return true;
    }
    return false;
}

} // namespace

bool appendUnescaped(std::string &out, std::string_view text, std::size_t &at) {
    constexpr std::string_view letters = "nrtabfve0123456789", characters = "\n\r\t\a\b\f\v\x1b";
    if (at + 1 >= text.size())
        return false;
    const char c = text[at + 1];
    std::size_t behind = at + 2;
    if (c == '"' || c == '\'' || c == '\\' || c == '/') {
        out += c;
    } else if (c == 'x') {
        const std::uint32_t byte = digits(text, behind, 2, 16);
        if (behind != at + 4)
            return false;
        out += static_cast<char>(byte);
    } else if (c == 'u') {
        std::uint32_t unit = utf16Unit(text, behind);
        if (unit == UINT32_MAX)
            return false;
        std::size_t second = behind + 2;
        const bool mayBePair = isHighSurrogate(unit) && text.substr(behind, 2) == "\\u";
        if (const std::uint32_t low = mayBePair ? utf16Unit(text, second) : UINT32_MAX; isLowSurrogate(low)) {
            unit = joinedSurrogates(unit, low);
            behind = second;
        }
        if (unit >= 0xDC80 && unit <= 0xDCFF) // a byte that is no UTF-8, as some programs put it
            out += static_cast<char>(unit - 0xDC00);
        else
            appendUtf8(out, unit);
    } else if (c >= '0' && c <= '7') {
        out += static_cast<char>(digits(text, --behind, 3, 8));
    } else if (const std::size_t place = letters.find(c); place < characters.size()) {
        out += characters[place];
    } else {
        return false;
    }
    at = behind;
    return true;
}

std::size_t endOfJson(std::string_view text) {
    std::size_t depth = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '"') {
            for (++at; at < text.size() && text[at] != '"'; ++at) {
                if (text[at] == '\n') // no string of JSON goes on in the next line
                    return 0;
                at += text[at] == '\\' ? 1 : 0;
            }
            if (at >= text.size())
                return std::string_view::npos;
        } else if (c == '{' || c == '[') {
            ++depth;
        } else if ((c == '}' || c == ']') && depth-- == 0) {
            return 0;
        }
        if (depth == 0)
            return at + 1;
    }
    return std::string_view::npos;
}

jsonEntry_t::jsonEntry_t(std::string_view json, int depth) {
    std::string key;
    bool hasLog = false, hasStream = false, isWholeLine = true;
    for (std::size_t at = 0; at < json.size(); ++at) {
        const char c = json[at];
        if (c == '"') {
            const std::size_t end = at + endOfJson(json.substr(at));
            std::string text = withoutEscapes(json.substr(at + 1, end - at - 2));
            const std::size_t next = json.find_first_not_of(" \t\r\n", end);
            at = end - 1;
            if (next < json.size() && json[next] == ':') {
                key = std::move(text);
                hasStream |= key == "stream";
                isForm |= key == "body";
                for (const messageSchema_t &message : schema().messages())
                    isForm |= message.record != nullptr && message.record->name == key;
                at = next;
            } else {
                hasLog |= key == "log";
                isWholeLine = key == "log" ? text.ends_with('\n') : isWholeLine;
                string(key, std::move(text), depth);
            }
        } else if (c == '[') {
            if (std::string bytes; readBytes(json.substr(at), bytes))
                string(key, std::move(bytes), depth);
        } else if (isDigit(c) && !key.empty()) {
            const std::size_t end = std::min(json.find_first_not_of("0123456789.", at), json.size());
            if (isTimeKey(key))
                string(key, std::string(json.substr(at, end - at)), depth);
            at = end - 1;
        }
    }
    isContinued |= hasLog && hasStream && !isWholeLine;
}

void jsonEntry_t::string(std::string_view key, std::string value, int depth) {
    std::size_t size = 0;
    if (time.empty() && isTimeKey(key) && readTime(value, size))
        time = value;
    if (value.find("@@") == std::string::npos) {
        if (key == "log")
            messages.push_back(std::move(value)); // which may be the end of one that began in the object before
        return;
    }
    const std::string_view inner = trimmed(value);
    if (depth < deepest && (inner.starts_with('{') || inner.starts_with('[')) && endOfJson(inner) == inner.size()) {
        jsonEntry_t own(inner, depth + 1);
        if (!own.messages.empty()) {
            time = own.time.empty() ? std::move(time) : std::move(own.time);
            std::move(own.messages.begin(), own.messages.end(), std::back_inserter(messages));
            return;
        }
    }
    if (key == "log" || hasMessage(value))
        messages.push_back(std::move(value));
}

} // namespace vek::inspect
