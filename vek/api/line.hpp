// line_t: the header numbers of one connection, for hosts that have several. Part of vek/api/vekParams2ASCII.hpp.
//
//     vek::line_t line;                                    // one for each connection
//     auto focus = line.parse<vek::FocusValue>(text);
//     send(line.print(*focus));                            // with the echo tag of `text`, whatever other lines do
//
// The header numbers of vek::parse and vek::print are those of the process, which all threads share; a line has its
// own. One thread at a time uses a line.
#pragma once

#include "vek/api/dispatch.hpp"
#include "vek/api/vekParams2ASCII.hpp"

#include <cstdint>
#include <type_traits>

namespace vek {

struct line_t {
    std::int32_t echoTag = envelopeNumbers_t().echoTag;               ///< of the last message read, for those written
    std::int32_t sequenceNumber = envelopeNumbers_t().sequenceNumber; ///< of the last message read or written

    /// As vek::parse, and takes the message's numbers over. A message that is refused is answered by
    /// `line.echoTag = problem.numbers.echoTag`.
    template <std::int32_t Id, class... More>
    requires structuredId<Id>
    [[nodiscard]] owned_t<structureOf_t<Id>> parse(const textToRead_t &text, More &&...more) {
        return taken(text, vek::parse<Id>(text, more...));
    }
    template <soleStructure Structure, class... More>
    [[nodiscard]] owned_t<Structure> parse(const textToRead_t &text, More &&...more) {
        return parse<idOf<Structure>>(text, more...);
    }

    /// The same of vek::parseStrictly.
    template <std::int32_t Id, class... More>
    requires structuredId<Id>
    [[nodiscard]] owned_t<structureOf_t<Id>> parseStrictly(const textToRead_t &text, More &&...more) {
        return taken(text, vek::parseStrictly<Id>(text, more...));
    }
    template <soleStructure Structure, class... More>
    [[nodiscard]] owned_t<Structure> parseStrictly(const textToRead_t &text, More &&...more) {
        return parseStrictly<idOf<Structure>>(text, more...);
    }

    /// As vek::dispatch, by this line's parse.
    template <messageHandler Handler>
    auto dispatch(const textToRead_t &text, Handler &&handler) {
        const auto read = [this]<std::int32_t Id>(const textToRead_t &message, problem_t &problem) {
            return this->template parse<Id>(message, problem);
        };
        return detail::dispatcher_t<std::remove_reference_t<Handler>, decltype(read)>::dispatch(handler, read, text);
    }

    /// As vek::print, with the echo tag and the next sequence number of this line. A structure that is refused takes
    /// none.
    template <std::int32_t Id = 0, class Structure, class... Problem>
    requires printableAs<Structure, Id> && problemOrNone<Problem...>
    [[nodiscard]] messageText_t print(const Structure &structure, Problem &...problem) {
        const auto next = static_cast<std::int32_t>(static_cast<std::uint32_t>(sequenceNumber) + 1); // wraps
        messageText_t text = detail::printMessage<detail::printedId<Id, Structure>>(
            structure, detail::withProblem(problem...), false,
            [this, next](messageText_t &written) { written.setNumbers(echoTag, next); });
        if (!text.empty())
            sequenceNumber = next;
        return text;
    }

private:
    // A structure that was read, with the numbers of its text taken over.
    template <class Owned>
    Owned taken(const textToRead_t &text, Owned structure) {
        if (structure != nullptr) {
            const envelopeNumbers_t numbers = readEnvelopeHead(text.whole).numbers({0, echoTag, sequenceNumber});
            echoTag = numbers.echoTag;
            sequenceNumber = numbers.sequenceNumber;
        }
        return structure;
    }
};

} // namespace vek
