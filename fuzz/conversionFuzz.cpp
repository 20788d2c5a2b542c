// Any text converts without a fault; any body converts as the literal model says, and what comes out is a fixed point
// of a second conversion.
#include "model/literalModel.hpp"
#include "support/messages.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace vek::test;

struct input_t {
    std::int32_t id;
    std::string body;
};

// A whole text gives its id and what lies between its first brace and "!!", so that changes to a body don't make its
// length wrong; any other input is a body as it is, of the message that its first character selects.
input_t inputOf(const std::string &text) {
    static const std::vector<std::int32_t> ids = bodyIds();
    if (!text.starts_with("@@"))
        return {ids[static_cast<unsigned char>(text[0]) % ids.size()], text};
    const auto id = static_cast<std::int32_t>(std::strtol(text.c_str() + 2, nullptr, 10));
    std::string body = text.substr(std::min(text.find('{'), text.size()));
    if (body.ends_with("!!"))
        body.resize(body.size() - 2);
    const bool isKnown = std::find(ids.begin(), ids.end(), id) != ids.end();
    return {isKnown ? id : ids[static_cast<std::uint32_t>(id) % ids.size()], body};
}

void expectSame(const input_t &input, const std::string &expected, const std::string &actual) {
    if (actual == expected)
        return;
    std::fprintf(stderr, "    id %d\n  body %s\nshould %s\n    is %s\n", input.id, shown(input.body).c_str(),
                 shown(expected).c_str(), shown(actual).c_str());
    std::abort();
}

} // namespace

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
