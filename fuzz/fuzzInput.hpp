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

struct fuzzInput_t {
    std::int32_t id;
    std::string body;
    std::string text; ///< the input itself, up to its first NUL
};

/// A whole text gives its id and what lies between its first brace and "!!"; any other input is a body as it is, of
/// the message that its first character selects.
inline fuzzInput_t fuzzInput(const std::uint8_t *data, std::size_t size) {
    fuzzInput_t input;
    input.text = std::string(reinterpret_cast<const char *>(data), size).c_str();
    input.body = input.text;
    unsigned selector = input.text.empty() ? 0 : data[0];
    if (input.text.starts_with("@@")) {
        selector = static_cast<unsigned>(std::atoi(input.text.c_str() + 2)) - 4096U;
        const std::size_t brace = input.text.find('{');
        input.body = brace == std::string::npos ? "" : input.text.substr(brace);
        if (input.body.ends_with("!!"))
            input.body.resize(input.body.size() - 2);
    }
    static const std::vector<std::int32_t> ids = bodyIds();
    const auto id = static_cast<std::int32_t>(selector + 4096U);
    input.id = std::find(ids.begin(), ids.end(), id) != ids.end() ? id : ids[selector % ids.size()];
    return input;
}

/// Ends the fuzzer with what differs.
[[noreturn]] inline void fail(const fuzzInput_t &input, const std::string &expected, const std::string &actual) {
    std::fprintf(stderr, "    id %d\n  body %s\nshould %s\n    is %s\n", input.id, shown(input.body).c_str(),
                 shown(expected).c_str(), shown(actual).c_str());
    std::abort();
}

} // namespace vek::test
