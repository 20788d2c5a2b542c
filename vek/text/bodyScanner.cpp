#include "vek/text/bodyScanner.hpp"

namespace vek {

bool bodyScanner_t::next(textPair_t &pair) {
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
