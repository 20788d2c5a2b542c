// What stands in front of a message in its log, from the message before on, in few bytes: as a pattern, which is the
// same from line to line, and the message's time.
//
// Pure functions, safe for concurrent use.
#pragma once

#include "vek/inspect/log/logTime.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// A front as a pattern: the time that stands there, when it is spelt "2026-03-01 08:14:52.060" (also with another
/// character between date and time, a comma, and up to six digits), is left out of it.
std::string patternOf(std::string_view front, const std::optional<logTime_t> &time);

/// Appends what a pattern is with a time. One that stands for a time which is not there gives nothing for it.
void appendFront(std::string &out, std::string_view pattern, const std::optional<logTime_t> &time);

/// The patterns that are usual in a log, each for messages of some ids: what has them need not be kept for each
/// message. Learnt from the log itself, the first line of an id tells. Not safe for concurrent use.
class usualFronts_t {
public:
    /// Null while there is none.
    const std::string *of(const std::optional<std::int32_t> &id) const;
    /// Takes a pattern for the id, which has none yet. False when it is not like one of a line.
    bool learn(const std::optional<std::int32_t> &id, const std::string &pattern);

    /// All of it as a text, and back: "4112,4161 28 PATTERN" one behind the other, 28 being the pattern's size.
    const std::string &inWords() const { return words_; }
    static usualFronts_t ofWords(std::string_view words);

private:
    struct usual_t {
        std::vector<std::int64_t> ids;
        std::string pattern;
    };
    void say();

    std::vector<usual_t> all_;
    std::string words_;
};

} // namespace vek::inspect
