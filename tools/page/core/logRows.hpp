// What the page keeps of a log's messages: a row of fixed size each, and the numbers of plots.
//
// One thread at a time. Rows and numbers go to the script as they lie in memory, so their layout is part of it: see
// columns.ts.
#pragma once

#include "vek/inspect/filter/expression.hpp"
#include "vek/inspect/log/logScanner.hpp"
#include "vek/inspect/log/sequences.hpp"
#include "vek/inspect/message/tree.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vek::page {

struct row_t {
    double offset;       ///< of the message in the log, in bytes
    double microseconds; ///< its line's time; not a number when it has none
    std::uint32_t size;
    std::uint32_t line;
    std::int32_t id; ///< -1 when it can't be read
    std::int32_t sequence;
    std::uint32_t missing;     ///< sequence numbers that are missing in front of it
    std::uint32_t findings[2]; ///< a bit for each finding code, in order
    std::uint8_t severity;     ///< 0 nothing found, 1 warnings, 2 errors
    std::uint8_t isDamaged;    ///< its end is not where its length says
    std::uint8_t hasDate;      ///< of its time
    std::uint8_t hasSequence;
    std::int32_t echo;
    std::uint8_t hasEcho;
    std::uint8_t unused[3];
};
static_assert(sizeof(row_t) == 56);

class logRows_t final : public inspect::messageSink_t {
public:
    /// The next block of the log; an empty one ends it. Rows are appended to `out`.
    void take(std::string_view block, std::string &out);

    void message(const inspect::foundMessage_t &found) override;

private:
    static constexpr std::size_t largestMeant = std::size_t{1} << 18;

    inspect::logScanner_t scanner_;
    std::string start_; // all of a log that is small
    bool isSmall_ = true, isFound_ = false;
    inspect::sequences_t sequences_;
    inspect::tree_t tree_;
    std::string *out_ = nullptr;
};

/// Appends how many numbers are missing in front of each of `sequences`, all 32-bit numbers.
void appendMissing(std::string_view sequences, std::string &out);

/// Appends a byte for each message: whether it is chosen. `places`: as for series_t::take().
void appendChosen(std::string &out, const inspect::expression_t &where, std::string_view places,
                  std::string_view block);

/// The numbers that stand at some paths of messages: of an enumeration its value, of a boolean 0 or 1.
class series_t {
public:
    /// `paths`, one a line.
    void choose(std::string_view paths);

    /// `places`: start and size of each message in `block`, as 32-bit numbers. Appends a double for each message and
    /// path; not a number where there is none.
    void take(std::string_view places, std::string_view block, std::string &out);

private:
    double numberAt(const std::string &path) const;

    std::vector<std::string> paths_;
    inspect::tree_t tree_;
};

} // namespace vek::page
