// What the fuzzers make of their input, and how they end with a difference.
#pragma once

#include "tests/support/messages.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vek::test {

struct input_t {
    std::int32_t id;
    std::string body;
};

inline std::string textOf(const std::uint8_t *data, std::size_t size) {
    return {reinterpret_cast<const char *>(data), size};
}

/// A whole text gives its id and what lies between its first brace and "!!", so that a length that became wrong does
/// not matter; any other input is a body as it is, of the message that its first character selects.
inline input_t inputOf(const std::string &text) {
    static const std::vector<std::int32_t> ids = bodyIds();
    if (!text.starts_with("@@"))
        return {ids[static_cast<unsigned char>(text[0]) % ids.size()], text};
    const auto id = static_cast<std::int32_t>(std::strtol(text.c_str() + 2, nullptr, 10));
    std::string body = text.substr(std::min(text.find('{'), text.size()));
    if (body.ends_with("!!"))
        body.resize(body.size() - 2);
    const bool isKnown = std::find(ids.begin(), ids.end(), id) != ids.end();
    return {isKnown ? id : ids[static_cast<std::uint32_t>(id) % ids.size()], body};
}

/// Chooses what is tried with an input, always the same; its size would not do: many are as long as is allowed.
inline std::size_t choiceBy(const std::string &text) {
    return std::hash<std::string>()(text);
}

/// Whether an input is to be passed over: a colour table has its 256 entries whatever the text says, and takes the time
/// of many other messages.
inline bool isOneTooMany(const input_t &input) {
    constexpr std::int32_t colorTable = 4171;
    return input.id == colorTable && choiceBy(input.body) % 16 != 0;
}

/// Ends the fuzzer with what differs; `of` is what it was made of.
inline void expectSame(std::string_view of, std::string_view expected, std::string_view actual) {
    if (actual == expected)
        return;
    std::fprintf(stderr, "    of %s\nshould %s\n    is %s\n", shown(of).c_str(), shown(expected).c_str(),
                 shown(actual).c_str());
    std::abort();
}

} // namespace vek::test
