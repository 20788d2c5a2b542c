#include "vek/text/tolerantTokenizer.hpp"

#include <bit>
#include <cstring>

namespace vek {

namespace {

// The end of the braced text that starts at `at`, or null when its closing brace is missing. Quotes hide no braces from
// the count: texts carry them as codes instead. Runs over every level of nesting once, so it looks at 16 characters at
// a time.
const char *findBracedEnd(const char *at, const char *end) {
    std::size_t depth = 0;
#ifdef __SSE2__
    for (; end - at >= characterBlock_t::size; at += characterBlock_t::size) {
        const characterBlock_t block(at);
        const unsigned opens = block.equal(openBrace);
        for (unsigned braces = opens | block.equal(closeBrace); braces != 0; braces &= braces - 1) {
            if ((opens & braces & (0U - braces)) != 0) // the lowest brace is an opening one
                ++depth;
            else if (--depth == 0)
                return at + std::countr_zero(braces) + 1;
        }
    }
#endif
    for (; at != end; ++at) {
        if (*at == openBrace)
            ++depth;
        else if (*at == closeBrace && --depth == 0)
            return at + 1;
    }
    return nullptr;
}

} // namespace

// Without its closing brace a nested body could end anywhere, so none of it counts, nor of what follows.
std::string_view tolerantTokenizer_t::bracedToken() {
    const char *const start = at_;
    const bool isEmpty = end_ - at_ > 1 && at_[1] == closeBrace; // texts may be nothing but these
    const char *const behind = isEmpty ? at_ + 2 : findBracedEnd(at_, end_);
    at_ = behind != nullptr ? behind : end_;
    return behind != nullptr ? std::string_view(start, static_cast<std::size_t>(behind - start)) : noToken;
}

// There is no way to write a quote inside quotes. An open quoted text is taken as far as it goes, and an empty one is a
// token all the same: its view is empty, but not null as noToken is.
std::string_view tolerantTokenizer_t::quotedToken() {
    const char *const start = at_ + 1;
    const bool isEmpty = start != end_ && *start == '"'; // texts may be nothing but quotes
    const auto *quote =
        isEmpty ? start : static_cast<const char *>(std::memchr(start, '"', static_cast<std::size_t>(end_ - start)));
    const char *const behind = quote != nullptr ? quote : end_;
    at_ = quote != nullptr ? quote + 1 : end_;
    return {start, static_cast<std::size_t>(behind - start)};
}

// Texts may have little but short pairs, which token() and delimiter() take four times as long for. A carry out of the
// first of some separators goes through all that follow it: where it ends, the next token starts.
bool tolerantTokenizer_t::shortKey([[maybe_unused]] std::string_view &key, [[maybe_unused]] std::string_view &value) {
#ifdef __SSE2__
    if (end_ - at_ < characterBlock_t::size || *at_ == openBrace || *at_ == '"')
        return false;
    const characterBlock_t block(at_);
    constexpr unsigned all = (1U << characterBlock_t::size) - 1;
    const unsigned separators = block.equalAny(equalsSign, semicolon, comma);
    const unsigned behindKey = separators & (0U - separators);
    const unsigned carried = separators + behindKey;
    const unsigned valueStart = carried & ~separators & all;
    if ((block.equal(equalsSign) & separators & ~carried) == 0 || behindKey == 1 || valueStart == 0)
        return false;
    key = {at_, static_cast<std::size_t>(std::countr_zero(behindKey))};
    const char *const start = at_ + std::countr_zero(valueStart);
    const unsigned laterSeparators = separators & carried;
    const unsigned behindValue = laterSeparators & (0U - laterSeparators);
    const unsigned next = (laterSeparators + behindValue) & ~laterSeparators & all;
    const bool isPlain = next != 0 && *start != openBrace && *start != '"';
    const char *const end = at_ + std::countr_zero(behindValue);
    value = isPlain ? std::string_view(start, static_cast<std::size_t>(end - start)) : noToken;
    at_ = isPlain ? at_ + std::countr_zero(next) : start;
    return true;
#else
    return false;
#endif
}

void tolerantTokenizer_t::skipBlocksWithoutKeys() {
#ifdef __SSE2__
    while (end_ - at_ >= characterBlock_t::size) {
        const characterBlock_t block(at_);
        const unsigned separators = block.equalAny(semicolon, comma);
        const unsigned others = block.equalAny(equalsSign, openBrace, '"');
        const unsigned inFront = (others & (0U - others)) - 1; // all, when there is none of them
        const unsigned starts = separators << 1 & ~separators & inFront & ((1U << characterBlock_t::size) - 1);
        if (starts == 0)
            return;
        at_ += std::bit_width(starts) - 1;
    }
#endif
}

} // namespace vek
