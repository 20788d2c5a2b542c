// What a string_t costs beside the bare operations under it: appending beside the least object that grows by its
// rule, copying beside one increment, making one from a token beside an allocation and a copy.

#include "vek/vek_std/std_sys/vek_string.hpp"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>

#ifdef __GLIBC__
#    include <malloc.h>
#endif

namespace {

using vek::string_t;

constexpr std::size_t appendedCharacters = 1'000'000;
constexpr std::size_t growthStep = 64;

/// Argument 0: the heap keeps what was freed, so that growing moves nothing and asks the system for nothing. 1: large
/// blocks come from the system and go back to it, as in a process that makes such a text once.
void chooseHeap(benchmark::State &state) {
#ifdef __GLIBC__
    const bool isFresh = state.range(0) != 0;
    mallopt(M_MMAP_THRESHOLD, isFresh ? 128 * 1024 : 32 * 1024 * 1024);
    mallopt(M_TRIM_THRESHOLD, isFresh ? 128 * 1024 : 64 * 1024 * 1024);
    state.SetLabel(isFresh ? "fresh heap" : "warm heap");
#else
    state.SetLabel("heap of the system");
#endif
}

/// The least that appends: pointer, length and capacity, grown as string_t grows, with nothing shared and nothing set.
struct leastString_t {
    char *data = nullptr;
    std::uint32_t length = 0;
    std::uint32_t capacity = 0;

    leastString_t() = default;
    leastString_t(const leastString_t &) = delete;
    leastString_t &operator=(const leastString_t &) = delete;
    ~leastString_t() { std::free(data); }

    void append(const char *text, std::size_t n) {
        if (n > capacity - length) {
            capacity = static_cast<std::uint32_t>((length + n) / growthStep * growthStep + growthStep - 1);
            data = static_cast<char *>(std::realloc(data, capacity + std::size_t{1}));
        }
        char *end = data + length;
        length += static_cast<std::uint32_t>(n);
        std::memcpy(end, text, n);
        end[n] = '\0';
    }
};

/// Each character is appended to an object in memory, which others may look at between any two.
template <class String>
void appendOneByOne(benchmark::State &state) {
    chooseHeap(state);
    for (auto _ : state) {
        String text;
        for (std::size_t i = 0; i < appendedCharacters; ++i) {
            benchmark::DoNotOptimize(&text);
            text.append("x", 1);
            benchmark::ClobberMemory();
        }
    }
}
BENCHMARK(appendOneByOne<leastString_t>)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(appendOneByOne<string_t>)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(appendOneByOne<std::string>)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

/// The same with C strings, whose length is found out: one that the compiler knows, and short ones that it doesn't.
template <class String>
void appendLiterals(benchmark::State &state) {
    chooseHeap(state);
    for (auto _ : state) {
        String text;
        for (std::size_t i = 0; i < appendedCharacters; ++i) {
            benchmark::DoNotOptimize(&text);
            text.append("x");
            benchmark::ClobberMemory();
        }
    }
}
BENCHMARK(appendLiterals<string_t>)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(appendLiterals<std::string>)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

template <class String>
void appendTexts(benchmark::State &state) {
    chooseHeap(state);
    const char *const texts[] = {"a", "set", "of", "short texts,", "one by one, "}; // of 6 characters on average
    for (auto _ : state) {
        String text;
        for (std::size_t i = 0; i < appendedCharacters / 6; ++i) {
            const char *appended = texts[i % std::size(texts)];
            benchmark::DoNotOptimize(appended);
            text.append(appended);
            benchmark::ClobberMemory();
        }
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(appendTexts<string_t>)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(appendTexts<std::string>)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void bareIncrementAndDecrement(benchmark::State &state) {
    auto *count = new std::uint32_t(1);
    for (auto _ : state) {
        ++*count;
        benchmark::DoNotOptimize(count);
        benchmark::ClobberMemory();
        --*count;
        benchmark::ClobberMemory();
    }
    delete count;
}
BENCHMARK(bareIncrementAndDecrement);

void copyAndDropHandle(benchmark::State &state) {
    const string_t source("a text to share");
    for (auto _ : state) {
        string_t copy(source);
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(copyAndDropHandle);

constexpr char token[] = "Cassette number one;rest of the message";

void bareAllocationAndCopy(benchmark::State &state) {
    const auto length = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        auto *block = static_cast<char *>(std::malloc(sizeof(vek::stringRep_t)));
        std::memcpy(block, token, length);
        benchmark::DoNotOptimize(block);
        std::free(block);
    }
}
BENCHMARK(bareAllocationAndCopy)->Arg(19);

void fromToken(benchmark::State &state) {
    const auto length = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        string_t text(token, length);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(fromToken)->Arg(0)->Arg(19);

} // namespace
