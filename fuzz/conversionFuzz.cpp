// Any text converts without a fault, and what comes out is a fixed point of a second conversion, with the next sequence
// number.
#include "fuzz/fuzzInput.hpp"
#include "vek/api/envelope.hpp"

using namespace vek::test;

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    return std::freopen("/dev/null", "w", stdout) == nullptr; // the lines about ids that no call takes
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text = textOf(data, size);
    const structure_t structure(text);
    if (structure.address == nullptr)
        return 0;
    std::string once = written(structure.id, structure.address);
    if (once.size() >= vek::longestReadableMessage || once.find("inf") != std::string::npos) // which are not read back
        return 0;
    // Of two zeros that are its bounds, a range keeps the first one's sign.
    if (once.find("-0.000000") != std::string::npos) {
        const structure_t between(once);
        once = written(between.id, between.address);
    }
    const structure_t second(once);
    expectSame(text, bodyOf(once), second.address != nullptr ? writtenBody(second.id, second.address) : "");
    return 0;
}
