// Finds "@@" with a number behind it, and then looks for the end of that message before anything else is believed. What
// might go on in the next block is kept until it is there.
#include "vek/inspect/log/logScanner.hpp"

#include "vek/inspect/words/lineCount.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <cstring>

namespace vek::inspect {

namespace {

constexpr std::string_view bodyEnd = "}!!";
constexpr std::size_t nowhere = std::string_view::npos;

// Where "@@" stands next; a lone "@" at the end may be its first half.
std::size_t findMarker(std::string_view text, std::size_t from) {
    while (from + 1 < text.size()) {
        const void *found = std::memchr(text.data() + from, startMarker[0], text.size() - from - 1);
        if (found == nullptr)
            return nowhere;
        from = static_cast<std::size_t>(static_cast<const char *>(found) - text.data());
        if (text[from + 1] == startMarker[1])
            return from;
        ++from;
    }
    return nowhere;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::size_t skipBlanks(std::string_view text, std::size_t at) {
    while (at < text.size() && isBlank(text[at]))
        ++at;
    return at;
}

// A sign makes no id here: so the marks of diff are passed over.
bool hasIdOnLine(std::string_view text, std::size_t at) {
    at = skipBlanks(text, at + startMarker.size());
    return at < text.size() && isDigit(text[at]);
}

// Whether an id is followed by what may follow it in front of a body.
bool goesOnAsHead(std::string_view text, std::size_t at, bool isLast) {
    const std::size_t id = skipBlanks(text, at + startMarker.size());
    const std::size_t idEnd = std::min(text.find_first_not_of("0123456789", id), text.size());
    const std::size_t behind = skipBlanks(text, idEnd);
    if (behind == text.size())
        return isLast;
    const bool isNumber = behind > idEnd && (isDigit(text[behind]) || text[behind] == '-');
    return isNumber || isSpace(text[behind]) || text[behind] == '{';
}

// Where the next message may begin: the next "@@" with a number behind it. On the line of the one before, where it may
// stand in a text, more of a head is asked for.
std::size_t findNextMessage(std::string_view text, std::size_t from, bool isLast) {
    bool isOnLine = true;
    for (std::size_t at = from; (at = findMarker(text, at)) != nowhere; from = at++) {
        isOnLine = isOnLine && text.substr(from, at - from).find('\n') == nowhere;
        if (hasIdOnLine(text, at) && (!isOnLine || goesOnAsHead(text, at, isLast)))
            return at;
    }
    return nowhere;
}

std::size_t behindFirst(std::string_view text, std::string_view word) {
    const std::size_t at = text.find(word);
    return at == nowhere ? nowhere : at + word.size();
}

std::size_t withoutBlanks(std::string_view text, std::size_t start, std::size_t end) {
    while (end > start && isSpace(text[end - 1]))
        --end;
    return end;
}

} // namespace

bool isMeantAsMessage(std::string_view text) {
    text = trimmed(text);
    return text.size() > endMarker.size() &&
           (text.front() == startMarker[0] || text.front() == '{' || text.ends_with(endMarker));
}

bool isMerelyAround(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i)
        if (const bool isSpeltOut = i > 0 && text[i - 1] == '\\';
            !isSpeltOut && (isWordCharacter(text[i]) || text[i] == '{') && text[i] != '_')
            return false;
    return true;
}

logScanner_t::logScanner_t(std::uint64_t offset, std::uint64_t line) : offset_(offset), line_(line) {}

logScanner_t::logScanner_t(const logPosition_t &position)
    : head_(position.lineHead), before_(position.isLineHeadComplete ? std::string() : position.lineHead),
      offset_(position.offset), line_(position.line), column_(position.column), hasHead_(position.isLineHeadComplete) {}

void logScanner_t::feed(std::string_view block, messageSink_t &sink) {
    // What was kept gets as much of the block as decides it; the rest is looked at where it stands.
    while (!kept_.empty() && !block.empty()) {
        constexpr std::size_t leastStep = 1024;
        const std::size_t kept = kept_.size();
        const std::string_view step = block.substr(0, std::max(kept, leastStep));
        kept_ += step;
        const std::size_t decided = scan(kept_, false, sink);
        kept_.erase(0, decided < kept ? decided : kept_.size());
        block.remove_prefix(decided < kept ? step.size() : decided - kept);
    }
    if (!block.empty())
        kept_ = block.substr(scan(block, false, sink));
}

void logScanner_t::finish(messageSink_t &sink) {
    scan(kept_, true, sink);
    kept_.clear();
}

// Returns how much is decided.
std::size_t logScanner_t::scan(std::string_view text, bool isLast, messageSink_t &sink) {
    using enum candidate_t::kind_t;
    std::size_t passed = 0;
    foundMessage_t found;
    for (std::size_t at = 0; (at = findMarker(text, at)) != nowhere;) {
        const candidate_t candidate = examine(text, at, isLast, found.head);
        if (candidate.kind == other) {
            ++at;
            continue;
        }
        pass(text.substr(passed, at - passed), sink);
        passed = at;
        if (candidate.kind == undecided)
            return passed;
        found.text = text.substr(at, candidate.end - at);
        if (candidate.isDamaged)
            found.head = readEnvelopeHead(found.text);
        found.offset = offset_;
        found.line = line_;
        found.column = column_;
        found.before = before_;
        found.lineHead = head_;
        found.isDamaged = candidate.isDamaged;
        sink.message(found);
        passMessage(found.text, candidate.isOneLine);
        passed = at = candidate.end;
    }
    const bool isHalf = !isLast && text.ends_with(startMarker[0]) && passed < text.size();
    const std::size_t end = text.size() - (isHalf ? 1 : 0);
    pass(text.substr(passed, end - passed), sink);
    return end;
}

// What the calls read as a message is one, wherever its numbers stand; anything else must begin on one line.
logScanner_t::candidate_t logScanner_t::examine(std::string_view text, std::size_t at, bool isLast,
                                                envelopeHead_t &head) {
    using enum candidate_t::kind_t;
    const std::string_view window = text.substr(at, memoryBound);
    const bool mayGoOn = !isLast && window.size() < memoryBound;
    head = readEnvelopeHead(window);
    if (mayGoOn && (head.id.end == window.size() || (head.id.isThere && head.length.end == window.size())))
        return {undecided};
    constexpr std::size_t shortest = 8;
    const auto length = static_cast<std::size_t>(std::max(head.length.value, 0));
    if (head.id.isThere && length >= shortest && length <= memoryBound) {
        const std::string_view message = window.substr(0, length - 1); // the length counts a NUL too
        if (message.size() < length - 1 && !isLast)
            return {undecided};
        if (message.size() == length - 1 && message.ends_with(endMarker)) {
            const bool isOneLine = isAllBehind(message, '\n'); // then it has no NUL either
            const bool isDamaged = !isOneLine && message.find('\0') != nowhere;
            return {candidate_t::kind_t::message, at + message.size(), isDamaged, isOneLine};
        }
    }
    if (hasIdOnLine(text, at))
        return findDamagedEnd(text, at, isLast);
    const std::size_t front = skipBlanks(text, at + startMarker.size());
    return front < text.size() && text[front] == startMarker[0] ? candidate_t{} : findEndWithoutId(text, at, isLast);
}

logScanner_t::candidate_t logScanner_t::findDamagedEnd(std::string_view text, std::size_t at, bool isLast) {
    using enum candidate_t::kind_t;
    const std::string_view window = text.substr(0, std::min(text.size(), at + memoryBound));
    const std::size_t next = findNextMessage(window, at + startMarker.size(), isLast);
    const std::size_t limit = std::min(next, window.size());
    const std::size_t line = window.substr(0, limit).find('\n', at);
    const std::string_view onLine = window.substr(at, std::min(line, limit) - at);
    for (const std::string_view word : {bodyEnd, endMarker})
        if (const std::size_t end = behindFirst(onLine, word); end != nowhere)
            if (word == bodyEnd || line != nowhere || next != nowhere || isLast || window.size() < text.size())
                return {message, at + end};
    if (line != nowhere) // a message that was wrapped ends on a line below
        if (const std::size_t end = behindFirst(window.substr(line, limit - line), bodyEnd); end != nowhere)
            return {message, line + end};
    if (next == nowhere && !isLast && window.size() == text.size() && text.size() - at < memoryBound)
        return {undecided};
    return {message, withoutBlanks(window, at + startMarker.size(), std::min(line, limit))};
}

// Other programs write "@@" too; here it must at least look like a message up to the next one.
logScanner_t::candidate_t logScanner_t::findEndWithoutId(std::string_view text, std::size_t at, bool isLast) {
    using enum candidate_t::kind_t;
    const std::string_view window = text.substr(0, std::min(text.size(), at + longestReadableMessage));
    const std::size_t limit =
        std::min({findMarker(window, at + startMarker.size()), window.find('\n', at), window.size()});
    const std::string_view line = window.substr(at, limit - at);
    const std::size_t brace = line.find('{');
    if (brace != nowhere)
        for (const std::string_view word : {bodyEnd, endMarker})
            if (const std::size_t end = behindFirst(line.substr(brace), word); end != nowhere)
                if (word == bodyEnd || limit < window.size() || isLast || window.size() < text.size())
                    return {message, at + brace + end};
    const bool mayGoOn = limit == text.size() && !isLast && text.size() - at < longestReadableMessage;
    return {mayGoOn ? undecided : other};
}

// Goes over what is no message.
void logScanner_t::pass(std::string_view words, messageSink_t &sink) {
    if (words.empty())
        return;
    sink.between(words);
    offset_ += words.size();
    const std::uint64_t lines = countLines(words);
    if (lines > 0) {
        line_ += lines;
        words.remove_prefix(words.rfind('\n') + 1);
        head_.clear();
        before_.clear();
        hasHead_ = false;
        column_ = 1;
        if (words.empty())
            return;
    }
    column_ += words.size();
    if (!hasHead_ && head_.size() < headRoom)
        head_ += words.substr(0, headRoom - head_.size());
    if (words.size() >= headRoom)
        before_ = words.substr(words.size() - headRoom);
    else
        before_ += words;
    if (before_.size() > headRoom)
        before_.erase(0, before_.size() - headRoom);
}

void logScanner_t::passMessage(std::string_view message, bool isOneLine) {
    offset_ += message.size();
    const std::uint64_t lines = isOneLine ? 0 : countLines(message);
    line_ += lines;
    column_ = lines == 0 ? column_ + message.size() : message.size() - message.rfind('\n');
    before_.clear();
    hasHead_ = true;
}

} // namespace vek::inspect
