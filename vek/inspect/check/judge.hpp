// What is wrong with the text of a single value, in the words of a finding.
//
// Pure functions.
#pragma once

#include "vek/inspect/check/check.hpp"

#include <string>
#include <string_view>

namespace vek::inspect {

/// The words of a finding.
struct findingWords_t {
    std::string message, consequence, suggestion;
};

/// What is wrong with a value, before it has a place.
struct valueFinding_t {
    findingCode_t code{};
    severity_t severity{};
    findingWords_t words;
    bool isThere = false;
};

/// Judges the text of a scalar. `isElement`: of a list's element; of a 16-bit text, one code.
valueFinding_t judgeValue(const fieldSchema_t &field, std::string_view value, bool isElement);

/// What a host's structure has for a key that isn't there, as it would write it: "0", "FALSE", "an empty text".
std::string valueOfAbsent(const fieldSchema_t &field);

/// A value for people, in quotes, a long one cut.
std::string shownValue(std::string_view value);

} // namespace vek::inspect
