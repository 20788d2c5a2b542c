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

envelopeNumber_t asPart(const envelopeField_t &field) {
    return {{narrow(field.start), narrow(field.isThere ? field.end : field.start)}, field.isThere, field.value};
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
            start = std::min(front + 1, text_.size());
        readEnd(start, parts);
    }

private:
    // The last "!!" with nothing but white space behind it, else the last "}!!".
    std::size_t findEndMarker(std::size_t from) const {
        std::size_t end = text_.size();
        while (end > from && (isSpace(text_[end - 1]) || text_[end - 1] == '\0'))
            --end;
        if (end >= from + endMarker.size() && text_.substr(0, end).ends_with(endMarker))
            return end - endMarker.size();
        const std::size_t found = text_.rfind("}!!");
        return found != std::string_view::npos && found >= from ? found + 1 : std::string_view::npos;
    }

    void readEnd(std::size_t bodyStart, envelopeParts_t &parts) const {
        const std::size_t marker = findEndMarker(bodyStart);
        const bool isThere = marker != std::string_view::npos;
        const std::size_t limit = isThere ? marker : text_.size();
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
    char digits[integerRoom];
    const char *const end = writeInteger(number.value, digits);
    return number.isThere && number.place.in(text) == std::string_view(digits, static_cast<std::size_t>(end - digits));
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
    return parts.startMarker.size() == startMarker.size() && parts.id.place.start == startMarker.size() &&
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
    parts.startMarker = {0, narrow(envelope.head.hasStartMarker ? startMarker.size() : 0)};
    const std::size_t marked = envelope.head.hasStartMarker ? startMarker.size() : text.starts_with(startMarker[0]);
    parts.rightLength = text.size() - marked + startMarker.size() + 1;
    parts.id = asPart(envelope.head.id);
    parts.length = asPart(envelope.head.length);
    parts.echoTag = asPart(envelope.head.echoTag);
    parts.sequenceNumber = asPart(envelope.head.sequenceNumber);
    bodyFinder_t(text).find(envelope.head.sequenceNumber.end, parts);
    parts.problem = checkEnvelope(text, envelope);
    parts.isBodyRead = envelope.isBodyRead();
    if (parts.isBodyRead) {
        const auto start = static_cast<std::size_t>(envelope.body.data() - text.data());
        parts.hostBody = {narrow(start), narrow(start + envelope.body.size())};
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
