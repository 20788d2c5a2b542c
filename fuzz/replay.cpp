// Runs a fuzzer's function where libFuzzer is not: on the sample messages, and on messages made of them.
//
//   NAMEReplay COUNT
#include "tests/support/messages.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

extern "C" {
std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);
std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned seed);
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
}

namespace {
std::minstd_rand random(1);
}

// A byte more, less or other.
std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize) {
    const std::size_t at = size > 0 ? random() % size : 0;
    const std::size_t kind = random() % 3;
    if (kind == 0 && size > 1) {
        std::memmove(data + at, data + at + 1, size - at - 1);
        return size - 1;
    }
    if (kind == 1 && size < maxSize) {
        std::memmove(data + at + 1, data + at, size - at);
        ++size;
    }
    if (size > 0)
        data[at] = static_cast<std::uint8_t>(random());
    return size;
}

int main(int argc, char **argv) {
    const long count = argc == 2 ? std::strtol(argv[1], nullptr, 10) : 0;
    if (count <= 0) {
        std::fprintf(stderr, "usage: %s COUNT\n", argv[0]);
        return 2;
    }
#ifdef _WIN32
    const char *const nowhere = "NUL";
#else
    const char *const nowhere = "/dev/null";
#endif
    if (std::freopen(nowhere, "w", stdout) == nullptr) // the lines about ids that no call takes
        return 1;
    constexpr std::size_t room = 8192, shortEnough = 2048;
    std::vector<std::uint8_t> input(room);
    std::size_t size = 0;
    for (long done = 0; done < count; ++done) {
        if (done % 20 == 0 || size > shortEnough) {
            const std::string &sample = vek::test::samples()[random() % vek::test::samples().size()].text;
            size = std::min(sample.size(), room);
            std::copy_n(sample.begin(), size, input.begin());
        } else {
            size = LLVMFuzzerCustomMutator(input.data(), size, room, static_cast<unsigned>(random()));
        }
        LLVMFuzzerTestOneInput(input.data(), size);
    }
    std::fprintf(stderr, "%ld inputs\n", count);
}
