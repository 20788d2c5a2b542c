// Any text converts without a fault; any body converts as the literal model says, and what comes out is a fixed point
// of a second conversion.
#include "fuzz/fuzzInput.hpp"
#include "model/literalModel.hpp"

using namespace vek::test;

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    return std::freopen("/dev/null", "w", stdout) == nullptr; // the lines about ids that no call takes
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const model::literalModel_t model;
    const std::string text = std::string(reinterpret_cast<const char *>(data), size).c_str();
    if (const structure_t structure(text); structure.address != nullptr)
        written(structure.id, structure.address);

    const input_t input = inputOf(text);
    const std::string once = converted(input.id, input.body);
    expectSame(input, model.convertedBody(input.id, input.body), once);
    if (once.size() < 99900 && once.find("inf") == std::string::npos) // which are not read back
        expectSame(input, once, converted(input.id, once));
    return 0;
}
