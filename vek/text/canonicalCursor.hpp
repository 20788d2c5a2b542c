// canonicalCursor_t: a place in a body that is read in one go, as long as the body looks as this library writes it:
// keys in member order, no quotes, braces only around groups and lists that are not empty, each value followed by one
// separator and one that its field has.
//
// A body that looks otherwise is no error. The reading is given up (the cursor is nowhere), and the body is read again
// with a tolerantScanner_t, which knows every rule. So what a cursor takes, it must take as the scanner would, and as
// it says: strict reading trusts it. What is rare it need not take. The body must outlive it.
#pragma once

#include "vek/text/characterBlock.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"
#include "vek/vek_std/std_sys/vek_shortRuns.hpp"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vek {

/// Two pointers, passed by value: in registers.
class canonicalCursor_t {
public:
    /// Nowhere: the reading is given up.
    canonicalCursor_t() = default;
    /// At the start of a body, in front of whose end 16 characters can be read: an envelope has as many.
    explicit canonicalCursor_t(std::string_view body) : at_(body.data()), end_(at_ + body.size()) {}

    bool isNowhere() const { return at_ == nullptr; }
    bool isAtEnd() const { return at_ != nullptr && at_ == end_; }
    bool isAt(char c) const { return at_ != end_ && *at_ == c; }

    /// Goes behind `c` if it stands here.
    bool skip(char c) {
        const bool isHere = isAt(c);
        at_ += isHere ? 1 : 0;
        return isHere;
    }

    /// Goes behind `word` if it stands here, be it a whole value or not.
    bool skip(std::string_view word) {
        if (static_cast<std::size_t>(end_ - at_) < word.size() || !areSame(at_, word.data(), word.size()))
            return false;
        at_ += word.size();
        return true;
    }

    /// Goes behind `key` and a "=" if they stand here.
    bool skipKey(std::string_view key) {
        const bool isHere = isKeyAt(at_, end_, key);
        at_ += isHere ? key.size() + 1 : 0;
        return isHere;
    }

    /// Goes behind `{`; false also when nothing stands in the braces.
    bool enter() {
        const bool isHere = end_ - at_ > 1 && *at_ == openBrace && at_[1] != closeBrace;
        at_ += isHere ? 1 : 0;
        return isHere;
    }

    /// Goes behind a plain value, up to a separator or a brace, and returns it; empty when none is here.
    std::string_view value() {
        const char *const start = at_;
        at_ = findStructural(at_, end_);
        const bool isPlain = at_ != end_ && *start != '"';
        return isPlain ? std::string_view(start, static_cast<std::size_t>(at_ - start)) : std::string_view();
    }

    /// Goes behind a short integer without white space and returns true; false when something else is here.
    bool integer(std::int32_t &value) {
        constexpr int mostDigits = 9; // no overflow
        const char *at = at_;
        const bool isNegative = isAt('-');
        at += isNegative ? 1 : 0;
        const char *const digits = at;
        std::int32_t number = 0;
        for (; at != end_ && isDigit(*at) && at - digits < mostDigits; ++at)
            number = number * 10 + (*at - '0');
        value = isNegative ? -number : number;
        const bool isWhole = at != digits && at != end_ && isSeparator(*at);
        at_ = isWhole ? at : at_;
        return isWhole;
    }

    /// Goes behind a real as this library writes it, "-12.500000", and returns true; false when something else is here.
    /// More digits than that are not looked for: what follows is then no separator.
    bool real(double &value) {
        const char *const behind = readSixDecimals(at_, end_, value);
        at_ = behind != nullptr ? behind : at_;
        return behind != nullptr;
    }

    /// Goes behind an integer of one to three digits and a comma, as most characters of 16-bit texts are, and returns
    /// true; false when something else is here.
    bool shortElement(std::int32_t &value) {
        constexpr int mostDigits = 3;
        if (end_ - at_ <= mostDigits)
            return false;
        std::int32_t number = 0;
        for (int length = 0; length < mostDigits && isDigit(at_[length]);) {
            number = number * 10 + (at_[length] - '0');
            if (at_[++length] == comma) {
                value = number;
                at_ += length + 1;
                return true;
            }
        }
        return false;
    }

    /// How many commas stand in front of the next closing brace.
    std::int32_t countCommas() const {
        std::int32_t count = 0;
        const char *at = at_;
#ifdef __SSE2__
        for (; end_ - at >= characterBlock_t::size; at += characterBlock_t::size) {
            const characterBlock_t block(at);
            const unsigned brace = block.equal(closeBrace);
            const unsigned inFront = (brace & (0U - brace)) - 1; // all, when there is no brace
            count += characterBlock_t::count(block.equal(comma) & inFront);
            if (brace != 0)
                return count;
        }
#endif
        for (; at != end_ && *at != closeBrace; ++at)
            count += *at == comma ? 1 : 0;
        return count;
    }

private:
    // The last characters of a body are looked at as part of its last block, so that nothing behind it is.
    static const char *findStructural(const char *at, const char *end) {
#ifdef __SSE2__
        for (; end - at >= characterBlock_t::size; at += characterBlock_t::size)
            if (const unsigned found = characterBlock_t(at).structural(); found != 0)
                return at + std::countr_zero(found);
        const auto read = characterBlock_t::size - static_cast<int>(end - at);
        const unsigned found = characterBlock_t(end - characterBlock_t::size).structural() >> read;
        return found != 0 ? at + std::countr_zero(found) : end;
#else
        while (at != end && !isSeparator(*at) && *at != openBrace && *at != closeBrace)
            ++at;
        return at;
#endif
    }

    const char *at_ = nullptr;
    const char *end_ = nullptr;
};

} // namespace vek
