#include "vek/text/tolerantScanner.hpp"

namespace vek {

// Only the run of separators behind the first token decides whether that is a key; "=" may stand anywhere in the run.
// In "A=b=c" the second "=" just ends b, and c is a pair of its own. Separators in front of a token belong to no pair,
// but for a "=" among them: then the token is a value without a key. Each turn consumes a token or a separator, so the
// walk ends on any text.
//
// A text may have little else than tokens that belong to no pair with a key.
bool tolerantScanner_t::read(textPair_t &pair, bool isWithKey) {
    bool isBehindKey = (keyed_ || isWithKey) && tokenizer_.shortKey(pair.key, pair.value);
    keyed_ |= isBehindKey;
    if (isBehindKey && pair.value.data() != nullptr)
        return true;
    while (isBehindKey || !tokenizer_.atEnd()) {
        const std::string_view token = tokenizer_.token();
        const bool isEquated = tokenizer_.delimiter();
        if (isEquated && !isBehindKey) {
            pair.key = token;
            keyed_ = isBehindKey = true;
            continue;
        }
        if (!isBehindKey) {
            pair.key = noToken;
            if (isWithKey) {
                tokenizer_.skipPlainWithoutKeys();
                continue;
            }
        }
        pair.value = token;
        if (pair.key.data() != nullptr || (token.data() != nullptr && !isWithKey))
            return true;
        isBehindKey = false;
    }
    return false;
}

} // namespace vek
