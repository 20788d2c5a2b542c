// Writes down what the four calls make of many inputs, for comparing the library's builds: a build for another target
// must give the same file, byte for byte.
//
//   conformance OUTPUT_FILE [TEXTS_OF_EACH_ID]
#include "tests/support/messages.hpp"
#include "tests/support/model/bodyMutator.hpp"

#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace vek::test;

// One text, or a null one with the id that selects its structure.
void report(std::ostream &out, const char *text, std::int32_t id) {
    const structure_t structure(text, id);
    std::int32_t result = 1;
    out << structure.result << ' ' << structure.id << ' '
        << (structure.address != nullptr ? written(structure.id, structure.address, &result) : "(none)");
    out << ' ' << result << '\n';
}

void reportId(std::ostream &out, std::int32_t id) {
    report(out, nullptr, id);
    std::int32_t result = 1;
    out << written(id, nullptr, &result);
    void *none = nullptr;
    out << ' ' << result << ' ' << vekParamsDeleteStruct(id, &none) << '\n';
}

void reportTexts(std::ostream &out, const sample_t &sample, const std::vector<std::string> &corpus, int count) {
    model::bodyMutator_t mutator(static_cast<std::uint64_t>(sample.id), corpus);
    report(out, sample.text.c_str(), 0);
    for (int i = 0; i < count; ++i) {
        std::string body = mutator.below(3) > 0 ? mutator.withOtherReals(sample.body) : sample.body;
        if (mutator.below(3) > 0)
            body = mutator.mutated(body);
        report(out, message(sample.id, body).c_str(), 0);
    }
}

} // namespace

int main(int argc, char **argv) {
    std::ofstream out(argc > 1 ? argv[1] : "", std::ios::binary);
    if (!out) {
        std::cerr << "usage: conformance OUTPUT_FILE [TEXTS_OF_EACH_ID]\n";
        return 2;
    }
    const int count = argc > 2 ? std::stoi(argv[2]) : 600;
    for (std::int32_t id = 4090; id <= 4210; ++id)
        reportId(out, id);
    std::vector<std::string> corpus;
    for (const sample_t &sample : samples())
        corpus.push_back(sample.body);
    for (const sample_t &sample : samples())
        reportTexts(out, sample, corpus, count);
    std::cout << samples().size() * static_cast<std::size_t>(1 + count) << " texts\n";
    return out.flush() ? 0 : 1;
}
