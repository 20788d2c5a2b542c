#include "vek/inspect/message/envelopeParts.hpp"

#include "vek/text/numberText.hpp"

#include <algorithm>
#include <string>

namespace vek::inspect {

namespace {

std::uint32_t narrow(std::size_t offset) {
    return static_cast<std::uint32_t>(offset);
}

// Reads the parts one behind the other, as a person would: what is no number is left where it is.
class envelopeReader_t {
public:
    explicit envelopeReader_t(std::string_view text) : text_(text) {}

    void read(envelopeParts_t &parts) {
        if (text_.starts_with("@@"))
            at_ = 2;
        parts.startMarker = {0, narrow(at_)};
        for (envelopeNumber_t *number : {&parts.id, &parts.length, &parts.echoTag, &parts.sequenceNumber})
            readNumber(*number);
        std::size_t start = at_;
        while (start < text_.size() && isSpace(text_[start]))
            ++start;
        if (start == text_.size() || (text_[start] != openBrace && !text_.substr(start).starts_with("!!")))
            start = std::min(at_ + 1, text_.size());
        readEnd(start, parts);
    }

private:
    static constexpr char openBrace = '{', closeBrace = '}';

    void readNumber(envelopeNumber_t &number) {
        detail::envelopeScan_t scan{text_.data() + at_, text_.data() + text_.size()};
        scan.skipSpace();
        const auto start = static_cast<std::size_t>(scan.at - text_.data());
        number.isThere = scan.number(number.value);
        number.place = {narrow(number.isThere ? start : at_), narrow(at_)};
        if (!number.isThere)
            return;
        at_ = static_cast<std::size_t>(scan.at - text_.data());
        number.place.end = narrow(at_);
    }

    // The last "!!" with nothing but white space behind it, else the last "}!!".
    std::size_t findEndMarker(std::size_t from) const {
        std::size_t end = text_.size();
        while (end > from && (isSpace(text_[end - 1]) || text_[end - 1] == '\0'))
            --end;
        if (end >= from + 2 && text_.substr(end - 2, 2) == "!!")
            return end - 2;
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
        parts.endMarker = {narrow(limit), narrow(isThere ? limit + 2 : limit)};
        parts.behind = {parts.endMarker.end, narrow(text_.size())};
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

bool isSpeltAsWritten(std::string_view text, const envelopeNumber_t &number) {
    char digits[integerRoom];
    const char *const end = writeInteger(number.value, digits);
    return number.isThere && number.place.in(text) == std::string_view(digits, static_cast<std::size_t>(end - digits));
}

bool isWrittenByTheLibrary(std::string_view text, const envelopeParts_t &parts) {
    constexpr std::size_t lengthDigits = 5;
    const auto isBlank = [text](std::size_t from, std::size_t to) {
        return from < to &&
               std::all_of(text.begin() + static_cast<std::ptrdiff_t>(from),
                           text.begin() + static_cast<std::ptrdiff_t>(to), [](char c) { return c == ' '; });
    };
    const auto isNext = [&](place_t place, place_t next) {
        return next.start == place.end + 1 && isBlank(place.end, next.start);
    };
    return parts.startMarker.size() == 2 && parts.id.place.start == 2 && isSpeltAsWritten(text, parts.id) &&
           isSpeltAsWritten(text, parts.echoTag) && isSpeltAsWritten(text, parts.sequenceNumber) &&
           parts.length.place.end == parts.id.place.end + 1 + lengthDigits &&
           isBlank(parts.id.place.end, parts.length.place.start) &&
           parts.length.place.in(text) == std::string_view(std::to_string(parts.rightLength)).substr(0, lengthDigits) &&
           isNext(parts.length.place, parts.echoTag.place) && isNext(parts.echoTag.place, parts.sequenceNumber.place) &&
           isNext(parts.sequenceNumber.place, parts.body) && parts.endMarker.start == parts.body.end &&
           parts.endMarker.size() == 2 && parts.behind.isEmpty();
}

} // namespace

envelopeParts_t takeEnvelopeApart(std::string_view text) {
    text = withoutNul(text);
    envelopeParts_t parts;
    parts.whole = {0, narrow(text.size())};
    parts.rightLength = text.size() + 1;
    envelopeReader_t(text).read(parts);
    envelopeNumbers_t numbers;
    envelopePlaces_t places;
    parts.problem = checkEnvelope(text, numbers, places);
    std::string_view body;
    readEnvelope(text.substr(0, text.find('\0')), numbers, body); // a host's text ends at its first NUL
    parts.isBodyRead = body.data() != nullptr;
    if (parts.isBodyRead) {
        const auto start = static_cast<std::size_t>(body.data() - text.data());
        parts.hostBody = {narrow(start), narrow(start + body.size())};
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
