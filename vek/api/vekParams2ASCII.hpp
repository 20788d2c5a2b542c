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
// structures' own classes, vekTypes. Threads: as the four calls, one at a time.
//
// What the calls accept silently is refused here: a text whose envelope is wrong or that is another message, and a
// structure whose message would be too long to be read back, or whose count goes beyond its room (DeviceStatus). parse
// and print have two forms. One throws messageError_t; the other puts the problem, or none, into its last argument and
// returns null or "". Both throw std::bad_alloc when memory runs out. Nothing is ever printed on standard output. What
// is damaged inside a body is no error: see vekStrToVal.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/api/messageTable.hpp"
#include "vek/api/problem.hpp"
#include "vek/api/vekParams2ASCII.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace vek {

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

struct textReleaser_t {
    void operator()(char *text) const { vekParamsDelete(text); }
};

/// The structure of a text, or with its declared defaults when the text is null.
template <class Structure>
owned_t<Structure> makeStructure(std::int32_t id, const char *text) {
    void *structure = nullptr;
    if (vekStrToVal(text, &id, &structure) != 0)
        throw std::bad_alloc(); // the only failure that an id of the table can have
    return owned_t<Structure>(static_cast<Structure *>(structure));
}

inline std::string writeStructure(std::int32_t id, const void *structure, problem_t &problem) {
    char *text = nullptr;
    if (vekValToStr(id, const_cast<void *>(structure), &text) != 0) // which only reads it
        throw std::bad_alloc();
    const std::unique_ptr<char, textReleaser_t> owned(text);
    std::string written(text);
    if (written.size() + 1 <= largestMessage)
        return written;
    problem = {problemCode_t::tooLong, 0,
               "the message would have " + std::to_string(written.size() + 1) + " characters with its NUL, " +
                   std::to_string(largestMessage) + " are the most"};
    return {};
}

/// Counts that writing takes on trust.
template <class Structure>
problem_t checkCounts(const Structure &structure) {
    if constexpr (std::is_same_v<Structure, DeviceStatus>) {
        constexpr std::size_t room = std::extent_v<decltype(DeviceStatus::msgs)>;
        if (structure.numOfMessages > static_cast<std::int32_t>(room))
            return {problemCode_t::countAboveRoom, 0,
                    "numOfMessages is " + std::to_string(structure.numOfMessages) + ", there is room for " +
                        std::to_string(room)};
    }
    return {};
}

/// Throws the problem that `call` reports, if any.
template <class Call>
auto throwing(Call call) {
    problem_t problem;
    auto result = call(problem);
    if (problem)
        throw messageError_t(std::move(problem));
    return result;
}

} // namespace detail

/// The id of a text message, to choose what to parse it as; 0 when it has none. Nothing else is checked.
inline std::int32_t messageId(std::string_view text) {
    envelopeNumbers_t numbers;
    std::string_view body;
    readEnvelope(text, numbers, body);
    return numbers.id;
}

/// Reads a text message. The text may be followed by its NUL or not; it is not referred to afterwards. A text that is
/// refused changes nothing in the library: the header numbers stay.
template <std::int32_t Id>
requires structuredId<Id> owned_t<structureOf_t<Id>> parse(std::string_view text, problem_t &problem) {
    problem = checkMessage(text, Id);
    return problem ? nullptr : detail::makeStructure<structureOf_t<Id>>(Id, std::string(withoutNul(text)).c_str());
}

template <std::int32_t Id>
requires structuredId<Id> owned_t<structureOf_t<Id>> parse(std::string_view text) {
    return detail::throwing([text](problem_t &problem) { return parse<Id>(text, problem); });
}

template <soleStructure Structure>
owned_t<Structure> parse(std::string_view text, problem_t &problem) {
    return parse<idOf<Structure>>(text, problem);
}

template <soleStructure Structure>
owned_t<Structure> parse(std::string_view text) {
    return parse<idOf<Structure>>(text);
}

/// A structure with its message's declared defaults.
template <std::int32_t Id>
requires structuredId<Id> owned_t<structureOf_t<Id>> defaults() {
    return detail::makeStructure<structureOf_t<Id>>(Id, nullptr);
}

template <soleStructure Structure>
owned_t<Structure> defaults() {
    return defaults<idOf<Structure>>();
}

/// Writes a structure as a text message. The sequence number counts up also when the message is refused as too long.
template <std::int32_t Id>
requires structuredId<Id> std::string print(const structureOf_t<Id> &structure, problem_t &problem) {
    problem = detail::checkCounts(structure);
    return problem ? std::string() : detail::writeStructure(Id, &structure, problem);
}

template <std::int32_t Id>
requires structuredId<Id> std::string print(const structureOf_t<Id> &structure) {
    return detail::throwing([&structure](problem_t &problem) { return print<Id>(structure, problem); });
}

template <soleStructure Structure>
std::string print(const Structure &structure, problem_t &problem) {
    return print<idOf<Structure>>(structure, problem);
}

template <soleStructure Structure>
std::string print(const Structure &structure) {
    return print<idOf<Structure>>(structure);
}

/// The text in a character array of a structure: up to its NUL, or to the array's end. Valid while the array is.
template <std::size_t Room>
std::string_view textOf(const char (&array)[Room]) {
    return {array, static_cast<std::size_t>(std::find(array, array + Room, '\0') - array)};
}

/// Puts a text into a character array of a structure, cut to its room; the rest becomes zero.
template <std::size_t Room>
void setText(char (&array)[Room], std::string_view text) {
    char *const end = std::copy_n(text.data(), std::min(text.size(), Room - 1), array);
    std::fill(end, std::end(array), '\0');
}

} // namespace vek
