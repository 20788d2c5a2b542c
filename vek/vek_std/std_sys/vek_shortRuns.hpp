// Copying and comparing short runs of characters, as keys, names and most texts are: by whole words, which may overlap,
// in place of a call. Pure functions, safe for concurrent use.
#pragma once

#include "vek/vek_std/std_sys/vek_cpp20.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vek {

/// Copies `count` characters between places that don't overlap.
inline void copyShort(const char *from, std::size_t count, char *to) {
    const auto copy = [=]<class Word>(Word word, std::size_t at) {
        std::memcpy(&word, from + at, sizeof word);
        std::memcpy(to + at, &word, sizeof word);
    };
    struct pair_t {
        std::uint64_t words[2];
    };
    if (count > 16) {
        for (std::size_t at = 0; at + 16 < count; at += 16)
            copy(pair_t(), at);
        copy(pair_t(), count - 16);
    } else if (count >= 8) {
        copy(std::uint64_t(), 0);
        copy(std::uint64_t(), count - 8);
    } else if (count >= 4) {
        copy(std::uint32_t(), 0);
        copy(std::uint32_t(), count - 4);
    } else if (count > 0) {
        to[0] = from[0];
        to[count / 2] = from[count / 2];
        to[count - 1] = from[count - 1];
    }
}

/// Whether two runs of `count` characters are the same.
inline bool areSame(const char *one, const char *other, std::size_t count) {
    const auto differ = [=]<class Word>(Word inOne, std::size_t at) {
        Word inOther = 0;
        std::memcpy(&inOne, one + at, sizeof inOne);
        std::memcpy(&inOther, other + at, sizeof inOther);
        return inOne ^ inOther;
    };
    if (count >= 8) {
        for (std::size_t at = 0; at + 8 < count; at += 8)
            if (differ(std::uint64_t(), at) != 0)
                return false;
        return differ(std::uint64_t(), count - 8) == 0;
    }
    if (count >= 4)
        return (differ(std::uint32_t(), 0) | differ(std::uint32_t(), count - 4)) == 0;
    while (count > 0 && one[count - 1] == other[count - 1])
        --count;
    return count == 0;
}

} // namespace vek
