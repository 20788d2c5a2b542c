// tolerantTokenizer_t: cuts a body (without its outer braces) into tokens and the separators between them.
//
// A token is a braced text with its braces, a quoted text without its quotes, or the characters up to the next
// separator; white space is part of a token like any other character. Tokens are views into the body, nothing is
// copied.
#pragma once

#include "vek/text/characterBlock.hpp"
#include "vek/text/characters.hpp"
#include "vek/vek_std/std_sys/vek_shortRuns.hpp"

#include <bit>
#include <cstddef>
#include <string_view>

namespace vek {

/// A token that isn't there (its data() is null), as opposed to an empty quoted one.
inline constexpr std::string_view noToken{};

class tolerantTokenizer_t {
public:
    explicit tolerantTokenizer_t(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

    bool atEnd() const { return at_ == end_; }

    /// Where the next token or separator stands.
    const char *position() const { return at_; }

    std::string_view rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }

    /// Reads one token. There is none (noToken) at the end, where a separator stands, and at an opening brace without
    /// its closing one; the latter consumes the rest of the text.
    std::string_view token() {
        if (at_ == end_)
            return noToken;
        if (*at_ == openBrace)
            return bracedToken();
        if (*at_ == '"')
            return quotedToken();
        const char *const start = at_;
        at_ = findSeparator(at_, end_);
        return at_ == start ? noToken : std::string_view(start, static_cast<std::size_t>(at_ - start));
    }

    /// Skips the run of separators behind a token and says whether a "=" is among them.
    bool delimiter() {
        bool hasEquals = false;
        const char *at = at_;
        for (; at != end_ && isSeparator(*at); ++at)
            hasEquals |= *at == equalsSign;
        at_ = at;
        return hasEquals;
    }

    /// Reads a plain token and the separators behind it, with a "=" among them, when one block of characters shows all
    /// of that. If it shows also a plain token and the separators behind it, as of "A=1;", these are read too; if not,
    /// `value` is noToken. Otherwise nothing changes.
    bool shortKey(std::string_view &key, std::string_view &value);

    /// Skips plain tokens without a "=" behind them, as far as blocks of characters show that there is none.
    void skipPlainWithoutKeys() {
        if (at_ != end_ && *at_ != openBrace && *at_ != '"')
            skipBlocksWithoutKeys();
    }

    /// Skips `key`, a "=" and the separators behind it if they stand here; otherwise nothing changes. The key must be
    /// a plain token.
    bool skipKey(std::string_view key) {
        if (!isKeyAt(at_, end_, key))
            return false;
        at_ += key.size() + 1;
        delimiter();
        return true;
    }

private:
    static const char *findSeparator(const char *at, const char *end) {
#ifdef __SSE2__
        for (; end - at >= characterBlock_t::size; at += characterBlock_t::size) {
            const unsigned found = characterBlock_t(at).equalAny(equalsSign, semicolon, comma);
            if (found != 0)
                return at + std::countr_zero(found);
        }
#endif
        while (at != end && !isSeparator(*at))
            ++at;
        return at;
    }

    void skipBlocksWithoutKeys();
    std::string_view bracedToken();
    std::string_view quotedToken();

    const char *at_;
    const char *end_;
};

} // namespace vek
