// framer_t: cuts the bytes of a line, which come in pieces of any size, into messages.
//
//     vek::framer_t framer;                                       // one for each line
//     framer.feed(bytes, vek::overloaded{[&](std::string_view message) { vek::dispatch(message, handlers); },
//                                        [&](const vek::problem_t &problem) { log(problem.text); }});
//
// A message goes from "@@" to the "!!" where its length says. White space and NULs between messages are nothing; any
// other bytes, and messages that are cut off or whose length is wrong, are a problem, with the place in the line as its
// offset. The next "@@" is tried then, also one inside of what was passed over. How the bytes were cut makes no
// difference. A message whose end has not come is waited for, until finish(): so a line that is still is finished.
//
// What is taken is called at once, and may throw: the framer goes on behind what it was given. Memory: one message and
// one piece. One thread at a time.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/api/problem.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vek {

class framer_t {
public:
    /// Messages of more characters than `longest`, a NUL included, are refused.
    explicit framer_t(std::size_t longest = longestReadableMessage) : longest_(longest) {}

    /// Takes the next bytes. `taker` is called with each message, a std::string_view without its NUL that is valid
    /// during the call, and with each problem, in their order.
    template <class Taker>
    void feed(std::string_view bytes, Taker &&taker) {
        take(bytes, false, taker);
    }

    /// No more bytes belong to what has come: what is left is a problem. The line may go on.
    template <class Taker>
    void finish(Taker &&taker) {
        take({}, true, taker);
    }

    /// The bytes that came so far.
    std::size_t size() const { return offset_ + kept_.size(); }

private:
    /// The front of a message in which its id and its length must be.
    static constexpr std::size_t headRoom = 128;
    static constexpr std::size_t nowhere = std::string_view::npos;

    template <class Taker>
    void take(std::string_view bytes, bool isLast, Taker &taker) {
        const bool isAlone = kept_.empty();
        if (!isAlone)
            kept_ += bytes;
        const std::string_view text = isAlone ? bytes : std::string_view(kept_);
        std::size_t decided = 0;
        const auto keepRest = [&] {
            offset_ += decided;
            if (isAlone)
                kept_ = text.substr(decided);
            else
                kept_.erase(0, decided);
        };
        try {
            scan(text, decided, isLast, taker);
        } catch (...) {
            keepRest();
            throw;
        }
        keepRest();
    }

    /// Goes over the text, and `decided` with it.
    template <class Taker>
    void scan(std::string_view text, std::size_t &decided, bool isLast, Taker &taker) {
        while (true) {
            if (!passed_)
                decided = skipBetween(text, decided);
            const std::size_t start = text.find(startMarker, decided);
            const bool isHalf = start == nowhere && !isLast && text.ends_with(startMarker[0]);
            if (const std::size_t end = std::min(start, text.size() - (isHalf ? 1 : 0)); end > decided) {
                if (!passed_)
                    passOver(decided, {problemCode_t::noStartMarker, 0, "bytes that are no message"});
                decided = end;
            }
            if (start == nowhere)
                break;
            frame_t frame = examine(text.substr(start), offset_ + start, isLast);
            if (frame.kind == frame_t::undecided)
                return;
            if (frame.kind == frame_t::whole || (passed_ && frame.problem.numbers.id != 0))
                tellPassed(start, taker);
            decided = start + frame.size;
            if (frame.kind == frame_t::whole)
                taker(text.substr(start, frame.size));
            else if (!passed_)
                passOver(start, std::move(frame.problem));
        }
        if (isLast && passed_)
            tellPassed(decided, taker);
    }

    static std::size_t skipBetween(std::string_view text, std::size_t at) {
        while (at != text.size() && (isSpace(text[at]) || text[at] == '\0'))
            ++at;
        return at;
    }

    /// What stands at a "@@".
    struct frame_t {
        enum kind_t : std::uint8_t { undecided, whole, damaged } kind = undecided;
        std::size_t size = 1; ///< of a message, or how far there is certainly none
        problem_t problem = {};
    };

    /// `offset` is the place in the line.
    frame_t examine(std::string_view text, std::size_t offset, bool isLast) {
        using enum problemCode_t;
        const std::string_view front = text.substr(0, headRoom);
        const envelopeHead_t head = readEnvelopeHead(front);
        const bool isCut = head.id.end == front.size() || (head.id.isThere && head.length.end == front.size());
        if (isCut && !isLast && front.size() < headRoom)
            return {};
        const auto damaged = [&head](problemCode_t code, std::string why) -> frame_t {
            return {frame_t::damaged, 1, {code, 0, std::move(why), {}, head.numbers()}};
        };
        if (!head.id.isThere)
            return damaged(noId, "no message id behind \"@@\"");
        const auto said = static_cast<std::size_t>(std::max(head.length.value, 0));
        if (isCut || said < head.length.end + 1 + endMarker.size())
            return damaged(wrongLength, "a message without a length that it could have");
        if (said > longest_)
            return damaged(aboveLimit, "a message of " + std::to_string(said) + " characters with its NUL, of which " +
                                           std::to_string(longest_) + " are taken");
        const std::string_view message = text.substr(0, said - 1);
        if (message.size() < said - 1)
            return isLast ? damaged(wrongLength,
                                    "a message of " + std::to_string(said) + " characters with its NUL that is cut off")
                          : frame_t();
        if (!message.ends_with(endMarker))
            return damaged(noEndMarker, "a message without a \"!!\" where its length says");
        if (const std::size_t from = std::max(nul_, offset) - offset; from < message.size())
            nul_ = offset + std::min(message.find('\0', from), message.size());
        if (nul_ < offset + message.size())
            return damaged(innerNul, "a NUL inside a message");
        return {frame_t::whole, message.size()};
    }

    void passOver(std::size_t start, problem_t problem) {
        passed_ = std::move(problem);
        passed_->offset = offset_ + start;
    }

    template <class Taker>
    void tellPassed(std::size_t end, Taker &taker) {
        if (!passed_)
            return;
        problem_t problem = std::move(*passed_);
        passed_.reset();
        const std::size_t count = offset_ + end - problem.offset;
        problem.text += "; " + std::to_string(count) + (count == 1 ? " byte is passed over" : " bytes are passed over");
        taker(std::as_const(problem));
    }

    std::size_t longest_;
    std::size_t offset_ = 0;          // of what is kept
    std::string kept_;                // what is not decided
    std::size_t nul_ = 0;             // up to here a NUL in a message was looked for: none is looked for twice
    std::optional<problem_t> passed_; // of the bytes that are being passed over
};

} // namespace vek
