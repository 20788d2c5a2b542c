// The comparison: messages both ways through the four calls, beside other libraries with the same content in the same
// run. Prints a table for reading and one for writing, as Markdown; scripts/bench.sh runs it.
//
//   comparison [--quick] [FILE]   FILE: what the run below counted
//   comparison --instructions     to be run under valgrind --tool=callgrind, which writes a file for each conversion
#include "bench/heapCount.hpp"
#include "bench/peer.hpp"
#include "bench/timing.hpp"
#include "vek/api/vekParams2ASCII.h"

#ifdef VEK_CALLGRIND
#    include <valgrind/callgrind.h>
#endif

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <thread>

namespace bench {

namespace {

struct makerOf_t {
    const char *name;
    makePeer_t make;
};

// The library and its yardstick first.
constexpr makerOf_t makers[] = {
    {"library", makeLibrary},        {"RapidJSON", makeRapidJson},
#ifdef VEK_YYJSON
    {"yyjson", makeYyjson},
#endif
#ifdef VEK_SIMDJSON
    {"simdjson", makeSimdjson},
#endif
#ifdef VEK_PROTOBUF
    {"protobuf text", makeProtobuf},
#endif
#ifdef VEK_NLOHMANN
    {"nlohmann-json", makeNlohmann},
#endif
    {"numbers alone", makeFloor},
};
constexpr std::size_t library = 0;
constexpr std::size_t yardstick = 1;

enum class direction_t { reading, writing };
constexpr direction_t directions[] = {direction_t::reading, direction_t::writing};

const char *nameOf(direction_t direction) {
    return direction == direction_t::reading ? "reading" : "writing";
}

/// Converts with a peer, through all contents of a row in turn.
std::function<void(std::size_t)> conversions(peer_t &peer, const row_t &row, direction_t direction) {
    return [&peer, direction, contents = row.contents.size()](std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t index = contents == 1 ? 0 : i % contents;
            direction == direction_t::reading ? peer.read(index) : peer.write(index);
        }
    };
}

std::string keyOf(const row_t &row, direction_t direction) {
    return row.name + ' ' + nameOf(direction);
}

using instructions_t = std::map<std::string, double>;

instructions_t readInstructions(const char *file) {
    instructions_t instructions;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        const std::size_t comma = line.rfind('|');
        instructions[line.substr(0, comma)] = std::atof(line.c_str() + comma + 1);
    }
    return instructions;
}

/// One table: a line a row, and the geometric means of the ratios.
class table_t {
public:
    explicit table_t(direction_t direction, const instructions_t &instructions)
        : direction_(direction), instructions_(instructions) {
        std::printf("\n| %s | library ns | ", nameOf(direction));
        for (const makerOf_t &maker : makers)
            std::printf("%s | ", maker.name);
        std::printf("allocations | RapidJSON's | instructions | RapidJSON's |\n|---|---|");
        for (std::size_t i = 0; i < std::size(makers) + 4; ++i)
            std::printf("---|");
        std::printf("\n");
    }

    void add(const row_t &row, int rounds) {
        std::vector<std::unique_ptr<peer_t>> peers;
        std::vector<std::function<void(std::size_t)>> batches;
        for (const makerOf_t &maker : makers) {
            peers.push_back(maker.make(row));
            batches.push_back(conversions(*peers.back(), row, direction_));
        }
        const std::vector<double> times = timeInTurn(batches, rounds);
        std::printf("| %s | %.0f |", row.name.c_str(), times[library]);
        for (std::size_t i = 0; i < times.size(); ++i) {
            const bool isThere = direction_ == direction_t::reading || peers[i]->canWrite();
            if (isThere)
                logarithms_[i] += std::log(times[i] / times[yardstick]);
            isThere ? std::printf(" %.2f |", times[i] / times[yardstick]) : std::printf(" |");
        }
        for (const std::size_t i : {library, yardstick}) {
            startHeapCount();
            batches[i](row.contents.size());
            std::printf(" %.1f |",
                        static_cast<double>(stopHeapCount().allocations) / static_cast<double>(row.contents.size()));
        }
        for (const std::size_t i : {library, yardstick}) {
            const auto found = instructions_.find(keyOf(row, direction_) + ' ' + makers[i].name);
            found != instructions_.end() ? std::printf(" %.0f |", found->second) : std::printf(" |");
        }
        std::printf("\n");
        std::fflush(stdout);
        ++rows_;
    }

    void end() const {
        std::printf("| **geometric mean** | |");
        for (std::size_t i = 0; i < std::size(makers); ++i)
            logarithms_[i] != 0 || i == yardstick ? std::printf(" **%.2f** |", std::exp(logarithms_[i] / rows_))
                                                  : std::printf(" |");
        std::printf(" | | | |\n");
    }

private:
    direction_t direction_;
    const instructions_t &instructions_;
    double logarithms_[std::size(makers)] = {};
    int rows_ = 0;
};

struct threadCost_t {
    double rate = 0;                 ///< conversions in a nanosecond
    double processorTime = INFINITY; ///< nanoseconds of a processor for one
};

/// Some threads that read and write a cassette over and over.
threadCost_t costOf(unsigned threads, const row_t &row) {
    constexpr std::size_t count = 40000;
    std::vector<std::unique_ptr<peer_t>> peers;
    for (unsigned i = 0; i < threads; ++i)
        peers.push_back(makeLibrary(row));
    const std::clock_t start = std::clock();
    const double time = timeOnce(count, [&](std::size_t) {
        std::vector<std::jthread> running;
        running.reserve(threads);
        for (const auto &peer : peers)
            running.emplace_back([&peer = *peer] {
                for (std::size_t i = 0; i < count; ++i) {
                    peer.read(0);
                    peer.write(0);
                }
            });
    });
    return {threads / time,
            1e9 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC / static_cast<double>(threads * count)};
}

// The time of the processors tells also on a machine that is busy with other work how far threads hinder each other.
void compareThreads(const row_t &row, int rounds) {
    threadCost_t best[2];
    for (int round = 0; round < rounds; ++round)
        for (unsigned threads = 1; threads <= 2; ++threads) {
            const threadCost_t cost = costOf(threads, row);
            threadCost_t &least = best[threads - 1];
            least = {std::max(least.rate, cost.rate), std::min(least.processorTime, cost.processorTime)};
        }
    std::printf(
        "\nTwo threads convert %.2f times as many cassettes as one, on %u processors. A cassette takes %.0f ns of a "
        "processor's time with one thread, %.0f with two.\n",
        best[1].rate / best[0].rate, std::thread::hardware_concurrency(), best[0].processorTime, best[1].processorTime);
}

int countInstructions(const std::vector<row_t> &rows) {
#ifdef VEK_CALLGRIND
    for (const row_t &row : rows)
        for (const direction_t direction : directions)
            for (const std::size_t i : {library, yardstick}) {
                const auto peer = makers[i].make(row);
                const auto batch = conversions(*peer, row, direction);
                const std::size_t count = row.contents.size() == 1 ? 10 : row.contents.size();
                batch(count);
                CALLGRIND_ZERO_STATS;
                batch(count);
                const std::string name = keyOf(row, direction) + ' ' + makers[i].name + '|' + std::to_string(count);
                CALLGRIND_DUMP_STATS_AT(name.c_str());
            }
    return 0;
#else
    static_cast<void>(rows);
    std::cerr << "this build lacks valgrind's header; install valgrind and configure again\n";
    return 1;
#endif
}

} // namespace

void check(const char *peer, const row_t &row, const std::string &expected, const std::string &got) {
    if (expected == got)
        return;
    std::cerr << peer << ": a content of '" << row.name << "' does not come back as it was:\n"
              << expected << '\n'
              << got << '\n';
    std::exit(1);
}

} // namespace bench

int main(int count, char **arguments) {
    using namespace bench;
    const std::vector<row_t> rows = makeRows();
    if (count > 1 && std::strcmp(arguments[1], "--instructions") == 0)
        return countInstructions(rows);
    const bool isQuick = count > 1 && std::strcmp(arguments[1], "--quick") == 0;
    const int rounds = isQuick ? 7 : 41;
    const int fileArgument = isQuick ? 2 : 1;
    const instructions_t instructions =
        count > fileArgument ? readInstructions(arguments[fileArgument]) : instructions_t();
    std::printf("Times as multiples of RapidJSON's (Writer, SAX), the fastest of %d runs each, taken in turn.\n",
                rounds);
    for (const direction_t direction : directions) {
        table_t table(direction, instructions);
        for (const row_t &row : rows)
            table.add(row, rounds);
        table.end();
    }
    compareThreads(rows.front(), rounds);
}
