// Any body converts as the literal model says.
#include "fuzz/fuzzInput.hpp"
#include "tests/support/model/literalModel.hpp"

using namespace vek::test;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const model::literalModel_t model;
    const input_t input = inputOf(textOf(data, size).c_str());
    if (isOneTooMany(input))
        return 0;
    expectSame(std::to_string(input.id) + ' ' + input.body, model.convertedBody(input.id, input.body),
               converted(input.id, input.body));
    return 0;
}
