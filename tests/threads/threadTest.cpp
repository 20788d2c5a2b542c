// Calls on different structures from several threads at once. Run under ThreadSanitizer too (preset thread), which
// finds the races that these results happen to survive.
//
// What broke before: the id of a text went through a variable of the process, so that a text was converted as another
// thread's message and then released as a structure that it was not.
#include "tests/support/messages.hpp"

#include "vek/api/private/headerNumbers.hpp"
#include "vek/records/jobs.hpp"
#include "vek/vek_std/std_objCltn/obj.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace vek;
using namespace vek::test;

constexpr int threadCount = 4;

/// Runs `work(number)` on several threads that begin together.
template <class Work>
void together(Work work) {
    std::barrier start(threadCount);
    std::vector<std::jthread> threads;
    for (int number = 0; number < threadCount; ++number)
        threads.emplace_back([&start, &work, number] {
            start.arrive_and_wait();
            work(number);
        });
}

std::int32_t sequenceNumberOf(const std::string &text) {
    return readEnvelope(text).head.sequenceNumber.value;
}

TEST(Threads, ConvertTheirOwnMessages) {
    together([](int number) {
        for (int round = 0; round < rounds(40); ++round)
            for (std::size_t i = 0; i < samples().size(); ++i) {
                const sample_t &sample = samples()[(i + static_cast<std::size_t>(number) * 11) % samples().size()];
                structure_t structure(sample.text);
                EXPECT_EQ(structure.id, sample.id);
                EXPECT_EQ(bodyOf(written(structure.id, structure.address)), sample.body);
            }
    });
}

TEST(Threads, GiveEachMessageThatTheyWriteASequenceNumberOfItsOwn) {
    std::vector<structure_t> states;
    for (int number = 0; number < threadCount; ++number)
        states.push_back(structureOf(4118, "{DEVICE_STATE=3;}"));
    std::vector<std::int32_t> numbers[threadCount];
    headerNumbers = {1, INT32_MAX - 1000}; // the numbers wrap on the way
    together([&](int number) {
        void *const state = states[static_cast<std::size_t>(number)].address;
        for (int i = 0; i < 2000; ++i)
            numbers[number].push_back(sequenceNumberOf(written(4118, state)));
    });
    std::vector<std::int32_t> all;
    for (const auto &own : numbers)
        all.insert(all.end(), own.begin(), own.end());
    std::sort(all.begin(), all.end());
    EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
}

// What broke before: the echo tag of one message read and the sequence number of another.
TEST(Threads, WriteMessagesWithNumbersOfOneMessageRead) {
    constexpr std::int32_t step = 100000; // more than are written
    structure_t state = structureOf(4118, "{DEVICE_STATE=3;}");
    headerNumbers = {0, 0};
    std::atomic<int> reading = threadCount - 1;
    together([&](int number) {
        for (std::int32_t i = 1; number > 0 && i <= rounds(20000); ++i) {
            const std::int32_t tag = i % 2000 * number; // of one digit to four
            const structure_t read(message(4118, "{}", tag, tag * step));
        }
        reading -= number > 0 ? 1 : 0;
        for (int i = 0; number == 0 && (reading > 0 || i == 0); i = (i + 1) % step) {
            const std::string text = written(4118, state.address);
            const envelope_t envelope = readEnvelope(text);
            const std::int32_t tag = envelope.head.echoTag.value, counted = envelope.head.sequenceNumber.value;
            if (envelope.result != envelopeResult_t::correct || counted / step != tag || counted % step == 0)
                ADD_FAILURE() << text;
        }
    });
}

TEST(Threads, ThatTakeTurnsShareTheHeaderNumbers) {
    const auto inAnother = [](auto work) { std::jthread{work}; };
    structure_t state = defaultsOf(4118);
    const std::string body = "{DEVICE_STATE=0;}";
    inAnother([&] { structureOf(4118, "{}"); });
    EXPECT_EQ(written(4118, state.address), message(4118, body, 7, 42));
    inAnother([&] { EXPECT_EQ(written(4118, state.address), message(4118, body, 7, 43)); });
    const structure_t refused(message(1, "{}", 9, -6)); // also a text that is refused is read so far
    inAnother([&] { EXPECT_EQ(written(4118, state.address), message(4118, body, 9, -5)); });
}

TEST(Threads, ShareTheBodiesOfStrings) {
    const string_t shared("a text that all of them share");
    const string_t empty;
    std::vector<string_t> handedOn[threadCount];
    together([&](int number) {
        for (int i = 0; i < 2000; ++i) {
            string_t copy = shared;
            string_t none = empty;
            const string_t second = copy;
            copy.append(" and one changes");
            none.append("x");
            EXPECT_EQ(second.length() + copy.length() + none.length(), 29U + 45U + 1U);
            handedOn[number].push_back(i % 2 == 0 ? second : copy);
        }
    });
    // Each thread releases what another made.
    together([&](int number) { handedOn[(number + 1) % threadCount].clear(); });
    EXPECT_STREQ(shared.c_str(), "a text that all of them share");
    EXPECT_EQ(shared.length() + empty.length(), 29U);
}

// What one thread left for its next texts is not freed by another that ends the process.
TEST(Threads, MayConvertWhileTheProcessEnds) {
    const auto endWhileConverting = [] {
        static std::atomic<int> converted = 0;
        const auto convert = [text = sampleOf(4100).text] {
            for (;; ++converted)
                structure_t{text};
        };
        std::thread(convert).detach();
        while (converted < 3)
            std::this_thread::yield();
        std::exit(42);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(endWhileConverting(), testing::ExitedWithCode(42), "");
}

TEST(Threads, ReadOneStructureAtTheSameTime) {
    for (int round = 0; round < rounds(100); ++round) {
        structure_t job = structureOf(4193, "{JOB_NAME={72,105,0,};SEP_LIST={{65,0,},{66,67,0,},};}");
        structure_t cassettes(sampleOf(4101).text);
        together([&](int) {
            const auto &read = job.as<const JobSepList>();
            EXPECT_TRUE(read.jobName == u"Hi" && read.sepList.at(1).text() == u"BC");
            EXPECT_EQ(bodyOf(written(4101, cassettes.address)), sampleOf(4101).body);
        });
    }
}

TEST(Threads, ReadAndChangeSettingsAndCounters) {
    const auto hook = stringBadIndexHook;
    const std::int32_t objects = obj_t::liveCount();
    stringBadIndexHook = nullptr;
    together([](int) {
        for (int i = 0; i < 2000; ++i) {
            const obj_t object;
            string_t text("text");
            text[9] = 't'; // reported to a silent hook
            string_t()[0] = 'x';
            setSkipWhitespace(i % 2);
            EXPECT_STREQ(text.c_str(), "text");
        }
    });
    stringBadIndexHook = hook;
    setSkipWhitespace(1);
    EXPECT_EQ(obj_t::liveCount(), objects);
}

} // namespace
