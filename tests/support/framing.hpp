// What a framer makes of a line's bytes: a text that tells all of it, in its order, to compare.
#pragma once

#include "vek/api/dispatch.hpp"
#include "vek/api/framer.hpp"
#include "vek/api/problem.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vek::test {

/// `size()` gives the size of each piece that is fed. Ends the process with a message that has a damaged envelope.
template <class Size>
std::string framed(std::string_view bytes, Size size) {
    std::string told;
    framer_t framer;
    const auto taker = overloaded{
        [&told](std::string_view message) {
            if (isEnvelopeDamaged(message))
                __builtin_trap();
            told.append(message) += '\n';
        },
        [&told](const problem_t &problem) { told += std::to_string(problem.offset) + ": " + problem.text + '\n'; }};
    for (std::size_t at = 0; at < bytes.size();) {
        const std::string_view piece = bytes.substr(at, size());
        framer.feed(std::string(piece), taker); // a piece ends with the call
        at += piece.size();
    }
    framer.finish(taker);
    return told;
}

} // namespace vek::test
