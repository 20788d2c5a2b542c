// Writes down what the four calls make of many inputs, for comparing the library's builds: a build for another target
// must give the same file, byte for byte.
//
//   conformance OUTPUT_FILE
#include "model/bodyMutator.hpp"
#include "support/messages.hpp"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace vek::test;

constexpr int textsOfEachId = 600;

struct report_t {
    FILE *file;
    int texts = 0;

    void line(const std::string &text) { std::fprintf(file, "%s\n", text.c_str()); }
};

std::string textOf(std::int32_t id, void *structure, std::int32_t &result) {
    char *text = nullptr;
    result = vekValToStr(id, structure, &text);
    std::string copy = text != nullptr ? text : "(null)";
    vekParamsDelete(text);
    return copy;
}

// One text, or a null one with the id that selects its structure.
void report(report_t &out, const char *text, std::int32_t id) {
    const structure_t structure(text, id);
    std::int32_t written = 1;
    out.line(std::to_string(structure.result) + ' ' + std::to_string(structure.id) + ' ' +
             (structure.address != nullptr ? textOf(structure.id, structure.address, written) : "(none)") + ' ' +
             std::to_string(written));
    out.texts += text != nullptr ? 1 : 0;
}

void reportId(report_t &out, std::int32_t id) {
    report(out, nullptr, id);
    std::int32_t written = 1;
    const std::string empty = textOf(id, nullptr, written);
    void *none = nullptr;
    const std::int32_t released = vekParamsDeleteStruct(id, &none);
    out.line(empty + ' ' + std::to_string(written) + ' ' + std::to_string(released));
}

// A real as hosts and people write them: 1 to 20 digits, with or without a point and an exponent.
std::string anyReal(model::bodyMutator_t &random) {
    std::string real = random.below(3) == 0 ? "-" : "";
    const std::size_t digits = random.below(3) == 0 ? 1 + random.below(20) : 15 + random.below(6);
    const std::size_t point = random.below(2 * digits);
    for (std::size_t i = 0; i < digits; ++i) {
        if (i == point)
            real += '.';
        real += static_cast<char>('0' + random.below(10));
    }
    if (random.below(2) == 0)
        real.append("e").append(std::to_string(static_cast<int>(random.below(46)) - 23));
    if (random.below(50) == 0)
        real.append("e").append(std::to_string(static_cast<int>(random.below(700)) - 350));
    return real;
}

// Every number with decimals becomes another one.
std::string withOtherReals(std::string body, model::bodyMutator_t &random) {
    for (std::size_t point = body.find('.'); point != std::string::npos; point = body.find('.', point)) {
        const std::size_t start = body.find_last_not_of("0123456789-", point - 1) + 1;
        const std::size_t end = body.find_first_not_of("0123456789", point + 1);
        const std::string real = anyReal(random);
        if (start == point || end == std::string::npos) {
            ++point;
            continue;
        }
        body.replace(start, end - start, real);
        point = start + real.size();
    }
    return body;
}

void reportTexts(report_t &out, const sample_t &sample, const std::vector<std::string> &corpus) {
    model::bodyMutator_t mutator(static_cast<std::uint64_t>(sample.id), corpus);
    report(out, sample.text.c_str(), 0);
    for (int i = 0; i < textsOfEachId; ++i) {
        std::string body = mutator.below(3) > 0 ? withOtherReals(sample.body, mutator) : sample.body;
        if (mutator.below(3) > 0)
            body = mutator.mutated(body);
        report(out, message(sample.id, body).c_str(), 0);
    }
}

} // namespace

int main(int argc, char **argv) {
    report_t out{argc == 2 ? std::fopen(argv[1], "wb") : nullptr};
    if (out.file == nullptr) {
        std::fprintf(stderr, "usage: conformance OUTPUT_FILE\n");
        return 2;
    }
    for (std::int32_t id = 4090; id <= 4210; ++id)
        reportId(out, id);
    std::vector<std::string> corpus;
    for (const sample_t &sample : samples())
        corpus.push_back(sample.body);
    for (const sample_t &sample : samples())
        reportTexts(out, sample, corpus);
    std::printf("%d texts\n", out.texts);
    return std::fclose(out.file) == 0 ? 0 : 1;
}
