// Counts line ends, at the speed of memory where the processor has vectors of bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#ifdef __SSE2__
#    include <emmintrin.h>
#endif

namespace vek::inspect {

inline std::uint64_t countLines(std::string_view text) {
    const char *at = text.data();
    const char *const end = at + text.size();
    std::uint64_t count = 0;
#ifdef __SSE2__
    constexpr std::ptrdiff_t block = 16, most = 255; // a byte counts no further
    const __m128i lineEnd = _mm_set1_epi8('\n');
    while (end - at >= block) {
        __m128i counts = _mm_setzero_si128();
        for (const char *const stop = at + std::min<std::ptrdiff_t>((end - at) / block, most) * block; at != stop;
             at += block)
            counts =
                _mm_sub_epi8(counts, _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i *>(at)), lineEnd));
        const __m128i sums = _mm_sad_epu8(counts, _mm_setzero_si128());
        count += static_cast<std::uint64_t>(_mm_cvtsi128_si32(sums)) +
                 static_cast<std::uint64_t>(_mm_cvtsi128_si32(_mm_srli_si128(sums, 8)));
    }
#endif
    return count + static_cast<std::uint64_t>(std::count(at, end, '\n'));
}

} // namespace vek::inspect
