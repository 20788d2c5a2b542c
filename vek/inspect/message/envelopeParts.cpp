// Two readings side by side: what a host reads, which counts from the ends and believes the length, and what a person
// sees, who looks for braces and markers. Where they differ, the message is damaged.
#include "vek/inspect/message/envelopeParts.hpp"

#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <string>

namespace vek::inspect {

namespace {

std::uint32_t narrow(std::size_t offset) {
    return static_cast<std::uint32_t>(offset);
}

envelopeNumber_t asPart(const envelopeField_t &field, std::size_t start) {
    return {{narrow(start + field.start), narrow(start + (field.isThere ? field.end : field.start))},
            field.isThere,
            field.value};
}

// Where "@@" and a number stand; 0 when they don't in front of a body.
std::size_t findStart(std::string_view text) {
    const std::string_view front = text.substr(0, text.find(openBrace));
    for (std::size_t at = 0; (at = front.find(startMarker, at)) != std::string_view::npos; ++at)
        if (const std::size_t id = front.find_first_not_of(" \t", at + startMarker.size());
            id != std::string_view::npos && isDigit(front[id]))
            return at;
    return 0;
}

// Finds the body as a person would, behind the numbers and in front of the "!!".
class bodyFinder_t {
public:
    explicit bodyFinder_t(std::string_view text) : text_(text) {}

    void find(std::size_t front, envelopeParts_t &parts) const {
        std::size_t start = front;
        while (start < text_.size() && isSpace(text_[start]))
            ++start;
        if (start == text_.size() || (text_[start] != openBrace && !text_.substr(start).starts_with(endMarker)))
            start = behindWord(front);
        readEnd(start, parts);
    }

private:
    // Behind what stands where a number should be, if no pair does.
    std::size_t behindWord(std::size_t front) const {
        const std::size_t brace = text_.find_first_of("{=;", front);
        return brace != std::string_view::npos && text_[brace] == openBrace ? brace : std::min(front + 1, text_.size());
    }

    std::size_t endWithoutSpace(std::size_t from, std::size_t end) const {
        while (end > from && (isSpace(text_[end - 1]) || text_[end - 1] == '\0'))
            --end;
        return end;
    }

    // The last "}!!" with nothing but more of "!" behind it, else the last "!!" with nothing but white space behind
    // it, else the last "}!!".
    std::size_t findEndMarker(std::size_t from) const {
        if (const std::size_t inner = findInnerEnd(from); inner != std::string_view::npos)
            return inner;
        const std::size_t end = endWithoutSpace(from, text_.size());
        const std::size_t found = text_.rfind("}!!");
        const bool isFound = found != std::string_view::npos && found >= from;
        if (isFound && text_.find_first_not_of('!', found + 1) >= end)
            return found + 1;
        if (end >= from + endMarker.size() && text_.substr(0, end).ends_with(endMarker) &&
            !text_.substr(0, end).ends_with("}\\!!")) // of a shell
            return end - endMarker.size();
        return isFound ? found + 1 : std::string_view::npos;
    }

    // Where the end marker should be, of which a part may be there.
    std::size_t findMissingEnd(std::size_t from) const {
        std::size_t end = text_.size();
        for (std::size_t before = end + 1; end > from && end < before;) {
            before = end;
            end = text_.find_last_not_of(" \t\r\n!?.,;'\"\\", end - 1) + 1;
            if (text_.substr(0, end).ends_with(wideMark))
                end -= wideMark.size();
        }
        const std::string_view rest = text_.substr(end);
        const bool isPart = end > from && text_[end - 1] == closeBrace &&
                            (rest.find('!') != std::string_view::npos || rest.find(wideMark) != std::string_view::npos);
        return isPart ? end : text_.size();
    }

    // The "!!" in front of another message.
    std::size_t findInnerEnd(std::size_t from) const {
        for (std::size_t at = from; (at = text_.find("}!!", at)) != std::string_view::npos; ++at) {
            std::size_t next = at + 3;
            while (next < text_.size() && isSpace(text_[next]))
                ++next;
            if (text_.substr(next).starts_with(startMarker))
                return at + 1;
        }
        return std::string_view::npos;
    }

    void readEnd(std::size_t bodyStart, envelopeParts_t &parts) const {
        const std::size_t marker = findEndMarker(bodyStart);
        const bool isThere = marker != std::string_view::npos;
        const std::size_t limit = isThere ? marker : findMissingEnd(bodyStart);
        std::size_t bodyEnd = limit;
        while (bodyEnd > bodyStart && isSpace(text_[bodyEnd - 1]))
            --bodyEnd;
        if (bodyEnd == bodyStart || text_[bodyEnd - 1] != closeBrace)
            bodyEnd = limit;
        parts.body = {narrow(bodyStart), narrow(bodyEnd)};
        parts.endMarker = {narrow(limit), narrow(isThere ? limit + endMarker.size() : limit)};
        parts.behind = {parts.endMarker.end, narrow(text_.size())};
    }

    std::string_view text_;
};

bool isSpeltAsWritten(std::string_view text, const envelopeNumber_t &number) {
    return number.isThere && number.place.in(text) == std::to_string(number.value);
}

bool isWrittenByTheLibrary(std::string_view text, const envelopeParts_t &parts) {
    const auto isBlank = [text](std::size_t from, std::size_t to) {
        return from < to &&
               std::all_of(text.begin() + static_cast<std::ptrdiff_t>(from),
                           text.begin() + static_cast<std::ptrdiff_t>(to), [](char c) { return c == ' '; });
    };
    const auto isNext = [&](place_t place, place_t next) {
        return next.start == place.end + 1 && isBlank(place.end, next.start);
    };
    return parts.startMarker == place_t{0, narrow(startMarker.size())} && parts.id.place.start == startMarker.size() &&
           isSpeltAsWritten(text, parts.id) && isSpeltAsWritten(text, parts.echoTag) &&
           isSpeltAsWritten(text, parts.sequenceNumber) &&
           parts.length.place.end == parts.id.place.end + 1 + lengthDigits &&
           isBlank(parts.id.place.end, parts.length.place.start) &&
           parts.length.place.in(text) == std::string_view(std::to_string(parts.rightLength)).substr(0, lengthDigits) &&
           isNext(parts.length.place, parts.echoTag.place) && isNext(parts.echoTag.place, parts.sequenceNumber.place) &&
           isNext(parts.sequenceNumber.place, parts.body) && parts.endMarker.start == parts.body.end &&
           parts.endMarker.size() == endMarker.size() && parts.behind.isEmpty();
}

} // namespace

envelopeParts_t takeEnvelopeApart(std::string_view text) {
    text = withoutNul(text);
    envelopeParts_t parts;
    parts.whole = {0, narrow(text.size())};
    const envelope_t envelope = readEnvelope(text.substr(0, text.find('\0'))); // a host's text ends at its first NUL
    const std::size_t start = findStart(text);
    const envelopeHead_t head =
        start == 0 ? envelope.head : readEnvelopeHead(text.substr(start, text.find('\0', start) - start));
    parts.before = {0, narrow(start)};
    parts.startMarker = {narrow(start), narrow(start + (head.hasStartMarker ? startMarker.size() : 0))};
    parts.id = asPart(head.id, start);
    parts.length = asPart(head.length, start);
    parts.echoTag = asPart(head.echoTag, start);
    parts.sequenceNumber = asPart(head.sequenceNumber, start);
    bodyFinder_t(text).find(start + head.sequenceNumber.end, parts);
    const std::size_t marked = head.hasStartMarker ? startMarker.size() : text.starts_with(startMarker[0]);
    parts.rightLength = startMarker.size() - marked + parts.body.end - start + endMarker.size() + 1;
    if (!parts.endMarker.isEmpty())
        parts.rightLength += parts.endMarker.start - parts.body.end;
    parts.problem = checkEnvelope(text, envelope);
    parts.isBodyRead = envelope.isBodyRead();
    if (parts.isBodyRead) {
        const auto bodyStart = static_cast<std::size_t>(envelope.body.data() - text.data());
        parts.hostBody = {narrow(bodyStart), narrow(bodyStart + envelope.body.size())};
        if (parts.endMarker.isEmpty()) { // then nobody knows better than the length where the body ends
            parts.body = parts.hostBody;
            parts.endMarker = {parts.body.end, parts.body.end};
            parts.behind = {parts.body.end, narrow(text.size())};
        }
    }
    parts.isCanonical = isWrittenByTheLibrary(text, parts);
    return parts;
}

} // namespace vek::inspect
