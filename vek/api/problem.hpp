// What can be wrong with a text message or a structure, and the check of a text's envelope that says it.
//
// The four calls convert whatever can be read; hosts that want to know use this. Pure functions.
#pragma once

#include "vek/api/envelope.hpp"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace vek {

enum class problemCode_t {
    none,
    // Of a text:
    noStartMarker, ///< no "@@" at the start
    innerNul,      ///< a NUL before the end
    noId,          ///< no number behind "@@"
    wrongLength,   ///< the length is not the text's
    noEndMarker,   ///< no "!!" at the end
    otherId,       ///< a message of another id than asked for
    // Of a structure:
    tooLong,        ///< the message would have 100,000 characters or more
    countAboveRoom, ///< a count says more elements than there is room for
};

struct problem_t {
    problemCode_t code = problemCode_t::none;
    std::size_t offset = 0; ///< of the byte in the text where it is wrong; 0 when it is a structure that is wrong
    std::string text;       ///< why, for people

    explicit operator bool() const { return code != problemCode_t::none; }
};

/// What the throwing functions throw. what() says why and, of a text, where.
class messageError_t : public std::runtime_error {
public:
    explicit messageError_t(problem_t problem) : std::runtime_error(describe(problem)), problem_(std::move(problem)) {}

    problemCode_t code() const { return problem_.code; }
    std::size_t offset() const { return problem_.offset; }
    const problem_t &problem() const { return problem_; }

private:
    static std::string describe(const problem_t &problem) {
        const bool isInText = problem.code < problemCode_t::tooLong;
        return isInText ? problem.text + " (byte " + std::to_string(problem.offset) + ")" : problem.text;
    }

    problem_t problem_;
};

/// The characters that a message may have, its NUL included: the length has five digits.
inline constexpr std::size_t largestMessage = 99999;

/// The text without its terminating NUL, which is part of a message and may be part of the view.
inline std::string_view withoutNul(std::string_view text) {
    return text.ends_with('\0') ? text.substr(0, text.size() - 1) : text;
}

/// The first thing that is wrong with a text's envelope, if any. `numbers` receives what could be read.
inline problem_t checkEnvelope(std::string_view text, envelopeNumbers_t &numbers, envelopePlaces_t &places) {
    using enum problemCode_t;
    text = withoutNul(text);
    std::string_view body;
    const envelopeResult_t result = readEnvelope(text, numbers, body, places);
    if (!text.starts_with("@@"))
        return {noStartMarker, 0, "the text does not begin with \"@@\""};
    if (const std::size_t nul = text.find('\0'); nul != std::string_view::npos)
        return {innerNul, nul, "a NUL inside the text"};
    if (!places.hasId)
        return {noId, places.id, "no message id behind \"@@\""};
    if (result == envelopeResult_t::wrongLength)
        return {wrongLength, places.length,
                "the length is said to be " + std::to_string(places.statedLength) + ", but the text has " +
                    std::to_string(text.size() + 1) + " characters with its NUL"};
    if (result == envelopeResult_t::wrongMarker)
        return {noEndMarker, places.endMarker, "the text does not end with \"!!\""};
    return {};
}

/// As checkEnvelope, and that the text is message `id`.
inline problem_t checkMessage(std::string_view text, std::int32_t id) {
    envelopeNumbers_t numbers;
    envelopePlaces_t places;
    problem_t problem = checkEnvelope(text, numbers, places);
    if (!problem && numbers.id != id)
        problem = {problemCode_t::otherId, places.id,
                   "the text is message " + std::to_string(numbers.id) + ", not " + std::to_string(id)};
    return problem;
}

} // namespace vek
