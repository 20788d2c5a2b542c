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
    const char *const behind = findBracedEnd(at_, end_);
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

// Texts may have little but short pairs, which token() and delimiter() take four times as long for.
bool tolerantTokenizer_t::shortPair([[maybe_unused]] std::string_view &first,
                                    [[maybe_unused]] std::string_view &second) {
#ifdef __SSE2__
    if (end_ - at_ < characterBlock_t::size || *at_ == '"')
        return false;
    const characterBlock_t block(at_);
    const unsigned separatorsHere = block.equalAny(equalsSign, semicolon, comma);
    const unsigned behindFirst = separatorsHere & (0U - separatorsHere);
    const unsigned laterSeparators = separatorsHere ^ behindFirst;
    const unsigned behindSecond = laterSeparators & (0U - laterSeparators);
    // Neither an empty token nor a second separator behind either, nor what is no plain token.
    const unsigned starts = 1U | behindFirst << 1;
    const bool isPair = behindSecond != 0 && behindSecond >> (characterBlock_t::size - 1) == 0 &&
                        (separatorsHere & (starts | behindSecond << 1)) == 0 &&
                        (block.equalAny(openBrace, '"') & starts) == 0 && (block.equal(equalsSign) & behindFirst) != 0;
    if (!isPair)
        return false;
    const int firstEnd = std::countr_zero(behindFirst);
    const int secondEnd = std::countr_zero(behindSecond);
    first = {at_, static_cast<std::size_t>(firstEnd)};
    second = {at_ + firstEnd + 1, static_cast<std::size_t>(secondEnd - firstEnd - 1)};
    at_ += secondEnd + 1;
    return true;
#else
    return false;
#endif
}

} // namespace vek
