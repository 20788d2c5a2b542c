// The library beside the literal model, on samples and on damaged and hostile texts of every message.
#include "tests/support/messages.hpp"
#include "tests/support/model/bodyMutator.hpp"
#include "tests/support/model/literalModel.hpp"
#include "vek/api/private/headerNumbers.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

using namespace vek;
using namespace vek::test;

const model::literalModel_t &theModel() {
    static const model::literalModel_t one;
    return one;
}

// The shortest text found that still fails: pieces of falling size are left out while the failure stays.
std::string minimised(std::string text, const std::function<bool(const std::string &)> &fails) {
    for (std::size_t piece = text.size() / 2; piece > 0; piece /= 2)
        for (std::size_t at = 0; at + piece <= text.size();) {
            std::string shorter = text;
            shorter.erase(at, piece);
            if (fails(shorter))
                text = shorter;
            else
                at += piece;
        }
    return text;
}

// Every message with a body: its converted bodies are what the model says, and come back unchanged.
class Messages : public testing::TestWithParam<std::int32_t> {
protected:
    const std::int32_t id = GetParam();

    // Numbers that are infinite are not read back, nor are texts of 100,000 characters and more.
    bool isGood(const std::string &body) const {
        const std::string once = converted(id, body);
        return once == theModel().convertedBody(id, body) &&
               (once.size() >= 99900 || once.find("inf") != std::string::npos || converted(id, once) == once);
    }

    void expectGood(const std::string &body) const {
        if (isGood(body))
            return;
        const std::string least = minimised(body, [this](const std::string &shorter) { return !isGood(shorter); });
        const std::string once = converted(id, least);
        FAIL() << "\n    body " << shown(least) << "\n   model " << shown(theModel().convertedBody(id, least))
               << "\n library " << shown(once) << "\n   twice " << shown(converted(id, once));
    }
};

TEST_P(Messages, ConvertAsTheModelDoesWhateverTheBody) {
    std::vector<std::string> corpus;
    for (const sample_t &sample : samples())
        corpus.push_back(sample.body);
    model::bodyMutator_t mutator(static_cast<std::uint64_t>(id), corpus);
    for (const std::string &body : corpus) // of all messages
        expectGood(body);
    const std::string &own = sampleOf(id).body;
    std::string previous = own;
    for (int i = 0; i < rounds(5000) && !HasFatalFailure(); ++i) {
        previous = mutator.mutated(mutator.below(4) > 0 || previous.size() > 10000 ? own : previous);
        expectGood(previous);
    }
}

INSTANTIATE_TEST_SUITE_P(All, Messages, testing::ValuesIn(bodyIds()), testing::PrintToStringParamName());

TEST(Model, AgreesAboutWholeTexts) {
    std::vector<std::string> corpus;
    for (const sample_t &sample : samples())
        corpus.push_back(sample.text);
    model::bodyMutator_t mutator(1, corpus);
    headerNumbers = headerNumbers_t();
    model::header_t header;
    testing::internal::CaptureStdout(); // the lines about ids that no call takes
    const std::string numbers[] = {"-1", "0", "2147483647", "-2147483648", "99999999999", "+5", "-", "x", "", " 3"};
    for (int i = 0; i < rounds(40000); ++i) {
        const std::string &sample = corpus[mutator.below(corpus.size())];
        const auto number = [&] { return numbers[mutator.below(std::size(numbers))] + ' '; };
        std::string text = sample.substr(sample.find('{'));
        const std::string id = mutator.below(8) > 0 ? sample.substr(2, 5) : number();
        const std::string tail = number() + number() + text;
        // Its length is right, most of the time; what it is damaged by later makes it wrong, most of the time.
        const std::size_t length = 2 + id.size() + 6 + tail.size() + (mutator.below(8) > 0 ? 1 : 0);
        char field[32];
        std::snprintf(field, sizeof field, "%5zu ", length);
        text = "@@" + id + field + tail;
        if (mutator.below(4) == 0)
            text = mutator.mutated(text);
        std::int32_t modelId = 4118;
        const std::string expected = theModel().converted(text, modelId, header);
        const structure_t structure(text.c_str(), 4118);
        const std::string actual = structure.address != nullptr ? written(structure.id, structure.address) : "";
        EXPECT_EQ(structure.id, modelId) << shown(text);
        EXPECT_EQ(actual, expected) << shown(text);
        if (HasFailure())
            break;
    }
    testing::internal::GetCapturedStdout();
}

} // namespace
