#include "tools/vekmsg/fleet/fleetDevice.hpp"

#include <algorithm>
#include <utility>

namespace vek::tool {

namespace {

constexpr auto toDevice = deviceLog_t::sender_t::host;
constexpr auto toHost = deviceLog_t::sender_t::device;
constexpr std::int64_t second = 1000, minute = 60 * second, day = 1440 * minute;

// As the device counts them.
enum status_t : std::int32_t { ready = 1, loading = 2, exposing = 3, stopped = 5 };
enum lowStatus_t : std::int32_t { nothingToReport = 0, fewLeft = 16, cassetteEmpty = 17, punchJam = 23, focusFar = 42 };
enum severity_t : std::int32_t { information = 0, warning = 1, operatorNeeded = 2 };

constexpr double normalFocus = 1024.0;
const std::string mediaName = "Northlight violet 0.3";
constexpr const char *products[] = {"Spring catalogue", "Road atlas", "Cookery book", "Weekly paper", "School reader"};
constexpr char separations[] = {'c', 'm', 'y', 'k'};

} // namespace

fleetDevice_t::fleetDevice_t(std::string name, int number, character_t character, deviceLog_t &log,
                             fleetRandom_t &random)
    : name_(std::move(name)), number_(number), character_(character), log_(log), random_(random), begin_(log.now()),
      job_(1000 * number) {
    magazines_ = {{"Plate 1", VEK_MEDIA_PLATE, {.width = 1030.0, .height = 790.0}, 40, random.between(10, 40)},
                  {"Plate 2", VEK_MEDIA_PLATE, {.width = 745.0, .height = 605.0}, 60, random.between(10, 60)},
                  {"Film A", VEK_MEDIA_FILM, {.width = 660.0, .height = 508.0}, 100, random.between(10, 100)}};
}

void fleetDevice_t::work(double days, std::uint64_t messages) {
    constexpr double messagesOfJob = 49.0;
    const double step = days * static_cast<double>(day) * messagesOfJob / static_cast<double>(messages);
    introduce();
    for (double next = static_cast<double>(log_.now()); !log_.isFull();) {
        runJob();
        next += step * (0.5 + random_.unit());
        log_.wait(std::max(minute, static_cast<std::int64_t>(next) - log_.now()));
    }
}

void fleetDevice_t::introduce() {
    log_.say("link to " + name_ + " up");
    DeviceInfo info;
    info.deviceName = name_.c_str();
    info.deviceSerialNum = ("SN-" + std::to_string(7000 + 13 * number_)).c_str();
    info.numOfCassette = static_cast<std::int32_t>(magazines_.size());
    log_.send(toHost, info);
    CassetteArray cassettes;
    for (const magazine_t &magazine : magazines_)
        cassettes.add(cassetteOf(magazine));
    log_.send(toHost, cassettes);
}

void fleetDevice_t::runJob() {
    ++job_;
    magazine_t &magazine = magazines_[static_cast<std::size_t>(random_.below(static_cast<int>(magazines_.size())))];
    const std::string product = products[random_.below(static_cast<int>(std::size(products)))];

    JobPort port;
    port.jobName = std::u16string(product.begin(), product.end());
    port.jobId = job_;
    port.jobPort = 2;
    log_.send(toDevice, port);
    vekLayout layout{};
    layout.layoutNum = 1;
    layout.jobId = job_;
    setText(layout.jobticketName, product + " 16up");
    setText(layout.sepsArray, "Cyan Magenta Yellow Black");
    log_.send(toDevice, layout);
    report(ready, nothingToReport, information, {"Job " + std::to_string(job_) + " accepted"});

    const int plates = 4 * random_.between(1, 3);
    for (int plate = 1; plate <= plates && !log_.isFull(); ++plate)
        expose(plate, plates, magazine, std::to_string(job_));
}

void fleetDevice_t::expose(int plate, int plates, magazine_t &magazine, const std::string &job) {
    if (magazine.content == 0)
        refill(magazine);
    const std::string bitmap = "job" + job + "_" + separations[(plate - 1) % 4] + ".tif";
    vekExposeJob order{};
    order.drumId = 1;
    order.numPasses = 1;
    order.loadFlag = order.unloadFlag = 1;
    setText(order.bitmapFilename, bitmap);
    order.marginTop = 10.0;
    order.marginBottom = 12.0;
    order.marginLeft = order.marginRight = 5.0;
    order.size = {.width = magazine.size.width - 10.0, .height = magazine.size.height - 22.0};
    order.cylinderSize = {.width = 1130.0, .height = 820.0};
    order.mediaParams.mediaType = magazine.media;
    order.mediaParams.filmFeed = 240.0;
    setText(order.mediaParams.cassetteName, magazine.name);
    order.punchParams.numSystems = 2;
    order.punchParams.activeSystems[1] = 1;
    log_.send(toDevice, order);
    report(loading, nothingToReport, information, {"Loading from " + magazine.name});
    if (random_.happens(character_ == character_t::jamming ? 0.08 : 0.004))
        repair();

    FocusValue value;
    value.mediaName = mediaName.c_str();
    value.focusValue = focus();
    log_.send(toDevice, value);
    if (value.focusValue > normalFocus + 60.0)
        report(exposing, focusFar, warning, {"Focus far from where it was set", "Exposing " + bitmap});
    else
        report(exposing, nothingToReport, information, {"Exposing " + bitmap});
    log_.wait(random_.between(100, 180) * second);

    --magazine.content;
    log_.send(toHost, cassetteOf(magazine));
    const std::string done = "Plate " + std::to_string(plate) + " of " + std::to_string(plates) + " done";
    if (magazine.content == 3)
        report(ready, fewLeft, warning, {magazine.name + " has 3 left", done});
    else
        report(ready, nothingToReport, information, {done});
}

void fleetDevice_t::refill(magazine_t &magazine) {
    report(stopped, cassetteEmpty, operatorNeeded,
           {"Cassette " + magazine.name + " is empty", "Load plates and close the door"});
    log_.wait(random_.between(3, 45) * minute);
    log_.say("operator: cassette " + magazine.name + " filled");
    magazine.content = magazine.room;
    log_.send(toHost, cassetteOf(magazine));
    report(ready, nothingToReport, information, {"Ready"});
}

void fleetDevice_t::repair() {
    report(stopped, punchJam, operatorNeeded, {"Punch jam at Pin 425", "Clear the punch and close the door"});
    log_.wait(random_.between(2, 20) * minute);
    report(ready, nothingToReport, information, {"Ready"});
}

void fleetDevice_t::report(std::int32_t status, std::int32_t lowStatus, std::int32_t severity,
                           std::initializer_list<std::string> messages) {
    vekDeviceStatus report{};
    report.status = status;
    report.lowStatus = lowStatus;
    report.severity = severity;
    for (const std::string &message : messages)
        setText(report.msgs[report.numOfMessages++], message);
    log_.send(toHost, report);
}

Cassette fleetDevice_t::cassetteOf(const magazine_t &magazine) const {
    Cassette cassette;
    cassette.name = magazine.name.c_str();
    cassette.inputType = VEK_TRANSPORT_SHEET;
    cassette.inputContent = magazine.content;
    cassette.isInstalled = 1;
    cassette.mediaPosition = "upper left";
    cassette.media.type = magazine.media;
    cassette.media.thick = 0.3;
    cassette.media.vendor = "Northlight";
    cassette.media.size = magazine.size;
    return cassette;
}

double fleetDevice_t::focus() {
    const double days = static_cast<double>(log_.now() - begin_) / static_cast<double>(day);
    const double drift = character_ == character_t::wornFocus ? 1.6 : 0.05;
    return normalFocus + 3.0 * number_ + drift * days + random_.unit() - 0.5;
}

} // namespace vek::tool
