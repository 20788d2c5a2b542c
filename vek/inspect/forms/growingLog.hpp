// growingLog_t: the log in a text that comes in pieces of any size, whatever it is wrapped in.
//
// How it is wrapped shows with its first message; lines in front of that are handed on as they stand. Escapes may show
// later, with the first message that has some: it is kept from its first backslash on until its end tells. Memory is
// bounded. Not safe for concurrent use.
#pragma once

#include "vek/inspect/log/unwrapping.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace vek::inspect {

class growingLog_t {
public:
    /// What the log has more with the next piece; valid until the next call, and as long as the piece.
    std::string_view take(std::string_view piece);
    /// What was kept until it shows what it is, when nothing comes for a while.
    std::string_view standStill();
    /// The same, and what else is left, at its end; another log may follow.
    std::string_view finish();

    /// none as long as it is not known.
    wrapping_t wrapping() const { return wrapping_; }

private:
    std::string_view begin(bool isAll);
    std::size_t sizeToHandOn() const;
    std::string_view watch(std::string_view piece);
    std::string_view beginEscapes(std::size_t at);

    std::string start_, handedOn_;
    wrapping_t wrapping_ = wrapping_t::none;
    std::optional<unwrapper_t> unwrapper_; // once it is known
    std::string open_;                     // of what seems plain, from the message on that has no end yet
    std::size_t handedOnOfIt_ = 0;
    bool isPlain_ = false; // a message is right with its backslashes
};

} // namespace vek::inspect
