// Writes what the packages for other languages are tested with, a line of JSON a case: the samples, messages with other
// values, damaged ones, and the defaults. "source" is a message; beside it stand its numbers, its problems and its
// values as a host reads them, and "again" is the text that the four calls make of it, with the next sequence number:
// null where that is something no package has to write (reals beyond all bounds, counts that are not their lists',
// 16-bit texts without an end).
#include "tests/support/messages.hpp"
#include "tests/support/model/bodyMutator.hpp"
#include "tests/support/structureValues.hpp"
#include "vek/api/private/catalogue.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/forms/forms.hpp"

#include <algorithm>
#include <cstdio>
#include <random>
#include <set>
#include <string>

namespace {

using namespace vek;
using namespace vek::inspect;
using namespace vek::test;

constexpr std::size_t generatedCount = 2000, damagedCount = 500;

// From here on the header numbers are those of a process that has read nothing.
void forgetNumbers() {
    structureOf(VEK_MSG_DEVICE_STATE, "{DEVICE_STATE=0;}");
    const structure_t forgotten(message(VEK_MSG_DEVICE_STATE, "{DEVICE_STATE=0;}", -1, 0));
}

// A 16-bit text that ends without its 0, say.
bool hasUnsoundText(const tree_t &tree) {
    return std::any_of(tree.nodes().begin(), tree.nodes().end(), [&tree](const node_t &node) {
        return node.isBody && node.valueKind() == fieldKind_t::text16 && !wideText(tree, node);
    });
}

void writeCase(std::string_view group, const std::string &source) {
    forgetNumbers();
    const structure_t structure(source);
    const envelopeNumbers_t numbers = readEnvelope(source).numbersForHost({});
    const std::string again = written(structure.id, structure.address);
    const std::string read = message(structure.id, bodyOf(again), numbers.echoTag, numbers.sequenceNumber);
    const tree_t tree(read), next(again);
    std::string nextJson, out;
    appendJson(nextJson, next);
    jsonAppender_t json(out);
    json.open('{');
    json.member("group", group);
    json.member("source", source);
    appendJsonMembers(json, tree, {.findings = check(tree_t(source))});
    json.name("again");
    if (const formResult_t writable = readJson(nextJson);
        isClean(next) && !hasUnsoundText(next) && writable.text == again)
        json.value(again);
    else
        json.ready("null");
    json.close('}');
    std::puts(out.c_str());
}

void writeDefaults(std::int32_t id) {
    forgetNumbers();
    const structure_t structure = defaultsOf(id);
    std::string out;
    jsonAppender_t json(out);
    json.open('{');
    json.member("group", "default");
    json.member("id", id);
    json.member("again", written(id, structure.address));
    json.close('}');
    std::puts(out.c_str());
}

void writeGenerated() {
    std::minstd_rand random(1);
    std::set<std::string> all;
    while (all.size() < generatedCount)
        for (const std::int32_t id : bodyIds()) {
            const structure_t structure(sampleOf(id).text);
            structureValues_t values(visitOf(id), structure.address);
            for (auto changes = random() % 4 + 1; changes > 0; --changes)
                values.changeOne(random);
            const std::string text = written(id, structure.address);
            if (all.size() < generatedCount && isClean(tree_t(text)) && all.insert(text).second)
                writeCase("generated", text);
        }
}

std::string damaged(const sample_t &sample, model::bodyMutator_t &mutator) {
    std::string text = message(sample.id, mutator.mutated(sample.body));
    if (const std::size_t chance = mutator.below(4); chance == 0)
        text.erase(mutator.below(text.size() - 2) + 2); // cut off
    else if (chance == 1)
        text[mutator.below(text.size())] = static_cast<char>(mutator.below(255) + 1);
    return text;
}

void writeDamaged() {
    std::vector<std::string> bodies;
    for (const sample_t &sample : samples())
        bodies.push_back(sample.body);
    model::bodyMutator_t mutator(1, bodies);
    for (std::size_t count = 0; count < damagedCount;) {
        const std::string text = damaged(samples()[mutator.below(samples().size())], mutator);
        const std::int32_t id = readEnvelopeHead(text).id.valueOr(0);
        if (!text.starts_with("@@") || visitOf(id) == nullptr || isClean(tree_t(text)))
            continue;
        writeCase("damaged", text);
        ++count;
    }
}

} // namespace

int main() {
    for (const sample_t &sample : samples())
        writeCase("sample", sample.text);
    for (const char *name : {"caf\xe9", "\xee\xbe\x80\xff", "\xe2\x82\xac", "a\"b"}) // no UTF-8, and UTF-8
        writeCase("bytes",
                  message(VEK_MSG_FOCUS_VALUE, "{MEDIA_NAME=" + std::string(name) + ";FOCUS_VALUE=-0.000001;}"));
    for (const std::int32_t id : bodyIds())
        writeDefaults(id);
    writeGenerated();
    writeDamaged();
}
