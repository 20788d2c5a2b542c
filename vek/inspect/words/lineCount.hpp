// Counts line ends, and tells where there are none, at the speed of memory where the processor has vectors of bytes.
#pragma once

#include <algorithm>
#include <climits>
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

/// Whether every byte has a larger code than this one.
inline bool isAllBehind(std::string_view text, char code) {
#ifdef __SSE2__
    if (constexpr std::size_t block = 16; text.size() >= block) {
        const auto blockAt = [](const char *at) { return _mm_loadu_si128(reinterpret_cast<const __m128i *>(at)); };
        const char *const last = text.data() + text.size() - block;
        __m128i least = blockAt(last);
        for (const char *at = text.data(); at < last; at += block)
            least = _mm_min_epu8(least, blockAt(at));
        return _mm_movemask_epi8(_mm_cmpeq_epi8(least, _mm_min_epu8(least, _mm_set1_epi8(code)))) == 0;
    }
#endif
    unsigned char least = UCHAR_MAX;
    for (const char c : text)
        least = std::min(least, static_cast<unsigned char>(c));
    return least > static_cast<unsigned char>(code);
}

} // namespace vek::inspect
