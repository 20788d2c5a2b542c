// Structures as hosts may have them: what a text gives, with values, terminators, items and counts that no text gives.
// What the check lets pass comes back from its text, whatever it is is written without a fault, and each call stands
// an allocation that fails. A text is read within its length and refused beyond, read strictly it gives the same or
// nothing, and the reply to it has the echo tag that was sent and the next number.
#include "fuzz/fuzzInput.hpp"
#include "tests/foundation/memory/failingMemory.hpp"
#include "tests/support/structureValues.hpp"
#include "vek/api/dispatch.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <random>

using namespace vek;
using namespace vek::test;

namespace {

// A call that gets no memory says so, and leaves nothing.
void writeWithoutMemory(std::int32_t id, void *structure, std::size_t n) {
    char *text = reinterpret_cast<char *>(&text);
    memory::failAt(n, n % 2 == 0);
    const std::int32_t result = vekValToStr(id, structure, &text);
    memory::stopFailing();
    if (result != (text == nullptr ? -1 : 0))
        expectSame("a call without memory", "0 with a text, or -1", std::to_string(result));
    vekParamsDelete(text);
}

void readWithoutMemory(const std::string &text, std::size_t n) {
    std::int32_t id = 0;
    void *structure = &structure;
    memory::failAt(n, n % 2 == 0);
    const std::int32_t result = vekStrToVal(text.c_str(), &id, &structure);
    memory::stopFailing();
    if (result != (structure == nullptr ? -1 : 0))
        expectSame(text, "0 with a structure, or -1", std::to_string(result));
    static_cast<void>(structure_t(id, structure)); // releases it
}

template <class Message>
void tryStructure(const std::string &text, std::minstd_rand &random) {
    constexpr auto show = &conversionOf<typename Message::structure_t, typename Message::record_t>::visit;
    const auto structure = parse<Message::id>(text);
    structureValues_t values(show, structure.get());
    for (std::size_t changes = random() % 4; changes > 0; --changes)
        values.changeOne(random);
    problem_t refusal;
    const messageText_t printed = printLossy<Message::id>(*structure, refusal);
    if (refusal) // what is behind the structure would be read, or the text is too long
        return;
    const std::vector<problem_t> problems = check(*structure);
    const auto second = parse<Message::id>(printed);
    const std::string before = values.shown(), after = structureValues_t(show, second.get()).shown();
    if ((before == after) != problems.empty())
        expectSame(before, problems.empty() ? before : problems.front().text, after);
    if (random() % 4 == 0)
        writeWithoutMemory(Message::id, structure.get(), 1 + random() % 8);
    if (random() % 4 == 0 && !hasGrowableLists(Message::id)) // which end the process
        readWithoutMemory(text, 1 + random() % 8);
}

void expect(bool isRight, const std::string &text, const char *what) {
    if (!isRight)
        expectSame(text, what, "not so");
}

template <class Message>
void tryReading(const std::string &text) {
    constexpr std::int32_t id = Message::id;
    problem_t problem, none;
    expect(parse<id>(text, problem, text.size()) == nullptr && problem.code == problemCode_t::aboveLimit, text,
           "above the limit");
    const auto structure = parse<id>(text, problem, text.size() + 1);
    expect(structure != nullptr && !problem, text, "within the limit");
    const auto strict = parseStrictly<id>(text, problem);
    expect((strict == nullptr) == static_cast<bool>(problem), text, "read strictly, or why not");
    if (strict != nullptr)
        expectSame(text, bodyOf(printLossy<id>(*structure, none)), bodyOf(printLossy<id>(*strict, none)));
}

void tryReply(const std::string &text) {
    const envelopeNumbers_t sent = messageNumbers(text);
    line_t line;
    std::size_t calls = 0;
    line.dispatch(text,
                  overloaded{[&]<class Structure>(const Structure &structure, std::int32_t id) {
                                 ++calls;
                                 expect(id == sent.id, text, "the id of the text");
                                 if constexpr (soleStructure<Structure>) {
                                     problem_t problem;
                                     const messageText_t reply = line.print(structure, problem);
                                     const envelopeNumbers_t numbers = messageNumbers(reply);
                                     const std::uint32_t next = static_cast<std::uint32_t>(sent.sequenceNumber) + 1;
                                     expect(problem ? reply.empty()
                                                    : numbers.id == id && numbers.echoTag == sent.echoTag &&
                                                          static_cast<std::uint32_t>(numbers.sequenceNumber) == next,
                                            text, "a reply with its numbers, or why there is none");
                                 }
                             },
                             [&](const problem_t &) { ++calls; }});
    expect(calls == 1, text, "taken or refused, once");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    stringOutOfMemoryHook = nullptr; // which would say each failure
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text = textOf(data, size);
    const input_t input = inputOf(text.c_str());
    if (input.body.size() > 90000 || isOneTooMany(input))
        return 0;
    std::minstd_rand random(static_cast<std::uint32_t>(choiceBy(text)));
    const auto anyNumber = [&random] { return static_cast<std::int32_t>(random() * 2 + random() % 2); };
    const std::string sealed = message(input.id, input.body, anyNumber(), anyNumber());
    const bool isReading = random() % 4 == 0;
    if (isReading)
        tryReply(random() % 4 == 0 ? text : sealed);
    messages_t::forEach([&]<class Message>(Message) {
        if (Message::id == input.id)
            isReading ? tryReading<Message>(sealed) : tryStructure<Message>(sealed, random);
    });
    return 0;
}
