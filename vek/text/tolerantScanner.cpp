#include "vek/text/tolerantScanner.hpp"

namespace vek {

// Only the run of separators behind the first token decides whether that is a key; "=" may stand anywhere in the run.
// In "A=b=c" the second "=" just ends b, and c is a pair of its own. Separators in front of a token belong to no pair,
// but for a "=" among them: then the token is a value without a key. Each turn consumes a token or a separator, so the
// walk ends on any text.
//
// A text may have little else than tokens that belong to no pair with a key.
bool tolerantScanner_t::read(textPair_t &pair, bool isWithKey) {
    if ((keyed_ || isWithKey) && tokenizer_.shortPair(pair.key, pair.value))
        return keyed_ = true;
    while (!tokenizer_.atEnd()) {
        pair.key = noToken;
        pair.value = tokenizer_.token();
        if (tokenizer_.delimiter()) {
            pair.key = pair.value;
            pair.value = tokenizer_.token();
            tokenizer_.delimiter();
            keyed_ = true;
        } else if (isWithKey) {
            continue;
        }
        if (pair.key.data() != nullptr || (pair.value.data() != nullptr && !isWithKey))
            return true;
    }
    return false;
}

} // namespace vek
