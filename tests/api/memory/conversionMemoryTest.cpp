// Conversions without memory: each allocation of each fails once. A call that gets none returns -1 and a null pointer,
// leaks nothing, and leaves the header numbers and the caller's id as they were; a string that gets none is empty; only
// a growable list ends the process.
#include "tests/foundation/memory/failingMemory.hpp"
#include "tests/foundation/reports.hpp"
#include "tests/support/messages.hpp"
#include "vek/api/private/headerNumbers.hpp"
#include "vek/records/media.hpp"
#include "vek/records/punch.hpp"
#include "vek/records/tables.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// What hosts throw through the library, as a pointer.
class CCtrlException {};

namespace {

using namespace vek;
using namespace vek::test;

enum outcome_t { completed, listEndedProcess, survived, threw, wrong };

struct attempt_t {
    std::string text;
    bool isWriting; // the second call is the one that gets no memory
    std::size_t n;
    bool andAllLater;
};

// Reads a text and writes what became of it, whatever is in it.
outcome_t attempt(const attempt_t &one) {
    const auto live = [] { return memory::counts().liveBlocks + memory::counts().liveObjects; };
    const std::size_t before = live();
    std::int32_t id = 0;
    void *structure = &structure; // a call that fails must not leave it
    char *text = nullptr;
    outcome_t outcome = wrong;
    try {
        memory::failAt(one.isWriting ? 0 : one.n, one.andAllLater);
        const headerNumbers_t numbers = headerNumbers = {-3, 5};
        bool isRight = vekStrToVal(one.text.c_str(), &id, &structure) == (structure == nullptr ? -1 : 0);
        isRight &= structure != nullptr || (id == 0 && headerNumbers.get() == numbers);
        std::size_t failures = memory::stopFailing();
        memory::failAt(one.isWriting ? one.n : 0, one.andAllLater);
        if (structure != nullptr) {
            text = reinterpret_cast<char *>(&text);
            const headerNumbers_t last = headerNumbers;
            isRight &= vekValToStr(id, structure, &text) == (text == nullptr ? -1 : 0);
            isRight &= headerNumbers.get() == (text == nullptr ? last : last.countedUp());
        }
        failures += memory::stopFailing();
        if (isRight)
            outcome = failures == 0 ? completed : survived;
    } catch (CCtrlException *thrown) {
        memory::stopFailing();
        delete thrown;
        outcome = structure == nullptr ? threw : wrong;
    }
    vekParamsDelete(text);
    static_cast<void>(structure_t(id, structure)); // releases it
    return live() == before ? outcome : wrong;
}

// In a process of its own, whose end says how it went.
outcome_t attemptInChild(const attempt_t &one) {
    int status = 0;
    const std::string printed = reported([&] {
        const pid_t child = fork();
        if (child == 0)
            _exit(attempt(one));
        waitpid(child, &status, 0);
    });
    const auto outcome = WIFEXITED(status) ? static_cast<outcome_t>(WEXITSTATUS(status)) : wrong;
    EXPECT_EQ(printed, outcome == listEndedProcess ? "out of memory\n" : "");
    return outcome;
}

bool hasLists(const std::string &text) {
    return hasGrowableLists(std::atoi(text.c_str() + 2));
}

std::set<outcome_t> outcomes(const std::string &text, bool isWriting) {
    std::set<outcome_t> all;
    for (const bool andAllLater : {false, true})
        for (std::size_t n = 1;; ++n) {
            const attempt_t one{text, isWriting, n, andAllLater};
            const outcome_t outcome = hasLists(text) ? attemptInChild(one) : attempt(one);
            EXPECT_NE(outcome, wrong) << "allocation " << n << (andAllLater ? " and later" : "") << " of " << text;
            all.insert(outcome);
            if (outcome == completed || outcome == wrong)
                break;
        }
    return all;
}

// The samples, and more that allocate in other ways.
std::vector<std::string> texts() {
    const std::string longText(200, 'x');
    std::vector<std::string> all{
        message(4112, "{MEDIA_NAME=" + longText + ";}"),
        message(4107, "{ARRAY_RES_INT={{1," + longText + "},{NAME=y;},};}"),
        message(4107, "{ARRAY_RES_INT={ARRAY_RES_INT1={1," + longText + "};ARRAY_RES_INT0={NAME=y;};};}"),
        message(4119, "{DATA_PATH_PORT={1,DATA_PATH_PORT0=2;};}"),
        message(4193, "{JOB_NAME={JOB_NAME1=1;x,};SEP_LIST={SEP_LIST0={SEP_LIST00=5;};};}"),
        message(4202, "{INFO=" + std::string(3000, 'i') + ";}")};
    for (const sample_t &sample : samples())
        all.push_back(sample.text);
    return all;
}

TEST(Memory, CallsThatGetNoneFailAndLeakNothing) {
    stringOutOfMemoryHook = nullptr;
    for (const std::string &text : texts()) {
        const auto reading = outcomes(text, false);
        EXPECT_TRUE(reading.contains(survived)) << text;
        EXPECT_EQ(reading.contains(listEndedProcess), hasLists(text)) << text;
        EXPECT_EQ(outcomes(text, true), (std::set<outcome_t>{completed, survived})) << text;
    }
}

// A message with an item that nobody made: without memory for it there is no message, and with memory again the same as
// ever.
template <class Containers>
void expectNullItemsWritten(std::int32_t id) {
    const auto live = [] { return memory::counts().liveBlocks + memory::counts().liveObjects; };
    Containers items, made;
    for (int i = 0; i < 3; ++i) {
        items.add(i == 1 ? nullptr : new typename Containers::value_type);
        made.add();
    }
    const std::string expected = writtenBody(id, &made);
    const std::size_t before = live();
    for (std::size_t n = 1, failures = 1; failures != 0; ++n) {
        char *text = nullptr;
        memory::failAt(n);
        const std::int32_t result = vekValToStr(id, &items, &text);
        failures = memory::stopFailing();
        EXPECT_EQ(result, text == nullptr ? -1 : 0);
        EXPECT_EQ(text == nullptr, failures != 0) << id << ": allocation " << n;
        EXPECT_EQ(text == nullptr ? expected : bodyOf(text), expected) << id << ": allocation " << n;
        vekParamsDelete(text);
        EXPECT_EQ(live(), before) << id << ": allocation " << n;
        EXPECT_EQ(writtenBody(id, &items), expected) << id << ": after allocation " << n;
    }
}

TEST(Memory, ItemsThatNobodyMadeAreWrittenWholeOrNotAtAll) {
    stringOutOfMemoryHook = nullptr;
    expectNullItemsWritten<CassetteArray>(4101);
    expectNullItemsWritten<PunchArray>(4102);
    expectNullItemsWritten<ResIntArray>(4107);
    expectNullItemsWritten<MediaGroupArray>(4115);
    expectNullItemsWritten<MediaArray>(4116);
}

TEST(Memory, AnExceptionOfTheHostsPassesThrough) {
    stringOutOfMemoryHook = [] { throw new CCtrlException; };
    std::set<outcome_t> all;
    for (const std::string &text : texts())
        if (!hasLists(text))
            all.merge(outcomes(text, false));
    EXPECT_EQ(all, (std::set<outcome_t>{completed, survived, threw}));
}

} // namespace
