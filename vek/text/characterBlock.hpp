// characterBlock_t: sixteen characters looked at in one go, where the processor can (SSE2).
//
// Code that uses it is written twice on purpose: by blocks, and character by character for what is left and for other
// processors.
#pragma once

#include "vek/vek_std/std_sys/vek_cpp20.hpp"

#ifdef __SSE2__

#    include <emmintrin.h>

namespace vek {

class characterBlock_t {
public:
    static constexpr int size = 16;

    /// Reads 16 characters, all of which must belong to the caller.
    explicit characterBlock_t(const char *at) : block_(_mm_loadu_si128(reinterpret_cast<const __m128i *>(at))) {}

    /// A bit for each character, from the lowest: is it `c`?
    unsigned equal(char c) const { return mask(equalBytes(c)); }

    /// A bit for each character, from the lowest: is it one of these, both of ASCII, or between them?
    unsigned between(char first, char last) const {
        return mask(_mm_and_si128(_mm_cmpgt_epi8(block_, _mm_set1_epi8(static_cast<char>(first - 1))),
                                  _mm_cmplt_epi8(block_, _mm_set1_epi8(static_cast<char>(last + 1)))));
    }

    /// A bit for each character, from the lowest: is it one of these?
    template <class... Characters>
    unsigned equalAny(Characters... characters) const {
        __m128i any = _mm_setzero_si128();
        ((any = _mm_or_si128(any, equalBytes(characters))), ...);
        return mask(any);
    }

    /// A bit for each character, from the lowest: is it a separator or a brace? (";" and "{", "=" and "}"
    /// differ in the same one bit.)
    unsigned structural() const { return mask(structuralBytes()); }
    /// The same for `c` too.
    unsigned structuralOr(char c) const { return mask(_mm_or_si128(structuralBytes(), equalBytes(c))); }

    /// How many bits there are. (Where the processor may lack the instruction, std::popcount is a call.)
    static int count(unsigned mask) {
        mask -= mask >> 1 & 0x5555;
        mask = (mask & 0x3333) + (mask >> 2 & 0x3333);
        mask = (mask + (mask >> 4)) & 0x0F0F;
        return static_cast<int>((mask + (mask >> 8)) & 0x1F);
    }

    void copyTo(char *to) const { _mm_storeu_si128(reinterpret_cast<__m128i *>(to), block_); }

private:
    __m128i structuralBytes() const {
        const __m128i folded = _mm_or_si128(block_, _mm_set1_epi8('{' ^ ';'));
        return _mm_or_si128(
            _mm_or_si128(_mm_cmpeq_epi8(folded, _mm_set1_epi8('{')), _mm_cmpeq_epi8(folded, _mm_set1_epi8('}'))),
            equalBytes(','));
    }
    __m128i equalBytes(char c) const { return _mm_cmpeq_epi8(block_, _mm_set1_epi8(c)); }
    static unsigned mask(__m128i bytes) { return static_cast<unsigned>(_mm_movemask_epi8(bytes)); }

    __m128i block_;
};

} // namespace vek

#endif
