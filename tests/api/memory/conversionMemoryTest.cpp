// Conversions without memory: each allocation of each fails once. A call that gets none returns -1 and a null pointer
// and leaks nothing; a string that gets none is empty; only a growable list ends the process.
#include "foundation/memory/failingMemory.hpp"
#include "support/messages.hpp"
#include "vek_std/std_sys/vek_string.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

// What hosts throw through the library, as a pointer.
class CCtrlException {};

namespace {

using namespace vek;
using namespace vek::test;

enum outcome_t { completed, listEndedProcess, survived, threw, wrong };

// Messages whose structures hold growable lists.
const std::set<std::int32_t> listIds{4096, 4099, 4100, 4101, 4102, 4105, 4114, 4115, 4116, 4119, 4136, 4193, 4194};

struct attempt_t {
    std::string text;
    std::size_t n;
    bool andAllLater;
};

// `call` makes something through its argument; `release` takes it back, having looked at it.
template <class Call, class Release>
outcome_t attempt(const attempt_t &one, Call call, Release release) {
    const std::size_t live = memory::liveBlocks() + memory::liveObjects();
    void *made = &made; // the calls must not leave it
    outcome_t outcome = wrong;
    memory::failAt(one.n, one.andAllLater);
    try {
        const std::int32_t result = call(&made);
        const bool isComplete = memory::stopFailing() == 0;
        if (result == (made == nullptr ? -1 : 0))
            outcome = isComplete ? completed : survived;
    } catch (CCtrlException *thrown) {
        memory::stopFailing();
        delete thrown;
        outcome = made == nullptr ? threw : wrong;
    }
    if (made != nullptr && made != &made)
        release(made);
    return memory::liveBlocks() + memory::liveObjects() == live ? outcome : wrong;
}

outcome_t attemptToRead(const attempt_t &one) {
    std::int32_t id = 0;
    return attempt(
        one, [&](void **made) { return vekStrToVal(one.text.c_str(), &id, made); },
        [&](void *made) {
            char *text = nullptr; // whatever is in it, it can be handed back
            vekValToStr(id, made, &text);
            vekParamsDelete(text);
            const structure_t owner(id, made);
        });
}

outcome_t attemptToWrite(const attempt_t &one) {
    const structure_t structure(one.text);
    return attempt(
        one,
        [&](void **made) {
            char *text = static_cast<char *>(*made);
            const std::int32_t result = vekValToStr(structure.id, structure.address, &text);
            *made = text;
            return result;
        },
        vekParamsDelete);
}

// In a process of its own, whose end says how it went.
template <class Attempt>
outcome_t inChild(Attempt attemptOnce, const attempt_t &one) {
    int errors[2];
    EXPECT_EQ(pipe(errors), 0);
    const pid_t child = fork();
    if (child == 0) {
        dup2(errors[1], STDERR_FILENO);
        _exit(attemptOnce(one));
    }
    close(errors[1]);
    std::string printed(4096, '\0');
    const ssize_t size = read(errors[0], printed.data(), printed.size()); // far less than a pipe holds
    printed.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    close(errors[0]);
    int status = 0;
    waitpid(child, &status, 0);
    const auto outcome = WIFEXITED(status) ? static_cast<outcome_t>(WEXITSTATUS(status)) : wrong;
    EXPECT_EQ(printed, outcome == listEndedProcess ? "out of memory\n" : "");
    return outcome;
}

template <class Attempt>
std::set<outcome_t> outcomes(Attempt attemptOnce, const std::string &text, bool hasLists) {
    std::set<outcome_t> all;
    for (const bool andAllLater : {false, true})
        for (std::size_t n = 1;; ++n) {
            const attempt_t one{text, n, andAllLater};
            const outcome_t outcome = hasLists ? inChild(attemptOnce, one) : attemptOnce(one);
            EXPECT_NE(outcome, wrong) << "allocation " << n << (andAllLater ? " and later" : "") << " of " << text;
            all.insert(outcome);
            if (outcome == completed || outcome == wrong)
                break;
        }
    return all;
}

class Memory : public testing::Test {
protected:
    void SetUp() override {
        stringOutOfMemoryHook = nullptr;
        samples();
    }

    /// The samples, and more that allocate in other ways.
    static std::vector<std::string> texts() {
        std::vector<std::string> all;
        for (const sample_t &sample : samples())
            all.push_back(sample.text);
        const std::string longText(200, 'x');
        all.push_back(message(4112, "{MEDIA_NAME=" + longText + ";}"));
        all.push_back(message(4107, "{ARRAY_RES_INT={{1," + longText + "},{NAME=y;},};}"));
        all.push_back(
            message(4107, "{ARRAY_RES_INT={ARRAY_RES_INT1={1," + longText + "};ARRAY_RES_INT0={NAME=y;};};}"));
        all.push_back(message(4119, "{DATA_PATH_PORT={1,DATA_PATH_PORT0=2;};}"));
        all.push_back(message(4193, "{JOB_NAME={JOB_NAME1=1;x,};SEP_LIST={SEP_LIST0={SEP_LIST00=5;};};}"));
        all.push_back(message(4202, "{INFO=" + std::string(3000, 'i') + ";}"));
        return all;
    }
};

TEST_F(Memory, CallsThatGetNoneFailAndLeakNothing) {
    for (const std::string &text : texts()) {
        const bool hasLists = listIds.contains(std::atoi(text.c_str() + 2));
        const auto reading = outcomes(attemptToRead, text, hasLists);
        EXPECT_TRUE(reading.contains(survived)) << text;
        EXPECT_EQ(reading.contains(listEndedProcess), hasLists) << text;
        EXPECT_EQ(outcomes(attemptToWrite, text, hasLists), (std::set<outcome_t>{completed, survived})) << text;
    }
}

TEST_F(Memory, AnExceptionOfTheHostsPassesThrough) {
    stringOutOfMemoryHook = [] { throw new CCtrlException; };
    std::set<outcome_t> all;
    for (const std::string &text : texts())
        if (!listIds.contains(std::atoi(text.c_str() + 2)))
            all.merge(outcomes(attemptToRead, text, false));
    EXPECT_EQ(all, (std::set<outcome_t>{completed, survived, threw}));
}

} // namespace
