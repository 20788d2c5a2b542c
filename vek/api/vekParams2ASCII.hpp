// The typed C++ front of the four calls: messages as structures that release themselves, with no id to get wrong.
//
//     auto focus = vek::parse<vek::FocusValue>(text);
//     focus->focusValue = 3.5;
//     std::string changed = vek::print(*focus);
//
// The type says which message it is. Structures that several messages share (IdRecord) go by the id:
//
//     auto record = vek::parse<VEK_MSG_ID_RECORD_4189>(text);
//     std::string written = vek::print<VEK_MSG_ID_RECORD_4189>(*record);
//
// A structure of your own, `vek::FocusValue focus;`, prints as well. Header-only; links the library and, for the
// structures' own classes, vekTypes. Threads: as the four calls.
//
// What the calls accept silently is refused here: a text whose envelope is wrong or that is another message, and a
// structure of which something would not come back from its text. vek::check tells all that would not, and the
// printLossy forms print all the same. parse and the printing functions have two forms: one throws messageError_t, the
// other puts the problem, or none, into its last argument and returns null, "" or false. Both throw std::bad_alloc when
// memory runs out. Nothing is ever printed on standard output. What is damaged inside a body is no error: see
// vekStrToVal.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/api/front/strictReading.hpp"
#include "vek/api/front/structureCheck.hpp"
#include "vek/api/messageTable.hpp"
#include "vek/api/messageText.hpp"
#include "vek/api/problem.hpp"
#include "vek/api/vekParams2ASCII.h"
#include "vek/records/conversion.hpp"
#include "vek/records/enumerations.hpp"
#include "vek/vek_std/std_sys/vek_lasting.hpp"
#include "vek/vek_std/std_sys/vek_shortRuns.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace vek {

/// A text to read: a view, or what is known to have a NUL behind it, which then needs not be copied.
struct textToRead_t {
    textToRead_t(std::string_view text) : whole(text), hasNul(text.ends_with('\0')) {}
    textToRead_t(const char *text, std::size_t size) : textToRead_t(std::string_view(text, size)) {}
    textToRead_t(const char *text) : whole(text), hasNul(true), isCString(true) {}
    textToRead_t(std::nullptr_t) = delete; ///< without a text, defaults() makes the structure
    textToRead_t(const std::string &text) : whole(text), hasNul(true) {}
    textToRead_t(const messageText_t &text) : whole(text.view()), hasNul(true) {}

    std::string_view whole; ///< with its NUL or without
    bool hasNul;            ///< in the view or right behind it
    bool isCString = false; ///< so that it has none before its end
};

/// Releases a structure that the library made.
template <messageStructure Structure>
struct releaser_t {
    void operator()(Structure *structure) const {
        constexpr std::int32_t id = detail::idsOfStructure<Structure>.first; // of several, all release alike
        if constexpr (messageOf_t<id>::release == service_t::refused) {
            delete structure;
        } else {
            void *released = structure;
            vekParamsDeleteStruct(id, &released);
        }
    }
};

/// Owns a structure that the library made.
template <messageStructure Structure>
using owned_t = std::unique_ptr<Structure, releaser_t<Structure>>;

namespace detail {

/// Whether all modules of a process have one heap.
#ifdef _WIN32
inline constexpr bool isOneHeap = false;
#else
inline constexpr bool isOneHeap = true;
#endif

/// The structure of a text, or with its declared defaults when the text is null.
template <class Structure>
owned_t<Structure> makeStructure(std::int32_t id, const char *text) {
    void *structure = nullptr;
    if (vekStrToVal(text, &id, &structure) != 0)
        throw std::bad_alloc(); // the only failure that an id of the table can have
    return owned_t<Structure>(static_cast<Structure *>(structure));
}

/// Whether nothing is wrong with a text, as far as can be told in few steps.
template <std::int32_t Id>
bool isOrdinary(const textToRead_t &text, std::size_t longest) {
    const std::string_view message = withoutNul(text.whole);
    return message.size() < longest && isOrdinaryMessage<Id>(message) &&
           (text.isCString || std::memchr(message.data(), '\0', message.size()) == nullptr);
}

/// The whole check of a text, for the few that are not ordinary. In a function of its own it keeps reading the others
/// short.
inline void requireRight(std::string_view text, std::int32_t id, std::size_t longest) {
    if (problem_t problem = checkMessage(text, id, longest))
        throw messageError_t(std::move(problem));
}

/// The structure of a text that has no NUL behind it.
template <class Structure>
owned_t<Structure> makeFromCopy(std::int32_t id, std::string_view text) {
    char copy[512];
    if (text.size() >= sizeof copy)
        return makeStructure<Structure>(id, std::string(text).c_str());
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return makeStructure<Structure>(id, copy);
}

/// Reads a text that was found right.
template <std::int32_t Id>
owned_t<structureOf_t<Id>> readMessage(const textToRead_t &text) {
    if (text.hasNul) [[likely]]
        return makeStructure<structureOf_t<Id>>(Id, text.whole.data());
    return makeFromCopy<structureOf_t<Id>>(Id, text.whole);
}

template <messageStructure Structure>
const structureCheck_t &checkOf() {
    using message = messageOf_t<idsOfStructure<Structure>.first>; // of several, all have one record class
    static const lasting_t<structureCheck_t> check(&conversionOf<Structure, typename message::record_t>::visit);
    return check.get();
}

template <messageStructure Structure>
const strictReading_t &strictReadingOf() {
    using conversion = conversionOf<Structure, typename messageOf_t<idsOfStructure<Structure>.first>::record_t>;
    static const lasting_t<strictReading_t> reading(&conversion::visit, &conversion::createFrom);
    return reading.get();
}

/// The header numbers of an ordinary message alone, for the library to take over: as a message of an id without a
/// structure. Made some time before it is handed over: it would be waited for until it can be read in larger pieces.
class headerAlone_t {
public:
    headerAlone_t(std::string_view message, std::size_t body) {
        const auto &start = ordinaryStart<bareId>;
        const std::string_view numbers =
            message.substr(ordinaryHeadSize, std::min(body - ordinaryHeadSize, mostNumbers));
        const std::size_t size = start.size() + 2 + numbers.size() + endMarker.size() + 1;
        char *at = std::copy(start.begin(), start.end(), text_);
        *at++ = static_cast<char>('0' + size / 10);
        *at++ = static_cast<char>('0' + size % 10);
        copyShort(numbers.data(), numbers.size(), at);
        *std::copy(endMarker.begin(), endMarker.end(), at + numbers.size()) = '\0';
    }

    void handOver() const {
        std::int32_t id = bareId;
        void *none = nullptr;
        vekStrToVal(text_, &id, &none);
    }

private:
    static constexpr std::int32_t bareId = 4190;
    static constexpr std::size_t mostNumbers = 32; // two of ten characters at most, and blanks

    char text_[64];
};

/// The structure of a text with an ordinary envelope whose body is as the library writes it: read by this module, which
/// knows whether it was, as the library does not say it. Null of any other text, of which nothing is taken over then.
template <std::int32_t Id>
owned_t<structureOf_t<Id>> readStrictly(const textToRead_t &text, std::size_t longest) {
    using structure_t = structureOf_t<Id>;
    if (!isOrdinary<Id>(text, longest))
        return nullptr;
    const std::string_view message = withoutNul(text.whole);
    const std::size_t start = ordinaryBody(message);
    // On Windows the library may have a heap of its own, from which it releases what has no destructor of its module.
    if ((!isOneHeap && !std::is_polymorphic_v<structure_t>) || start == 0)
        return nullptr;
    const headerAlone_t header(message, start);
    const std::string_view body = message.substr(start, message.size() - endMarker.size() - start);
    auto *const read = static_cast<structure_t *>(strictReadingOf<structure_t>().readOrdinary(body));
    if (read == nullptr)
        return nullptr;
    owned_t<structure_t> structure(read);
    header.handOver();
    return structure;
}

/// The structure of a text that readStrictly does not take; null, with the problem, when something of it would be
/// ignored or read otherwise. In a function of its own it keeps reading the others short.
template <std::int32_t Id>
[[gnu::noinline]] owned_t<structureOf_t<Id>> readOtherStrictly(const textToRead_t &text, problem_t &problem,
                                                               std::size_t longest) {
    problem = checkMessage(text.whole, Id, longest);
    if (!problem)
        problem = strictReadingOf<structureOf_t<Id>>().first(withoutNul(text.whole));
    return problem ? nullptr : readMessage<Id>(text);
}

/// Counts beyond the room that writing takes on trust: what lies behind the structure would be read.
template <class Structure>
bool isSafe(const Structure &structure) {
    if constexpr (std::is_same_v<Structure, DeviceStatus>)
        return structure.numOfMessages <= static_cast<std::int32_t>(std::extent_v<decltype(DeviceStatus::msgs)>);
    else
        return true;
}

/// What is done with a problem, which is made only when there is one: the two forms of the printing functions.
struct throwProblem_t {
    [[noreturn]] void operator()(problem_t problem) const { throw messageError_t(std::move(problem)); }
};
struct tellProblem_t {
    problem_t &told;
    explicit tellProblem_t(problem_t &problem) : told(problem) {
        if (problem)
            problem = {};
    }
    void operator()(problem_t problem) const { told = std::move(problem); }
};
inline throwProblem_t withProblem() {
    return {};
}
inline tellProblem_t withProblem(problem_t &problem) {
    return tellProblem_t(problem);
}

inline problem_t tooLong(const messageText_t &text) {
    return {problemCode_t::tooLong, 0,
            "the message would have " + std::to_string(std::strlen(text.c_str()) + 1) + " characters with its NUL, " +
                std::to_string(longestReadableMessage) + " are the most"};
}

/// Prints what is kept or, when `isLossy`, what is safe to print. `renumber` puts other header numbers into the text.
template <std::int32_t Id, class Refuse, class Renumber>
messageText_t printMessage(const structureOf_t<Id> &structure, const Refuse &refuse, bool isLossy,
                           const Renumber &renumber) {
    if (!isLossy || !isSafe(structure)) {
        const structureCheck_t &check = checkOf<structureOf_t<Id>>();
        if (!check.isKept(&structure)) [[unlikely]] {
            refuse(check.first(&structure));
            return {};
        }
    }
    char *written = nullptr;
    if (vekValToStr(Id, &structure, &written) != 0)
        throw std::bad_alloc();
    messageText_t text(written);
    renumber(text);
    if (!text.isLengthRight()) [[unlikely]] {
        refuse(tooLong(text));
        return {};
    }
    return text;
}

template <std::int32_t Id, class Refuse>
messageText_t printMessage(const structureOf_t<Id> &structure, const Refuse &refuse, bool isLossy = false) {
    return printMessage<Id>(structure, refuse, isLossy, [](const messageText_t &) {});
}

/// As much of a text as there is room for, of UTF-8 without the beginning of a character whose end has none.
inline std::string_view cutBetweenCharacters(std::string_view text, std::size_t room) {
    if (text.size() <= room)
        return text;
    const auto byteAt = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    std::size_t lead = room;
    for (int bytes = 1; lead > 0 && bytes < 4 && byteAt(lead) >> 6 == 0b10; ++bytes)
        --lead;
    const int wanted = byteAt(lead) >= 0xF0 ? 4 : byteAt(lead) >= 0xE0 ? 3 : byteAt(lead) >= 0xC0 ? 2 : 1;
    return text.substr(0, lead + static_cast<std::size_t>(wanted) > room && wanted > 1 ? lead : room);
}

/// The id that a structure is printed as: the one asked for or else its own; 0 when it has none alone.
template <std::int32_t Id, class Structure>
inline constexpr std::int32_t printedId = Id != 0                                ? Id
                                          : idsOfStructure<Structure>.count == 1 ? idsOfStructure<Structure>.first
                                                                                 : 0;

} // namespace detail

/// The last argument of the printing functions: where a problem goes, or nothing.
template <class... Problem>
concept problemOrNone = sizeof...(Problem) <= 1 && (std::is_same_v<Problem, problem_t> && ...);

/// What is printed as this id or, with 0, as the only one that it has. Of a pointer it is `*pointer`.
template <class Structure, std::int32_t Id>
concept printableAs = structuredId<detail::printedId<Id, Structure>> && std::is_convertible_v < const Structure &,
        const structureOf_t<detail::printedId<Id, Structure>>
& > ;

/// The numbers in front of a text message; of what isn't there or no number 0, -1 and 0. Nothing else is checked.
[[nodiscard]] inline envelopeNumbers_t messageNumbers(std::string_view text) {
    return readEnvelopeHead(text).numbers();
}

/// The id of a text message, to choose what to parse it as; 0 when it has none. Nothing else is checked.
[[nodiscard]] inline std::int32_t messageId(std::string_view text) {
    return messageNumbers(text).id;
}

/// Reads a text message. The text may be followed by its NUL or not; it is not referred to afterwards. A text that is
/// refused changes nothing in the library: the header numbers stay. So a reply to it is printed with reply(), and the
/// echo tag that the problem has.
///
/// A text of more than `longest` characters, its NUL included, is refused: what a structure takes is some hundred times
/// its text at worst, see docs/hosts.md. The library itself writes no message that is longer than the default.
template <std::int32_t Id>
requires structuredId<Id>
[[nodiscard]] owned_t<structureOf_t<Id>> parse(const textToRead_t &text, problem_t &problem,
                                               std::size_t longest = longestReadableMessage) {
    if (problem)
        problem = {};
    if (!detail::isOrdinary<Id>(text, longest)) {
        problem = checkMessage(text.whole, Id, longest);
        if (problem)
            return nullptr;
    }
    return detail::readMessage<Id>(text);
}

template <std::int32_t Id>
requires structuredId<Id>
[[nodiscard]] owned_t<structureOf_t<Id>> parse(const textToRead_t &text, std::size_t longest = longestReadableMessage) {
    if (!detail::isOrdinary<Id>(text, longest))
        detail::requireRight(text.whole, Id, longest);
    return detail::readMessage<Id>(text);
}

template <soleStructure Structure, class... More>
requires requires(const textToRead_t &text, More &...more) {
    parse<idOf<Structure>>(text, more...);
}
[[nodiscard]] owned_t<Structure> parse(const textToRead_t &text, More &&...more) {
    return parse<idOf<Structure>>(text, more...);
}
template <class Structure, class... More>
requires noSoleStructure<Structure>
void parse(const textToRead_t &, More &&...) = delete; // say which message: parse<VEK_MSG_ID_RECORD_4189>(text)

/// As parse, and refuses also what reading would ignore or take for something else than it says: an unknown key or one
/// that stands there twice, "abc" or "3,25" for a number, a name that its enumeration does not have, a missing brace,
/// more than there is room for. The problem has the path of the key and the byte. What is read as it is meant is taken
/// however it is spelt: keys in any order or left out, values in quotes, blanks around numbers, "3.25".
template <std::int32_t Id>
requires structuredId<Id>
[[nodiscard]] owned_t<structureOf_t<Id>> parseStrictly(const textToRead_t &text, problem_t &problem,
                                                       std::size_t longest = longestReadableMessage) {
    if (problem)
        problem = {};
    auto structure = detail::readStrictly<Id>(text, longest);
    return structure != nullptr ? std::move(structure) : detail::readOtherStrictly<Id>(text, problem, longest);
}

template <std::int32_t Id>
requires structuredId<Id>
[[nodiscard]] owned_t<structureOf_t<Id>> parseStrictly(const textToRead_t &text,
                                                       std::size_t longest = longestReadableMessage) {
    if (auto structure = detail::readStrictly<Id>(text, longest)) [[likely]]
        return structure;
    problem_t problem;
    auto structure = detail::readOtherStrictly<Id>(text, problem, longest);
    if (problem)
        throw messageError_t(std::move(problem));
    return structure;
}

template <soleStructure Structure, class... More>
requires requires(const textToRead_t &text, More &...more) {
    parseStrictly<idOf<Structure>>(text, more...);
}
[[nodiscard]] owned_t<Structure> parseStrictly(const textToRead_t &text, More &&...more) {
    return parseStrictly<idOf<Structure>>(text, more...);
}
template <class Structure, class... More>
requires noSoleStructure<Structure>
void parseStrictly(const textToRead_t &, More &&...) = delete; // say which message, as of parse

/// A structure with its message's declared defaults.
template <std::int32_t Id>
requires structuredId<Id>
[[nodiscard]] owned_t<structureOf_t<Id>> defaults() {
    return detail::makeStructure<structureOf_t<Id>>(Id, nullptr);
}

template <soleStructure Structure>
[[nodiscard]] owned_t<Structure> defaults() {
    return defaults<idOf<Structure>>();
}
template <class Structure>
requires noSoleStructure<Structure>
void defaults() = delete; // say which message: defaults<VEK_MSG_ID_RECORD_4189>()

/// All of a structure that would not come back from its text, in the order of the text; empty when everything would.
/// Rounding to six decimals, what stands behind the NUL of a character array or behind the elements that are in use,
/// and the type of a range without values are no loss. That a message is too long is known only when it is printed.
template <messageStructure Structure>
[[nodiscard]] std::vector<problem_t> check(const Structure &structure) {
    return detail::checkOf<Structure>().all(&structure);
}

/// Writes a structure as a text message, unless something in it would not come back. The sequence number counts up also
/// when the message is refused as too long.
template <std::int32_t Id = 0, class Structure, class... Problem>
requires printableAs<Structure, Id> && problemOrNone<Problem...>
[[nodiscard]] messageText_t print(const Structure &structure, Problem &...problem) {
    return detail::printMessage<detail::printedId<Id, Structure>>(structure, detail::withProblem(problem...));
}
template <class Other, class... Problem>
requires noSoleStructure<Other>
void print(const Other &, Problem &...) = delete; // print<VEK_MSG_ID_RECORD_4189>, or *pointer

/// As print, with an echo tag of your own instead of that of the last message read, which stays the library's: the
/// answer to a message that was refused.
template <std::int32_t Id = 0, class Structure, class... Problem>
requires printableAs<Structure, Id> && problemOrNone<Problem...>
[[nodiscard]] messageText_t reply(std::int32_t echoTag, const Structure &structure, Problem &...problem) {
    return detail::printMessage<detail::printedId<Id, Structure>>(
        structure, detail::withProblem(problem...), false,
        [echoTag](messageText_t &text) { text.setEchoTag(echoTag); });
}
template <class Other, class... Problem>
requires noSoleStructure<Other>
void reply(std::int32_t, const Other &, Problem &...) = delete; // reply<VEK_MSG_ID_RECORD_4189>, or *pointer

/// As print, whatever would be lost. Still refused are a count that would make writing look behind the structure, and a
/// message that is too long.
template <std::int32_t Id = 0, class Structure, class... Problem>
requires printableAs<Structure, Id> && problemOrNone<Problem...>
[[nodiscard]] messageText_t printLossy(const Structure &structure, Problem &...problem) {
    return detail::printMessage<detail::printedId<Id, Structure>>(structure, detail::withProblem(problem...), true);
}
template <class Other, class... Problem>
requires noSoleStructure<Other>
void printLossy(const Other &, Problem &...) = delete; // printLossy<VEK_MSG_ID_RECORD_4189>, or *pointer

/// As print, appended to a text of your own, which stays as it is when the structure is refused. Whether it was not.
template <std::int32_t Id = 0, class Structure, class... Problem>
requires printableAs<Structure, Id> && problemOrNone<Problem...>
bool printTo(std::string &out, const Structure &structure, Problem &...problem) {
    out += print<Id>(structure, problem...).view();
    return (!problem && ...);
}
template <class Other, class... Problem>
requires noSoleStructure<Other>
void printTo(std::string &, const Other &, Problem &...) = delete; // printTo<VEK_MSG_ID_RECORD_4189>, or *pointer

/// The text in a character array of a structure: up to its NUL, or to the array's end. Valid while the array is.
template <std::size_t Room>
std::string_view textOf(const char (&array VEK_LIFETIMEBOUND)[Room]) {
    return {array, static_cast<std::size_t>(std::find(array, array + Room, '\0') - array)};
}

/// Puts a text into a character array of a structure; the rest becomes zero. A text that is too long is cut, of UTF-8
/// between two characters. Whether all of it is there.
template <std::size_t Room>
bool setText(char (&array)[Room], std::string_view text) {
    const std::string_view kept = detail::cutBetweenCharacters(text, Room - 1);
    std::fill(std::copy(kept.begin(), kept.end(), array), std::end(array), '\0');
    return kept.size() == text.size();
}

} // namespace vek

#include "vek/api/dispatch.hpp"
