// Writes the logs of a fleet of devices, one file a device, the same ones for the same arguments.
//
//     fleetLog FOLDER [MESSAGES [DEVICES [SEED [DAYS]]]]     20000 messages, 8 devices, seed 1, 60 days from 2026-02-01
//
// The second device has a worn focus, the third one's punch jams, the fourth is on a bad line: some of its messages are
// damaged or missing. All others are sound.
#include "tests/support/fleet/fleetDevice.hpp"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

namespace {

using namespace vek::fleet;

constexpr std::int64_t firstOfFebruary = 1'769'932'800'000; // 2026-02-01T08:00:00

struct fleet_t {
    std::uint64_t messages = 20000;
    int devices = 8;
    std::uint64_t seed = 1;
    double days = 60.0;
};

character_t characterOf(int device) {
    constexpr character_t peculiar[] = {character_t::sound, character_t::wornFocus, character_t::jamming,
                                        character_t::badLine};
    return device < 4 ? peculiar[device] : character_t::sound;
}

void writeLogs(const std::string &folder, const fleet_t &fleet) {
    std::filesystem::create_directories(folder);
    const auto devices = static_cast<std::uint64_t>(fleet.devices);
    for (int device = 0; device < fleet.devices; ++device) {
        const auto at = static_cast<std::uint64_t>(device);
        char name[32];
        std::snprintf(name, sizeof name, "drum-%02d", device + 1);
        // The first devices have one message more when it does not come out even.
        const std::uint64_t messages = fleet.messages / devices + (at < fleet.messages % devices ? 1 : 0);
        fleetRandom_t random(fleet.seed * 1'000'003 + at);
        const character_t character = characterOf(device);
        deviceLog_t log(folder + "/" + name + ".log", firstOfFebruary + random.below(3'600'000), messages,
                        character == character_t::badLine ? 0.02 : 0.0, random);
        fleetDevice_t(name, device + 1, character, log, random).work(fleet.days, messages);
        log.close();
    }
}

/// A positive number; ends the program when it is none.
double numberOf(const char *text) {
    char *end = nullptr;
    const double number = std::strtod(text, &end);
    if (end == text || *end != '\0' || !(number > 0) || number > 1e12) {
        std::fprintf(stderr, "fleetLog: \"%s\" is no positive number\n", text);
        std::exit(2);
    }
    return number;
}

} // namespace

int main(int count, char **arguments) {
    if (count < 2 || count > 6) {
        std::fprintf(stderr, "usage: fleetLog FOLDER [MESSAGES [DEVICES [SEED [DAYS]]]]\n");
        return 2;
    }
    fleet_t fleet;
    if (count > 2)
        fleet.messages = static_cast<std::uint64_t>(numberOf(arguments[2]));
    if (count > 3)
        fleet.devices = static_cast<int>(std::min(numberOf(arguments[3]), 1e6));
    if (count > 4)
        fleet.seed = static_cast<std::uint64_t>(numberOf(arguments[4]));
    if (count > 5)
        fleet.days = numberOf(arguments[5]);
    try {
        writeLogs(arguments[1], fleet);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "fleetLog: %s\n", error.what());
        return 1;
    }
}
