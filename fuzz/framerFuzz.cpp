// A line's bytes, cut at every place that the input says: the framer makes of them what it makes of all at once.
#include "tests/support/framing.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    const auto told = vek::test::framed(bytes, [size] { return size; });
    std::size_t place = 0;
    const auto anywhere = [&] { return std::size_t{1} + data[(place++ * 7) % size] % 50; };
    if (vek::test::framed(bytes, [] { return 1; }) != told || vek::test::framed(bytes, anywhere) != told)
        __builtin_trap();
    return 0;
}
