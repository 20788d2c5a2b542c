// Any text converts without a fault, back and forth, and what comes out is a fixed point of a second conversion.
#include "fuzz/fuzzInput.hpp"

using namespace vek::test;

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    return std::freopen("/dev/null", "w", stdout) == nullptr; // the lines about ids that no call takes
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const fuzzInput_t input = fuzzInput(data, size);
    if (const structure_t structure(input.text); structure.address != nullptr)
        written(structure.id, structure.address);

    const std::string once = converted(input.id, input.body);
    if (once.size() >= 99900 || once.find("inf") != std::string::npos)
        return 0; // not to be read back
    if (const std::string twice = converted(input.id, once); twice != once)
        fail(input, once, twice);
    return 0;
}
