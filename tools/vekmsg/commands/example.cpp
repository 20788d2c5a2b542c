// vekmsg example: logs of a fleet of devices, to try everything on; the same ones for the same arguments.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/fleet/fleetDevice.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"

#include <filesystem>

namespace vek::tool {

namespace {

constexpr std::int64_t firstOfFebruary = 1'769'932'800'000; // 2026-02-01T08:00:00

struct exampleArguments_t {
    std::string folder;
    std::size_t messages = 20'000, devices = 8, seed = 1, days = 60;

    void declare(argumentList_t &list) {
        list.add(folder, {.names = "FOLDER",
                          .about = "Where the logs go, a file a device; the folder is made",
                          .type = "",
                          .isRequired = true});
        list.add(messages, {.names = "--messages",
                            .about = "How many messages they have together; 20000 when it is not said",
                            .type = "N",
                            .least = 1,
                            .most = 1'000'000'000'000});
        list.add(devices, {.names = "--devices",
                           .about = "How many devices there are; 8 when it is not said",
                           .type = "N",
                           .least = 1,
                           .most = 1'000'000});
        list.add(days, {.names = "--days",
                        .about = "Over how many days, from 2026-02-01 on; 60 when it is not said",
                        .type = "N",
                        .least = 1,
                        .most = 10'000});
        list.add(seed, {.names = "--seed", .about = "Another number makes other logs", .type = "N", .most = 1'000'000});
    }
};

character_t characterOf(std::size_t device) {
    constexpr character_t peculiar[] = {character_t::sound, character_t::wornFocus, character_t::jamming,
                                        character_t::badLine};
    return device < 4 ? peculiar[device] : character_t::sound;
}

std::string nameOf(std::size_t device) {
    return (device < 9 ? "drum-0" : "drum-") + std::to_string(device + 1);
}

std::string fileOf(const exampleArguments_t &fleet, std::size_t device) {
    return fleet.folder + "/" + nameOf(device) + ".log";
}

// The first devices have one message more when it does not come out even.
void writeLog(const exampleArguments_t &fleet, std::size_t device) {
    const std::uint64_t messages = fleet.messages / fleet.devices + (device < fleet.messages % fleet.devices ? 1 : 0);
    const character_t character = characterOf(device);
    const std::string name = nameOf(device);
    fleetRandom_t random(fleet.seed * 1'000'003 + device);
    deviceLog_t log(fileOf(fleet, device), firstOfFebruary + random.below(3'600'000), messages,
                    character == character_t::badLine ? 0.02 : 0.0, random);
    fleetDevice_t(name, static_cast<int>(device + 1), character, log, random)
        .work(static_cast<double>(fleet.days), messages);
    log.close();
}

int runExample(const exampleArguments_t &arguments) {
    std::error_code error;
    std::filesystem::create_directories(arguments.folder, error);
    if (error)
        throw usageError_t("cannot make the folder " + arguments.folder + ": " + error.message());
    for (std::size_t device = 0; device < arguments.devices; ++device)
        if (identityOf(fileOf(arguments, device)))
            throw usageError_t(fileOf(arguments, device) + " is there already; name another folder");
    for (std::size_t device = 0; device < arguments.devices; ++device)
        writeLog(arguments, device);
    writeAll(2, arguments.folder + " has the logs of " + std::to_string(arguments.devices) + " devices, " +
                    std::to_string(arguments.messages) + " messages\n");
    return exitFine;
}

const commandOf_t<exampleArguments_t>
    exampleCommand({.order = 135,
                    .name = "example",
                    .about = "Write the logs of a fleet of devices, to try things on",
                    .examples = "  vekmsg example fleet\n"
                                "  vekmsg example --messages 1000000 --devices 1000 fleet"},
                   runExample);

} // namespace

} // namespace vek::tool
