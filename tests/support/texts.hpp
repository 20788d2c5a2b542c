// Texts for the tests of the inspection core: the samples, and damaged ones made from them.
#pragma once

#include "tests/support/messages.hpp"
#include "tests/support/model/bodyMutator.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vek::test {

/// Calls `visit` with every sample, and with `count` texts of which half have a changed body under a right length and
/// half are changed anywhere behind their "@@".
template <class Visit>
void forEachText(int count, Visit visit) {
    std::vector<std::string> corpus;
    for (const sample_t &sample : samples()) {
        corpus.push_back(sample.text);
        visit(sample.text);
        visit(sample.text + std::string(3, '\0')); // one of them belongs to the message
    }
    visit(message(4161, "{[NUM_OF_UNITS={NUM_OF_UNITS=3;};}")); // a key that looks like an element
    model::bodyMutator_t mutator(11, corpus);
    for (int i = 0; i < count; ++i) {
        const sample_t &sample = samples()[mutator.below(samples().size())];
        if (sample.body.size() > 4000 && mutator.below(8) > 0)
            continue;
        if (mutator.below(2) == 0)
            visit(message(sample.id, mutator.mutated(sample.body)));
        else
            visit("@@" + mutator.mutated(sample.text.substr(2)));
    }
}

} // namespace vek::test
