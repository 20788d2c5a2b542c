// deviceLog_t: the log of one device as it is written: lines with a time, what a service program says and the messages
// of host and device; of a bad line also messages that are damaged or missing. fleetRandom_t: numbers that are the same
// everywhere.
//
// One thread at a time, and one log after the other: sequence numbers are those of the process.
#pragma once

#include "vek/api/vekParams2ASCII.hpp"

#include <cstdint>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

namespace vek::tool {

class fleetRandom_t {
public:
    explicit fleetRandom_t(std::uint64_t seed) : bits_(seed) {}

    /// One of `count` numbers from 0.
    int below(int count) { return static_cast<int>(bits_() % static_cast<std::uint64_t>(count)); }
    int between(int least, int most) { return least + below(most - least + 1); }
    bool happens(double probability) { return unit() < probability; }
    /// From 0 to 1.
    double unit() { return static_cast<double>(bits_() >> 11) * 0x1p-53; }

private:
    std::mt19937_64 bits_; // whose numbers the standard fixes; those of its distributions it does not
};

class deviceLog_t {
public:
    enum class sender_t : std::uint8_t { host, device };

    /// Creates the file, or says why not with usageError_t. Of `badness`, from 0 to 1, of the messages something
    /// is wrong.
    deviceLog_t(const std::string &file, std::int64_t begin, std::uint64_t most, double badness, fleetRandom_t &random);

    void wait(std::int64_t milliseconds) { now_ += milliseconds; }
    std::int64_t now() const { return now_; } ///< milliseconds since 1970
    void say(std::string_view words);

    template <class Structure>
    void send(sender_t sender, const Structure &message) {
        if (!isFull())
            put(sender, print(message));
        wait(20 + random_.below(80));
    }
    /// Whether there are as many messages as it takes; further ones are left out.
    bool isFull() const { return count_ >= most_; }
    /// Writes the rest.
    void close();

private:
    void put(sender_t sender, const messageText_t &text);
    void beginLine();
    std::string damaged(std::string text);

    std::string name_;
    std::ofstream file_;
    std::int64_t now_;
    std::uint64_t most_, count_ = 0;
    std::int32_t sequence_ = 0; // of the last message
    double badness_;
    fleetRandom_t &random_;
    std::string lines_;
    std::int64_t day_ = -1;
    std::string date_; // of that day
};

} // namespace vek::tool
