// Four threads that convert every kind of message for long: memory stays as it was after the start, and of the sequence
// numbers each is given once.
//
//   longRun CONVERSIONS [SECONDS]    all of it once, or again and again for so long
#include "tests/support/messages.hpp"
#include "tests/support/model/bodyMutator.hpp"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace vek;
using namespace vek::test;

constexpr std::uint64_t threadCount = 4, settling = 100000;
constexpr long allowedGrowth = 512; // KB

long residentKilobytes() {
    long pages = 0, resident = 0;
    if (std::FILE *const in = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(in, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(in);
    }
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

[[noreturn]] void fail(const std::string &why) {
    std::fprintf(stderr, "longRun: %s\n", why.c_str());
    std::_Exit(1);
}

struct text_t {
    std::string text, body; // what is read, and what is written then; a damaged one's body is its own after one turn
};

// Without header numbers: reading sets none, so that all that are written follow each other.
std::string withoutNumbers(std::int32_t id, const std::string &body) {
    std::string text = "@@" + std::to_string(id) + " ##### - - " + body + "!!";
    char length[8];
    std::snprintf(length, sizeof length, "%5zu", text.size() + 1);
    return text.replace(text.find("#####"), 5, length);
}

std::vector<text_t> mixedTexts() {
    std::vector<std::string> corpus;
    for (const sample_t &sample : samples())
        corpus.push_back(sample.body);
    std::vector<text_t> texts;
    for (const sample_t &sample : samples()) {
        texts.push_back({withoutNumbers(sample.id, sample.body), sample.body});
        model::bodyMutator_t mutator(static_cast<std::uint64_t>(sample.id), corpus);
        for (int i = 0; i < 2; ++i) {
            const std::string damaged = mutator.mutated(sample.body);
            texts.push_back({withoutNumbers(sample.id, damaged), converted(sample.id, damaged)});
        }
    }
    return texts;
}

// The sequence numbers that were given: a bit each, from the first on.
class given_t {
public:
    given_t(std::int32_t first, std::uint64_t most) : first_(first), bits_(most / 64 + 1) {}

    void take(std::int32_t number) {
        const auto distance = static_cast<std::uint32_t>(number) - static_cast<std::uint32_t>(first_);
        if (distance / 64 >= bits_.size())
            fail("the sequence number " + std::to_string(number) + " was not to come");
        const std::uint64_t bit = std::uint64_t{1} << distance % 64;
        if ((bits_[distance / 64].fetch_or(bit, std::memory_order_relaxed) & bit) != 0)
            fail("the sequence number " + std::to_string(number) + " was given twice");
    }

private:
    std::int32_t first_;
    std::vector<std::atomic<std::uint64_t>> bits_;
};

// "@@4112    80 7 41 {...": behind the third blank after the length.
std::int32_t sequenceNumberOf(const char *text) {
    const char *at = std::strchr(text + 12, ' ') + 1;
    at = std::strchr(at, ' ') + 1;
    std::int32_t number = 0;
    std::from_chars(at, at + 12, number);
    return number;
}

void convert(const text_t &one, given_t &given) {
    std::int32_t id = 0;
    void *structure = nullptr;
    char *written = nullptr;
    if (vekStrToVal(one.text.c_str(), &id, &structure) != 0 || vekValToStr(id, structure, &written) != 0)
        fail("a call failed on " + one.text);
    given.take(sequenceNumberOf(written));
    const std::string_view whole(written);
    if (!whole.substr(0, whole.size() - 2).ends_with(one.body))
        fail(one.text + "\n  became " + written);
    vekParamsDelete(written);
    static_cast<void>(structure_t(id, structure)); // releases it
}

void run(const std::vector<text_t> &texts, std::uint64_t from, std::uint64_t to, given_t &given) {
    std::vector<std::jthread> threads;
    for (std::uint64_t number = 0; number < threadCount; ++number)
        threads.emplace_back([&, number] {
            for (std::uint64_t i = from + number; i < to; i += threadCount)
                convert(texts[i % texts.size()], given);
        });
}

} // namespace

int main(int count, char **arguments) {
    const std::uint64_t conversions = count > 1 ? std::strtoull(arguments[1], nullptr, 10) : 10000000;
    const auto end = std::chrono::steady_clock::now() +
                     std::chrono::seconds(count > 2 ? std::strtoull(arguments[2], nullptr, 10) : 0);
    const std::vector<text_t> texts = mixedTexts();
    const std::uint64_t turns = std::max(conversions / 2, 2 * settling); // each reads and writes
    long settled = 0, most = 0;
    std::uint64_t done = 0;
    do {
        const std::int32_t first = sequenceNumberOf(written(4118, defaultsOf(4118).address).c_str()) + 1;
        given_t given(first, turns);
        for (std::uint64_t at = 0; at < turns;) {
            const std::uint64_t next = std::min(turns, at == 0 ? settling / 2 : at + turns / 50);
            run(texts, at, next, given);
            at = next;
            most = std::max(most, residentKilobytes());
            settled = settled == 0 ? most : settled;
        }
        const std::int32_t last = sequenceNumberOf(written(4118, defaultsOf(4118).address).c_str());
        if (static_cast<std::uint32_t>(last) - static_cast<std::uint32_t>(first) != turns)
            fail("the last sequence number is " + std::to_string(last));
        done += 2 * turns;
        std::printf("%llu conversions, %ld KB resident, %ld KB after the first %llu\n",
                    static_cast<unsigned long long>(done), most, settled, static_cast<unsigned long long>(settling));
        std::fflush(stdout);
        if (most > settled + allowedGrowth)
            fail("memory grows");
    } while (std::chrono::steady_clock::now() < end);
    return 0;
}
