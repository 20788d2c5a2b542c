// fleetDevice_t: a device at its work: jobs of several plates, cassettes that run empty and are filled again, a focus
// that drifts, punches that jam.
#pragma once

#include "tools/vekmsg/fleet/deviceLog.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vek::tool {

/// What is peculiar about a device.
enum class character_t : std::uint8_t { sound, wornFocus, jamming, badLine };

class fleetDevice_t {
public:
    fleetDevice_t(std::string name, int number, character_t character, deviceLog_t &log, fleetRandom_t &random);

    /// Jobs until the log is full, with pauses that make them last so many days; longer when no pause is left.
    void work(double days, std::uint64_t messages);

private:
    struct magazine_t {
        std::string name;
        vekMediaType media;
        Size size;
        int room, content;
    };

    void introduce();
    void runJob();
    void expose(int plate, int plates, magazine_t &magazine, const std::string &job);
    void refill(magazine_t &magazine);
    void repair();
    void report(std::int32_t status, std::int32_t lowStatus, std::int32_t severity,
                std::initializer_list<std::string> messages);
    Cassette cassetteOf(const magazine_t &magazine) const;
    double focus();

    std::string name_;
    int number_;
    character_t character_;
    deviceLog_t &log_;
    fleetRandom_t &random_;
    std::vector<magazine_t> magazines_;
    std::int64_t begin_;
    int job_;
};

} // namespace vek::tool
