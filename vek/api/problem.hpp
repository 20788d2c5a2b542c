// What can be wrong with a text message or a structure, and the check of a text's envelope that says it.
//
// The four calls convert whatever can be read; hosts that want to know use this. Pure functions.
#pragma once

#include "vek/api/envelope.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace vek {

enum class problemCode_t {
    none,
    // Of a text:
    noStartMarker, ///< no "@@" at the start
    innerNul,      ///< a NUL before the end
    noId,          ///< no number behind "@@"
    wrongLength,   ///< the length is not the text's
    lineEnd,       ///< a line end behind a message whose length is right without it
    noEndMarker,   ///< no "!!" at the end
    otherId,       ///< a message of another id than asked for
    aboveLimit,    ///< more characters than are taken
    // Of a structure, all of which but the first are what its text would lose:
    tooLong,          ///< the message would have 100,000 characters or more
    countAboveRoom,   ///< a count says more elements than there is room for
    surplusElements,  ///< a list has more elements than its count says
    nullItem,         ///< a container has a null pointer
    emptyElement,     ///< an empty text in a list: it has no place there, and the later ones move up
    leadingQuote,     ///< a text begins with a quotation mark, and would be read as a quoted one
    reservedCode,     ///< a text has a control code 1 to 5, which would be read as one of = ; , { }
    nulInText,        ///< a text has a NUL, where it would end
    textTooLong,      ///< a text fills its character array, without a NUL
    missingCharacter, ///< a 16-bit text has a character that is not set
    unnamedValue,     ///< an enumeration has a value without a name
    unknownFlag,      ///< a flag is neither 0 nor 1
    notFinite,        ///< a real is an infinity or not a number
    rangeNotKept,     ///< a continuous range is not two values, the smaller first, the larger -1.0 at least
    noKey,            ///< a member that no key carries is not 0
    // Of a body, told by strict reading alone:
    noBraces,      ///< the body does not stand in braces, right between one blank and "!!"
    unbalanced,    ///< a brace or a quotation mark without its other one
    unknownKey,    ///< a key that the structure does not have
    duplicateKey,  ///< a key that stood there before
    strayValue,    ///< a value without a key
    wrongValue,    ///< no number, name, flag or group where one belongs, or a number that does not fit
    beyondRoom,    ///< more elements or characters than there is room for
    countMismatch, ///< a list has more elements than its count says
    unclear,       ///< read in a way that may not be what was meant
};

struct problem_t {
    problemCode_t code = problemCode_t::none;
    std::size_t offset = 0;  ///< of the byte in the text where it is wrong; 0 when it is a structure that is wrong
    std::string text;        ///< why, for people, with the member
    std::string member = {}; ///< of a structure: where it is wrong, for example "punchSysName[2]"; of a body the keys
    envelopeNumbers_t numbers = {}; ///< of a text: as far as they could be read, so that it can be answered

    explicit operator bool() const { return code != problemCode_t::none; }
};

/// What the throwing functions throw. what() says why and, of a text, where.
class messageError_t : public std::runtime_error {
public:
    explicit messageError_t(problem_t problem) : std::runtime_error(describe(problem)), problem_(std::move(problem)) {}

    problemCode_t code() const { return problem_.code; }
    std::size_t offset() const { return problem_.offset; }
    const problem_t &problem() const { return problem_; }

private:
    static std::string describe(const problem_t &problem) {
        const bool isInText = problem.code < problemCode_t::tooLong || problem.code > problemCode_t::noKey;
        return isInText ? problem.text + " (byte " + std::to_string(problem.offset) + ")" : problem.text;
    }

    problem_t problem_;
};

/// The first thing that is wrong with a text's envelope, if any. `text` and `envelope`: without its NUL.
inline problem_t checkEnvelope(std::string_view text, const envelope_t &envelope) {
    using enum problemCode_t;
    const envelopeHead_t &head = envelope.head;
    if (!head.hasStartMarker)
        return {noStartMarker, 0, "the text does not begin with \"@@\""};
    if (const std::size_t nul = text.find('\0'); nul != std::string_view::npos)
        return {innerNul, nul, "a NUL inside the text"};
    if (!head.id.isThere)
        return {noId, head.id.start, "no message id behind \"@@\""};
    if (envelope.result == envelopeResult_t::wrongLength) {
        const std::size_t end = text.find_last_not_of("\r\n") + 1;
        if (end < text.size() && text.substr(0, end).ends_with(endMarker) &&
            head.length.value == static_cast<std::int64_t>(end) + 1)
            return {lineEnd, end, "a line end behind the message: leave it out"};
        return {wrongLength, head.length.start,
                "the length is said to be " + std::to_string(head.length.value) + ", but the text has " +
                    std::to_string(text.size() + 1) + " characters with its NUL"};
    }
    if (envelope.result == envelopeResult_t::wrongMarker)
        return {noEndMarker, envelope.endMarker, "the text does not end with \"!!\""};
    return {};
}

/// Whether checkEnvelope finds something, told without saying what.
inline bool isEnvelopeDamaged(std::string_view text) {
    text = withoutNul(text);
    const envelope_t envelope = readEnvelope(text);
    return envelope.result != envelopeResult_t::correct || !envelope.head.id.isThere ||
           text.find('\0') != std::string_view::npos;
}

/// As checkEnvelope, and that the text, which may have its NUL, is message `id` and has at most `longest` characters,
/// its NUL included. The problem has the numbers that could be read.
inline problem_t checkMessage(std::string_view text, std::int32_t id, std::size_t longest = longestReadableMessage) {
    text = withoutNul(text);
    const envelope_t envelope = readEnvelope(text);
    problem_t problem = checkEnvelope(text, envelope);
    if (const std::size_t size = text.size() + 1; size > longest)
        problem = {problemCode_t::aboveLimit, longest,
                   "the text has " + std::to_string(size) + " characters with its NUL, more than the " +
                       std::to_string(longest) + " that are taken"};
    if (!problem && envelope.head.id.value != id)
        problem = {problemCode_t::otherId, envelope.head.id.start,
                   "the text is message " + std::to_string(envelope.head.id.value) + ", not " + std::to_string(id)};
    if (problem)
        problem.numbers = envelope.head.numbers();
    return problem;
}

namespace detail {

/// What a message with this id begins with as the library writes it: "@@4112 ".
template <std::int32_t Id>
inline constexpr auto ordinaryStart = [] {
    static_assert(Id >= 1000 && Id <= 9999);
    return std::array<char, 7>{'@', '@', '0' + Id / 1000, '0' + Id / 100 % 10, '0' + Id / 10 % 10, '0' + Id % 10, ' '};
}();

/// Whether characters are this number in decimal, with blanks in front of it or without.
inline bool isPadded(std::string_view text, std::size_t number) {
    const char *at = text.data();
    const char *const end = at + text.size();
    while (at != end && *at == ' ')
        ++at;
    std::size_t said = 0;
    for (; at != end; ++at) {
        if (!isDigit(*at))
            return false;
        said = said * 10 + static_cast<std::size_t>(*at - '0');
    }
    return said == number;
}

} // namespace detail

/// How many characters such a message has in front of its header numbers.
inline constexpr std::size_t ordinaryHeadSize = detail::ordinaryStart<1000>.size() + lengthDigits;

namespace detail {

/// Where the body of such a message begins, behind a blank and header numbers of ordinary length; 0 when they are not.
inline std::size_t ordinaryBody(std::string_view text) {
    const char *at = text.data() + ordinaryHeadSize;
    for (int numbers = 0; numbers < 2; ++numbers) {
        constexpr int mostDigits = 9;
        at += *at == ' ' && at[1] == '-' ? 2 : *at == ' ' ? 1 : 0;
        const char *const digits = at;
        while (isDigit(*at)) // the text does not end in one
            ++at;
        if (at == digits || at - digits > mostDigits)
            return 0;
    }
    return *at == ' ' ? static_cast<std::size_t>(at + 1 - text.data()) : 0;
}

} // namespace detail

/// Whether a text without a NUL is message `Id` with an envelope as the library writes it, told in fewer steps than
/// checkMessage: that would find no problem either. Of other texts, which checkMessage may find right too, it tells
/// false.
template <std::int32_t Id>
bool isOrdinaryMessage(std::string_view text) {
    const auto &start = detail::ordinaryStart<Id>;
    // Whatever stands between a blank behind the length and the "!!" at the end, reading meets them both.
    return text.size() >= ordinaryHeadSize + 3 && std::memcmp(text.data(), start.data(), start.size()) == 0 &&
           text[ordinaryHeadSize] == ' ' && text.ends_with(endMarker) &&
           detail::isPadded(text.substr(start.size(), lengthDigits), text.size() + 1);
}

} // namespace vek
