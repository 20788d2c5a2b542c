// logScanner_t: finds the messages in a log, which comes in blocks of any size.
//
// Whatever the four calls read is a message, from "@@" to the "!!" where its length says, however its numbers are
// spelt. Else one begins at "@@" with digits behind it on its line, or with a "{" and a "!!" further on; the "@@" of
// other programs (of diff, say) is passed over. Then it is damaged, and ends with the first "}!!", else the first "!!",
// of its line before the next message; without one, with a "}!!" on a line below that comes before the next message (a
// message that was wrapped); else with its line. On its own line a next message has a number or "{" behind its id, so
// that "@@" and digits in a text are none. Memory is bounded: a message that has no end within `memoryBound`
// bytes is cut with its line. Not safe for concurrent use.
#pragma once

#include "vek/api/envelope.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vek::inspect {

struct foundMessage_t {
    std::string_view text;    ///< from "@@" to behind "!!"; valid during the call
    envelopeHead_t head;      ///< its numbers
    std::uint64_t offset = 0; ///< of its first byte, from the start of the log
    std::uint64_t line = 1;   ///< that its first byte stands in, from 1
    std::uint64_t column = 1; ///< the byte in that line, from 1
    std::string_view before;  ///< what stands in front of it on its line, from the message before on; its last bytes
    std::string_view
        lineHead;           ///< the first bytes of its line, up to the line's first message: where a log has the time
    bool isDamaged = false; ///< a host's check of its envelope finds something wrong
};

/// A place in a log from which a scanner can go on.
struct logPosition_t {
    std::uint64_t offset = 0;
    std::uint64_t line = 1;          ///< that the offset is in
    std::uint64_t column = 1;        ///< from 1
    std::string lineHead;            ///< the first bytes of that line, as far as they stand in front of the offset
    bool isLineHeadComplete = false; ///< a message came in front on that line
};

class messageSink_t {
public:
    virtual void message(const foundMessage_t &found) = 0;
    /// What stands between messages, in pieces: with the messages it is all of the log.
    virtual void between(std::string_view) {}

protected:
    ~messageSink_t() = default;
};

/// Whether a small text in which no message was found is meant as one: its start is damaged ("@4112 ..."), or it is a
/// body alone.
bool isMeantAsMessage(std::string_view text);

/// Whether a text in front of the one message of a file, or behind it, is what an editor or another program puts there,
/// but not what a log has: no words.
bool isMerelyAround(std::string_view text);

class logScanner_t {
public:
    /// How much of a line in front of a message is kept.
    static constexpr std::size_t headRoom = 512;
    /// The bytes of a message in which its end is looked for.
    static constexpr std::size_t memoryBound = std::size_t{1} << 20;

    /// Where the log's first byte stands: not at 0 and line 1 when it is read from the middle.
    explicit logScanner_t(std::uint64_t offset = 0, std::uint64_t line = 1);

    explicit logScanner_t(const logPosition_t &position);

    /// In front of this place everything is decided; the scanner that goes on from there finds the rest. What stands in
    /// front on the line is known by its first bytes only.
    logPosition_t position() const { return {offset_, line_, column_, head_, hasHead_}; }

    /// Takes the next block. Calls the sink with each message whose end is certain. Throws std::bad_alloc, and what the
    /// sink throws.
    void feed(std::string_view block, messageSink_t &sink);

    /// The log is at its end, or, when a growing log is followed, has been still for a while: whatever is left is
    /// looked at. More blocks may come.
    void finish(messageSink_t &sink);

    /// Up to where all is decided: no further message begins in front of it.
    std::uint64_t decided() const { return offset_; }
    /// Where the next block begins.
    std::uint64_t offset() const { return offset_ + kept_.size(); }
    /// The line that comes next after finish(), from 1.
    std::uint64_t line() const { return line_; }

private:
    /// What stands at a "@@".
    struct candidate_t {
        enum class kind_t : std::uint8_t { other, undecided, message };
        kind_t kind = kind_t::other;
        std::size_t end = 0;
        bool isDamaged = true;
        bool isOneLine = false; ///< certainly, since it was looked at for other things
    };

    std::size_t scan(std::string_view text, bool isLast, messageSink_t &sink);
    static candidate_t examine(std::string_view text, std::size_t at, bool isLast, envelopeHead_t &head);
    static candidate_t findDamagedEnd(std::string_view text, std::size_t at, bool isLast);
    static candidate_t findEndWithoutId(std::string_view text, std::size_t at, bool isLast);
    void pass(std::string_view words, messageSink_t &sink);
    void passMessage(std::string_view message, bool isOneLine);

    std::string kept_;     // what was not decided yet
    std::string head_;     // the first bytes of the line in hand
    std::string before_;   // its last bytes, from the message before on
    std::uint64_t offset_; // of kept_, as are line and column
    std::uint64_t line_;
    std::uint64_t column_ = 1;
    bool hasHead_ = false; // the line had a message: its head is complete
};

} // namespace vek::inspect
