// Each way of wrapping is undone block by block; what may go on in the next block is kept until it is there.
#include "vek/inspect/log/unwrapping.hpp"

#include "vek/inspect/log/logScanner.hpp"
#include "vek/inspect/log/logTime.hpp"
#include "vek/inspect/log/private/jsonEntry.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/trimming.hpp"

#include <algorithm>
#include <array>

namespace vek::inspect {

namespace {

constexpr std::size_t longestEntry = std::size_t{1} << 20;
constexpr std::size_t longestEscape = 12; // a pair of \u

bool isJson(std::string_view start) {
    start = trimmed(start);
    const bool isArray = start.starts_with('[');
    start = isArray ? trimmed(start.substr(1)) : start;
    if (!start.starts_with('{') && !(isArray && (start.starts_with('"') || start.starts_with('['))))
        return false;
    for (std::size_t at = 0; at < start.size(); ++at) {
        if (start[at] != '{' && start[at] != '"' && start[at] != '[')
            continue;
        const std::size_t size = endOfJson(start.substr(at));
        if (size == 0 || size == std::string_view::npos)
            return false;
        const jsonEntry_t entry(start.substr(at, size));
        if (entry.isForm)
            return false;
        if (std::any_of(entry.messages.begin(), entry.messages.end(),
                        [](const std::string &text) { return text.find("@@") != std::string::npos; }))
            return true;
        at += size - 1;
    }
    return false;
}

bool isEscaped(std::string_view start) {
    if (start.find('\\') == std::string_view::npos)
        return false;
    unwrapper_t unwrapper(wrapping_t::escapes);
    std::string plain(unwrapper.take(start));
    plain += unwrapper.finish();
    return wholeMessages(plain) > wholeMessages(start);
}

} // namespace

std::size_t wholeMessages(std::string_view log) {
    struct : messageSink_t {
        void message(const foundMessage_t &found) override { count += found.isDamaged ? 0 : 1; }
        std::size_t count = 0;
    } sink;
    logScanner_t scanner;
    scanner.feed(log, sink);
    scanner.finish(sink);
    return sink.count;
}

wrapping_t wrappingOf(std::string_view start) {
    using enum utf16_t::order_t;
    if (const utf16_t::order_t order = utf16_t::orderOf(start); order != none)
        return order == bigEndian ? wrapping_t::utf16BigEnd : wrapping_t::utf16LittleEnd;
    start = withoutByteOrderMark(start);
    return isJson(start) ? wrapping_t::json : isEscaped(start) ? wrapping_t::escapes : wrapping_t::none;
}

std::string_view encodingIn(std::string_view start) {
    struct encoding_t {
        std::string_view marker, words; // where bytes have other characters, with the id's first ones
    };
    static constexpr std::array<encoding_t, 7> encodings{{
        {"%40%40", "are percent-encoded (%40%40): python3 -c 'import sys, urllib.parse; "
                   "print(urllib.parse.unquote(sys.stdin.read()))' decodes them"},
        {"=40=40", "are quoted-printable (=40=40): python3 -m quopri -d decodes them"},
        {"&#64;&#64;", "are HTML (&#64;&#64;): python3 -c 'import sys, html; print(html.unescape(sys.stdin.read()))' "
                       "decodes them"},
        {"QEA0M", "are base64 (QEA0 is @@4): base64 -d decodes them"},
        {"4040343", "are hexadecimal (404034 is @@4): xxd -r -p decodes them"},
        {"40 40 34 3", "are bytes of a dump (40 40 34 is @@4): sed 's/^[0-9a-f]\\{6,8\\}:*//; s/[|>].*//' | xxd -r -p "
                       "decodes them"},
        {"4040 343", "are bytes of a dump (4040 34 is @@4): xxd -r decodes them"},
    }};
    for (const encoding_t &encoding : encodings)
        if (start.find(encoding.marker) != std::string_view::npos)
            return encoding.words;
    return {};
}

bool isDump(std::string_view start) {
    return start.starts_with("000000") && !encodingIn(start.substr(0, start.find('\n'))).empty();
}

bool showsWhatItIs(std::string_view start) {
    constexpr std::size_t enough = 64, largest = std::size_t{1} << 18;
    const std::string_view bare = withoutByteOrderMark(start);
    const std::size_t first = bare.find_first_not_of(whiteSpace);
    if (first < bare.size() && (bare[first] == '{' || bare[first] == '['))
        return start.size() >= largest ||
               endOfJson(bare.substr(std::min(bare.find('{', first), bare.size() - 1))) != std::string_view::npos;
    return start.size() >= enough || start.ends_with("!!") ||
           (first < bare.size() && bare.find('\n', first) < bare.size());
}

std::string_view unwrapper_t::take(std::string_view block) {
    out_.clear();
    switch (wrapping_) {
    case wrapping_t::none:
        return block;
    case wrapping_t::json:
        kept_ += block;
        takeJson(false);
        break;
    case wrapping_t::escapes:
        kept_ += block;
        takeEscapes(kept_, false);
        break;
    default:
        utf16_.feed(block, out_);
    }
    return out_;
}

std::string_view unwrapper_t::finish() {
    out_.clear();
    if (wrapping_ == wrapping_t::json)
        takeJson(true);
    else if (wrapping_ == wrapping_t::escapes)
        takeEscapes(kept_, true);
    kept_.clear();
    isInArray_ = isContinued_ = isInMessage_ = false;
    isLineStart_ = true;
    return out_;
}

void unwrapper_t::takeJson(bool isLast) {
    const std::string_view text = kept_;
    std::size_t at = 0;
    while (at < text.size()) {
        const char c = text[at];
        const bool isEntry = (isLineStart_ || isInArray_) && (c == '{' || (isInArray_ && (c == '"' || c == '[')));
        if (isEntry) {
            const std::size_t size = takeEntry(text.substr(at), isLast);
            if (size == 0)
                break;
            at += size;
            continue;
        }
        ++at;
        if (isLineStart_ && !isInArray_ && c == '[') {
            isInArray_ = true;
        } else if (c == '\n') {
            isLineStart_ = true;
            if (!isContinued_)
                out_ += c;
        } else if (isInArray_) {
            isInArray_ = c != ']';
        } else if (c != ' ' && c != '\t' && c != '\r') {
            isLineStart_ = false;
            out_ += c;
        } else if (!isLineStart_) {
            out_ += c;
        }
    }
    kept_.erase(0, at);
}

// Returns how much of the text is done with; 0 when there must be more of it first.
std::size_t unwrapper_t::takeEntry(std::string_view text, bool isLast) {
    const std::size_t size = endOfJson(text);
    if (size == std::string_view::npos && !isLast && text.size() < longestEntry)
        return 0;
    isLineStart_ = false;
    if (size == 0 || size == std::string_view::npos) { // no JSON after all
        const std::size_t end = std::min(text.find('\n'), text.size());
        out_ += text.substr(0, std::max<std::size_t>(end, 1));
        return std::max<std::size_t>(end, 1);
    }
    const std::string_view json = text.substr(0, size);
    const jsonEntry_t entry(json);
    bool isFirst = !isContinued_;
    for (const std::string &message : entry.messages) {
        const std::string_view line = trimmed(message, "\r\n");
        if (isFirst && !entry.time.empty() && !timeIn(line.substr(0, line.find("@@"))))
            out_.append(entry.time).append(" ");
        isFirst = false;
        out_.append(entry.isContinued ? std::string_view(message) : line).append(entry.messages.size() > 1 ? " " : "");
    }
    isContinued_ = entry.isContinued;
    out_.append(
        isInArray_ && !isContinued_ && json.find('\n') == std::string_view::npos && !entry.messages.empty() ? " " : "");
    out_.append(static_cast<std::size_t>(std::count(json.begin(), json.end(), '\n')), '\n');
    return size;
}

// Outside of messages a line end is a blank, so that lines keep their numbers.
void unwrapper_t::put(char c) {
    if (previous_ == c && (c == '@' || c == '!'))
        isInMessage_ = c == '@';
    previous_ = c;
    out_ += c;
}

void unwrapper_t::takeEscapes(std::string_view block, bool isLast) {
    std::size_t at = 0;
    std::string character;
    while (at < block.size()) {
        if (block[at] != '\\') {
            put(block[at++]);
            isInMessage_ = isInMessage_ && previous_ != '\n'; // whose own would have been an escape
            continue;
        }
        if (!isLast && block.size() - at < longestEscape && block.find('\n', at) == std::string_view::npos)
            break;
        character.clear();
        if (!appendUnescaped(character, block, at)) {
            put(block[at++]);
            continue;
        }
        const bool isLineEnd =
            at >= block.size() || std::string_view("\r\n\"'").find(block[at]) != std::string_view::npos;
        for (const char c : character)
            put(c == '\n' && (!isInMessage_ || isLineEnd) ? ' ' : c);
    }
    kept_.erase(0, at);
}

} // namespace vek::inspect
