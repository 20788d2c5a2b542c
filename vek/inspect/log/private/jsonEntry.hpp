// An object of JSON as far as a log is concerned: its strings that hold messages, and its time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

struct jsonEntry_t {
    /// Takes a well-formed object, list or string apart.
    explicit jsonEntry_t(std::string_view json, int depth = 0);

    std::string time;                  ///< empty when there is none
    std::vector<std::string> messages; ///< the strings with messages in them
    bool isContinued = false;          ///< the string goes on in the next object
    bool isForm = false;               ///< it is a message in JSON itself

private:
    void string(std::string_view key, std::string value, int depth);
};

/// Appends the character of the escape at `at`, where a "\" stands, and moves behind it. False when it is none.
bool appendUnescaped(std::string &out, std::string_view text, std::size_t &at);

} // namespace vek::inspect
