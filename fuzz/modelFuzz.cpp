// Any body converts as the literal model says.
#include "fuzz/fuzzInput.hpp"
#include "model/literalModel.hpp"

using namespace vek::test;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const model::literalModel_t model;
    const fuzzInput_t input = fuzzInput(data, size);
    const std::string expected = model.convertedBody(input.id, input.body);
    if (const std::string actual = converted(input.id, input.body); actual != expected)
        fail(input, expected, actual);
    return 0;
}
