// What the judges of values share: how a finding about one is made, and those of numbers.
#pragma once

#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/words/words.hpp"

#include <string>
#include <string_view>

namespace vek::inspect {

inline valueFinding_t found(findingCode_t code, std::string message, std::string consequence,
                            std::string suggestion = {}) {
    return {
        code, findingKind(code).severity, {std::move(message), std::move(consequence), std::move(suggestion)}, true};
}

// A finding that is no error here.
inline valueFinding_t warned(findingCode_t code, std::string message, std::string consequence,
                             std::string suggestion = {}) {
    valueFinding_t finding = found(code, std::move(message), std::move(consequence), std::move(suggestion));
    finding.severity = severity_t::warning;
    return finding;
}

inline std::string reads(std::string_view value) {
    return joined({"a host reads ", value});
}

valueFinding_t judgeInteger(std::string_view value, bool isShort);
valueFinding_t judgeReal(std::string_view value, fieldKind_t kind);
/// A value as its field's kind asks for it, without a guess what may have been meant.
valueFinding_t judgeAsItStands(const fieldSchema_t &field, std::string_view value);
/// What stands in front of a number's comma, without its points when all can be of thousands, as in 1.024.
std::string withoutPointsOfThousands(std::string_view number);
/// What a person has meant who wrote such a number, where it has one meaning.
void judgeMeantNumber(const fieldSchema_t &field, std::string_view value, valueFinding_t &finding);

} // namespace vek::inspect
