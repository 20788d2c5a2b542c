// What a string_t costs beside the bare operations under it: appending beside the reallocations that its growth rule
// asks for, copying beside one increment, making one from a token beside an allocation and a copy.

#include "vek/vek_std/std_sys/vek_string.hpp"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
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

/// Goes through the buffers of a text of a million characters; `fill` stores the characters of each new step.
template <class Fill>
void growingTo(Fill fill) {
    char *buffer = nullptr;
    for (std::size_t length = 63; length < appendedCharacters; length += growthStep) {
        buffer = static_cast<char *>(std::realloc(buffer, length + growthStep + 1));
        benchmark::DoNotOptimize(buffer);
        fill(buffer + length);
    }
    std::free(buffer);
}

void bareReallocations(benchmark::State &state) {
    chooseHeap(state);
    for (auto _ : state)
        growingTo([](char *) {});
}
BENCHMARK(bareReallocations)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

/// The least that a string which keeps its length and terminator does for every character, without any check.
void bareReallocationsAndCharacters(benchmark::State &state) {
    chooseHeap(state);
    for (auto _ : state) {
        volatile std::uint32_t length = 63;
        growingTo([&](char *place) {
            for (std::size_t i = 0; i < growthStep; ++i) {
                volatile char *end = place + i;
                end[0] = 'x';
                end[1] = '\0';
                length = length + 1;
            }
        });
    }
}
BENCHMARK(bareReallocationsAndCharacters)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

template <class String>
void appendOneByOne(benchmark::State &state) {
    chooseHeap(state);
    for (auto _ : state) {
        String text;
        for (std::size_t i = 0; i < appendedCharacters; ++i)
            text.append("x", 1);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(appendOneByOne<string_t>)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(appendOneByOne<std::string>)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

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
