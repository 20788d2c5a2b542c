// vek::dispatch: reads a text message as what it is and hands its structure to the handler for that.
//
//     vek::dispatch(text, vek::overloaded{
//         [](const vek::FocusValue &focus) { ... },
//         [](vek::owned_t<vek::Cassette> cassette) { ... },         // to keep it
//         [](const vek::IdRecord &record, std::int32_t id) { ... }, // a structure of several messages
//         [](const vek::problem_t &problem) { ... }});              // what is refused
//
// The id leads to its handler by one indexed jump, and what the handlers return is returned. A message that no handler
// takes is refused like a damaged one, before it is read: the library's header numbers stay. Without a handler for
// problems they are thrown, as messageError_t. A handler of a base takes what derives from it. Part of
// vek/api/vekParams2ASCII.hpp; threads as there.
#pragma once

#include "vek/api/vekParams2ASCII.hpp"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace vek {

/// Several handlers as one.
template <class... Handlers>
struct overloaded : Handlers... {
    using Handlers::operator()...;
};
template <class... Handlers>
overloaded(Handlers...) -> overloaded<Handlers...>;

namespace detail {

template <class... Types>
struct types_t {
    template <class... More>
    types_t<Types..., More...> operator+(types_t<More...>) const;
};
template <class... Types>
std::common_type_t<Types...> commonOf(types_t<Types...>);

/// How one handler takes one message.
template <class Handler, class Message>
struct handover_t {
    using structure_t = typename Message::structure_t;
    static constexpr bool withId = std::invocable<Handler &, structure_t &, std::int32_t>;
    static constexpr bool alone = std::invocable<Handler &, structure_t &>;
    static constexpr bool isTaken = withId || alone || std::invocable<Handler &, owned_t<structure_t>>;

    static decltype(auto) give(Handler &handler, owned_t<structure_t> structure) {
        if constexpr (withId)
            return handler(*structure, Message::id);
        else if constexpr (alone)
            return handler(*structure);
        else
            return handler(std::move(structure));
    }
    static auto result() {
        if constexpr (isTaken)
            return types_t<decltype(give(std::declval<Handler &>(), nullptr))>();
        else
            return types_t<>();
    }
};

template <class Handler>
inline constexpr bool takesAnyMessage = []<class... Messages>(const messageTable_t<Messages...> &) {
    return (handover_t<Handler, Messages>::isTaken || ...);
}(messages_t());

/// What a handler is for each message. `Parse` reads one, as vek::parse does.
template <class Handler, class Parse, class Table = messages_t>
struct dispatcher_t;
template <class Handler, class Parse, class... Messages>
struct dispatcher_t<Handler, Parse, messageTable_t<Messages...>> {
    static constexpr bool takesProblems = std::invocable<Handler &, const problem_t &>;
    static auto problemResult() {
        if constexpr (takesProblems)
            return types_t<std::invoke_result_t<Handler &, const problem_t &>>();
        else
            return types_t<>();
    }
    using result_t = decltype(commonOf((problemResult() + ... + handover_t<Handler, Messages>::result())));
    using jump_t = result_t (*)(Handler &, const Parse &, const textToRead_t &);

    static result_t refuse(Handler &handler, problem_t problem) {
        if constexpr (takesProblems)
            return static_cast<result_t>(handler(std::as_const(problem)));
        else
            throw messageError_t(std::move(problem));
    }

    template <class Message>
    static result_t take(Handler &handler, const Parse &parse, const textToRead_t &text) {
        problem_t problem;
        owned_t<typename Message::structure_t> structure = parse.template operator()<Message::id>(text, problem);
        if (structure == nullptr) [[unlikely]]
            return refuse(handler, std::move(problem));
        return static_cast<result_t>(handover_t<Handler, Message>::give(handler, std::move(structure)));
    }

    static constexpr std::int32_t firstId = std::min({Messages::id...});
    static constexpr auto jumps = [] {
        std::array<jump_t, static_cast<std::size_t>(std::max({Messages::id...}) - firstId) + 1> made{};
        const auto add = [&made]<class Message>(Message) {
            if constexpr (handover_t<Handler, Message>::isTaken)
                made[static_cast<std::size_t>(Message::id - firstId)] = &take<Message>;
        };
        (add(Messages()), ...);
        return made;
    }();

    static result_t dispatch(Handler &handler, const Parse &parse, const textToRead_t &text) {
        const std::int32_t id = messageId(text.whole);
        const auto place = static_cast<std::size_t>(static_cast<std::uint32_t>(id) - std::uint32_t{firstId});
        const jump_t jump = place < jumps.size() ? jumps[place] : nullptr;
        return jump != nullptr ? jump(handler, parse, text) : refuse(handler, untaken(text.whole, id));
    }

    static problem_t untaken(std::string_view text, std::int32_t id) {
        problem_t problem = checkMessage(text, id);
        if (!problem) {
            const envelopeHead_t head = readEnvelopeHead(text);
            problem = {problemCode_t::otherId, head.id.start, "no handler takes message " + std::to_string(id)};
            problem.numbers = head.numbers();
        }
        return problem;
    }
};

struct parseOfProcess_t {
    template <std::int32_t Id>
    owned_t<structureOf_t<Id>> operator()(const textToRead_t &text, problem_t &problem) const {
        return parse<Id>(text, problem);
    }
};

} // namespace detail

template <class Handler>
concept messageHandler = detail::takesAnyMessage<std::remove_reference_t<Handler>>;

/// Reads a text as vek::parse does, and returns what the handler returns.
template <messageHandler Handler>
auto dispatch(const textToRead_t &text, Handler &&handler) {
    using handler_t = std::remove_reference_t<Handler>;
    return detail::dispatcher_t<handler_t, detail::parseOfProcess_t>::dispatch(handler, {}, text);
}
template <class Other>
void dispatch(const textToRead_t &, Other &&) = delete; // it takes no message: [](const vek::FocusValue &focus) { ... }

} // namespace vek

#include "vek/api/line.hpp"
