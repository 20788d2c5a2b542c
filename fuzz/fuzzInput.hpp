// What the fuzzers make of their input: a message with a body, so that changes to a body don't make its length wrong.
#pragma once

#include "support/messages.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace vek::test {

struct input_t {
    std::int32_t id;
    std::string body;
};

/// A whole text gives its id and what lies between its first brace and "!!", so that changes to a body don't make its
/// length wrong; any other input is a body as it is, of the message that its first character selects.
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

/// Ends the fuzzer with what differs.
inline void expectSame(const input_t &input, const std::string &expected, const std::string &actual) {
    if (actual == expected)
        return;
    std::fprintf(stderr, "    id %d\n  body %s\nshould %s\n    is %s\n", input.id, shown(input.body).c_str(),
                 shown(expected).c_str(), shown(actual).c_str());
    std::abort();
}

} // namespace vek::test
