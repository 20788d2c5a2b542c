// Two builds of the library, converting the same messages in turn: this one's times, as multiples of the other's.
// Prints a table as Markdown; scripts/bench.sh --against runs it.
//
//   builds OTHER_LIBRARY [--quick]
//   builds --instructions   of this build alone, under valgrind --tool=callgrind, which writes a file for each
//   conversion
#include "bench/peer.hpp"
#include "bench/timing.hpp"
#include "vek/api/vekParams2ASCII.h"

#ifdef VEK_CALLGRIND
#    include <valgrind/callgrind.h>
#endif

#include <cmath>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

namespace bench {

namespace {

/// The four calls of one build.
struct build_t {
    decltype(&vekStrToVal) read = &vekStrToVal;
    decltype(&vekValToStr) write = &vekValToStr;
    decltype(&vekParamsDelete) releaseText = &vekParamsDelete;
    decltype(&vekParamsDeleteStruct) releaseStruct = &vekParamsDeleteStruct;
};

template <class Call>
void find(void *library, const char *name, Call &call) {
    call = reinterpret_cast<Call>(dlsym(library, name));
}

build_t load(const char *file) {
    build_t build;
    void *library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::cerr << dlerror() << '\n';
        std::exit(1);
    }
    find(library, "vekStrToVal", build.read);
    find(library, "vekValToStr", build.write);
    find(library, "vekParamsDelete", build.releaseText);
    find(library, "vekParamsDeleteStruct", build.releaseStruct);
    return build;
}

struct messages_t {
    std::string name;
    std::int32_t id;
    std::vector<std::string> texts;
};

// The rows of the comparison, and the sample messages as they are.
std::vector<messages_t> allMessages() {
    std::vector<messages_t> all;
    for (const row_t &row : makeRows()) {
        messages_t &messages = all.emplace_back(messages_t{row.name, row.id, {}});
        for (const content_t &content : row.contents)
            messages.texts.push_back(message(row.id, content));
    }
    std::vector<std::filesystem::path> samples;
    for (const auto &entry : std::filesystem::directory_iterator(VEK_PROJECT_FOLDER "/examples/messages"))
        samples.push_back(entry.path());
    std::sort(samples.begin(), samples.end());
    for (const std::filesystem::path &sample : samples) {
        std::ifstream in(sample, std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        const std::int32_t id = std::atoi(text.c_str() + 2);
        if (text.find('{') != std::string::npos && id != 4135 && id != 4136) // which have no structure
            all.push_back({sample.stem(), id, {text}});
    }
    return all;
}

/// One build with the messages of a row.
class conversions_t {
public:
    conversions_t(const build_t &build, const messages_t &messages) : build_(build), messages_(messages) {
        for (const std::string &text : messages.texts) {
            std::int32_t id = 0;
            build.read(text.c_str(), &id, &structures_.emplace_back());
        }
    }
    ~conversions_t() {
        for (void *structure : structures_)
            build_.releaseStruct(messages_.id, &structure);
    }
    conversions_t(const conversions_t &) = delete;
    conversions_t &operator=(const conversions_t &) = delete;

    void read(std::size_t count) const {
        for (std::size_t i = 0; i < count; ++i) {
            std::int32_t id = 0;
            void *structure = nullptr;
            build_.read(messages_.texts[i % messages_.texts.size()].c_str(), &id, &structure);
            build_.releaseStruct(id, &structure);
        }
    }
    void write(std::size_t count) const {
        for (std::size_t i = 0; i < count; ++i) {
            char *written = nullptr;
            build_.write(messages_.id, structures_[i % structures_.size()], &written);
            build_.releaseText(written);
        }
    }

private:
    const build_t &build_;
    const messages_t &messages_;
    std::vector<void *> structures_;
};

void compare(const build_t &other, int rounds) {
    const build_t own;
    double logarithms[2] = {};
    const std::vector<messages_t> all = allMessages();
    std::printf("| message | characters | reading ns | times the other's | writing ns | times the other's |\n"
                "|---|--:|--:|--:|--:|--:|\n");
    for (const messages_t &messages : all) {
        const conversions_t one(own, messages), another(other, messages);
        std::printf("| %s | %zu |", messages.name.c_str(), messages.texts.front().size());
        for (std::size_t i = 0; i < 2; ++i) {
            const auto convert = i == 0 ? &conversions_t::read : &conversions_t::write;
            const auto ours = [&](std::size_t count) { (one.*convert)(count); };
            const auto others = [&](std::size_t count) { (another.*convert)(count); };
            // Each once in front: who comes first finds less of the messages in the processor's caches.
            const auto times = timeInTurn({ours, others, others, ours}, rounds);
            const double time = std::min(times[0], times[3]), ratio = time / std::min(times[1], times[2]);
            logarithms[i] += std::log(ratio);
            std::printf(" %.0f | %.2f |", time, ratio);
        }
        std::printf("\n");
        std::fflush(stdout);
    }
    const auto count = static_cast<double>(all.size());
    std::printf("| **geometric mean** | | | **%.3f** | | **%.3f** |\n", std::exp(logarithms[0] / count),
                std::exp(logarithms[1] / count));
}

int countInstructions() {
#ifdef VEK_CALLGRIND
    const build_t own;
    for (const messages_t &messages : allMessages()) {
        const conversions_t conversions(own, messages);
        const std::size_t count = messages.texts.size() == 1 ? 10 : messages.texts.size();
        const auto nameOf = [&](const char *direction) {
            return messages.name + ' ' + direction + '|' + std::to_string(count);
        };
        const std::string reading = nameOf("reading"), writing = nameOf("writing");
        conversions.read(count);
        CALLGRIND_ZERO_STATS;
        conversions.read(count);
        CALLGRIND_DUMP_STATS_AT(reading.c_str());
        conversions.write(count);
        CALLGRIND_ZERO_STATS;
        conversions.write(count);
        CALLGRIND_DUMP_STATS_AT(writing.c_str());
    }
    return 0;
#else
    std::cerr << "this build lacks valgrind's header; install valgrind and configure again\n";
    return 1;
#endif
}

} // namespace

} // namespace bench

int main(int count, char **arguments) {
    using namespace bench;
    if (count < 2) {
        std::cerr << "usage: builds OTHER_LIBRARY [--quick]\n";
        return 2;
    }
    if (std::strcmp(arguments[1], "--instructions") == 0)
        return countInstructions();
    compare(load(arguments[1]), count > 2 ? 7 : 41);
}
