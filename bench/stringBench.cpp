// What a string_t costs beside the bare operations under it: appending beside the reallocations that its growth rule
// asks for, copying beside one increment.

#include "vek_std/std_sys/vek_string.hpp"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

using vek::string_t;

constexpr std::size_t appendedCharacters = 1'000'000;

/// The buffers that a text of the million characters goes through, smallest first, and nothing else.
void bareReallocations(benchmark::State &state) {
    for (auto _ : state) {
        char *buffer = nullptr;
        for (std::size_t capacity = 127; capacity < appendedCharacters + 64; capacity += 64) {
            buffer = static_cast<char *>(std::realloc(buffer, capacity + 1));
            benchmark::DoNotOptimize(buffer);
        }
        std::free(buffer);
    }
}
BENCHMARK(bareReallocations)->Unit(benchmark::kMicrosecond);

/// The same, with the characters stored as they come.
void bareReallocationsAndCharacters(benchmark::State &state) {
    for (auto _ : state) {
        char *buffer = nullptr;
        for (std::size_t capacity = 127; capacity < appendedCharacters + 64; capacity += 64) {
            buffer = static_cast<char *>(std::realloc(buffer, capacity + 1));
            for (std::size_t i = capacity - 64; i < capacity; ++i) {
                buffer[i] = 'x';
                benchmark::ClobberMemory();
            }
        }
        std::free(buffer);
    }
}
BENCHMARK(bareReallocationsAndCharacters)->Unit(benchmark::kMicrosecond);

void appendOneByOne(benchmark::State &state) {
    for (auto _ : state) {
        string_t text;
        for (std::size_t i = 0; i < appendedCharacters; ++i)
            text.append("x", 1);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(appendOneByOne)->Unit(benchmark::kMicrosecond);

} // namespace
