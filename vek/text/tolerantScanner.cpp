#include "vek/text/tolerantScanner.hpp"

namespace vek {

// Only the run of separators behind the first token decides whether that is a key; "=" may stand anywhere in the run.
// In "A=b=c" the second "=" just ends b, and c is a pair of its own. Separators in front of a token belong to no pair,
// but for a "=" among them: then the token is a value without a key. Each turn consumes a token or a separator, so the
// walk ends on any text.
bool tolerantScanner_t::next(textPair_t &pair) {
    if (keyed_ && tokenizer_.shortPair(pair.key, pair.value))
        return true;
    while (!tokenizer_.atEnd()) {
        pair.key = noToken;
        pair.value = tokenizer_.token();
        if (tokenizer_.delimiter()) {
            pair.key = pair.value;
            pair.value = tokenizer_.token();
            tokenizer_.delimiter();
            keyed_ = true;
        }
        if (pair.key.data() != nullptr || pair.value.data() != nullptr)
            return true;
    }
    return false;
}

} // namespace vek
