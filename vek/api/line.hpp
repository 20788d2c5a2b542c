// line_t: the header numbers of one connection, for hosts that have several. Part of vek/api/vekParams2ASCII.hpp.
//
//     vek::line_t line;                                    // one for each connection
//     auto focus = line.parse<vek::FocusValue>(text);
//     send(line.print(*focus));                            // with the echo tag of `text`, whatever other lines do
//
// The header numbers of vek::parse and vek::print are those of the process, which all threads share; a line has its
// own. One thread at a time uses a line.
#pragma once

#include "vek/api/vekParams2ASCII.hpp"

#include <cstdint>

namespace vek {

struct line_t {
    std::int32_t echoTag = envelopeNumbers_t().echoTag;               ///< of the last message read; each one written has it
    std::int32_t sequenceNumber = envelopeNumbers_t().sequenceNumber; ///< of the last message read or written

    /// As vek::parse. Takes the message's numbers over; those of a message that is refused are in the problem, and it is
    /// answered by `line.echoTag = problem.numbers.echoTag`.
    template <std::int32_t Id, class... More>
    requires structuredId<Id>
    [[nodiscard]] owned_t<structureOf_t<Id>> parse(const textToRead_t &text, More &&...more) {
        auto structure = vek::parse<Id>(text, more...);
        if (structure != nullptr)
            takeOver(readEnvelopeHead(text.whole));
        return structure;
    }
    template <soleStructure Structure, class... More>
    [[nodiscard]] owned_t<Structure> parse(const textToRead_t &text, More &&...more) {
        return parse<idOf<Structure>>(text, more...);
    }

    /// As vek::print, with the echo tag and the next sequence number of this line. A structure that is refused takes no
    /// number.
    template <std::int32_t Id, class... Problem>
    requires structuredId<Id> && problemOrNone<Problem...>
    [[nodiscard]] messageText_t print(const structureOf_t<Id> &structure, Problem &...problem) {
        return written<Id>(structure, false, problem...);
    }
    template <soleStructure Structure, class... Problem>
    requires problemOrNone<Problem...>
    [[nodiscard]] messageText_t print(const Structure &structure, Problem &...problem) {
        return print<idOf<Structure>>(structure, problem...);
    }

    /// As vek::printLossy, likewise.
    template <std::int32_t Id, class... Problem>
    requires structuredId<Id> && problemOrNone<Problem...>
    [[nodiscard]] messageText_t printLossy(const structureOf_t<Id> &structure, Problem &...problem) {
        return written<Id>(structure, true, problem...);
    }
    template <soleStructure Structure, class... Problem>
    requires problemOrNone<Problem...>
    [[nodiscard]] messageText_t printLossy(const Structure &structure, Problem &...problem) {
        return printLossy<idOf<Structure>>(structure, problem...);
    }
