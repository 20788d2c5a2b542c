// vekmsg replay: the messages of a log as they came, byte for byte and with the pauses between them.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "tools/vekmsg/terminal/problem.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

struct replayArguments_t {
    readingOptions_t reading;
    double speed = 1;
    bool hasLines = false;

    void declare(argumentList_t &list) {
        reading.declareFiles(list);
        list.add(speed, {"--speed", "So many times as fast as the log's times say; 1 when it is not said", "N"});
        list.addFlag(hasLines, "--lines", "A line end behind each message");
        reading.declare(list, false, false);
    }
};

class replayTask_t final : public task_t {
public:
    replayTask_t(const replayArguments_t &arguments, const timeFinder_t &times)
        : arguments_(arguments), times_(times) {}

    void take(const item_t &item) override {
        if (const std::optional<logTime_t> time = times_.in(item.lineHead))
            waitFor(*time);
        ++messages_;
        writeText(1, arguments_.hasLines || isTerminal(1) ? std::string(item.text) + "\n" : std::string(item.text));
    }

    /// All at once, which nobody asked for.
    bool isWithoutTimes() const { return messages_ > 1 && !latest_; }

private:
    // A message without a time goes with the one before, as one does whose time is earlier: somebody set the clock.
    void waitFor(const logTime_t &time) {
        constexpr std::int64_t day = 86'400'000'000;
        if (!latest_)
            begun_ = milliseconds();
        std::int64_t passed = latest_ ? time.microseconds - latest_->microseconds : 0;
        if (!time.hasDate && passed < -day / 2)
            passed += day; // midnight
        latest_ = time;
        inLog_ += static_cast<double>(std::max<std::int64_t>(passed, 0)) / 1000;
        const double until = static_cast<double>(begun_) + inLog_ / arguments_.speed;
        for (double left = 0; (left = until - static_cast<double>(milliseconds())) > 0;)
            sleepMilliseconds(static_cast<unsigned>(std::clamp(left, 1.0, 1e9)));
    }

    const replayArguments_t &arguments_;
    const timeFinder_t &times_;
    std::uint64_t messages_ = 0;
    std::optional<logTime_t> latest_;
    std::uint64_t begun_ = 0; // when the first message went
    double inLog_ = 0;        // milliseconds from the first message to the latest, on the log's clock
};

int runReplay(const replayArguments_t &arguments) {
    if (!(arguments.speed > 0))
        throw usageError_t("--speed: a log goes on at a speed above 0, such as 0.5 or 10; 1e9 does not wait");
    const timeFinder_t times(arguments.reading.timeExpression, arguments.reading.zone);
    replayTask_t task(arguments, times);
    reader_t reader(arguments.reading, task);
    reader.run();
    if (task.isWithoutTimes())
        complain("no time stands in front of the messages: they went without pauses; --time says where it stands");
    return reader.statusWithMessages();
}

const commandOf_t<replayArguments_t> replayCommand(
    {.order = 126,
     .name = "replay",
     .about = "Write the messages of a log as they came, with the pauses between them",
     .examples = "  vekmsg replay --speed 10 line.log > /dev/ttyS0\n"
                 "  grep 'host > device' line.log | vekmsg replay --since 08:10 | socat -t 5 - TCP:device:4001"},
    runReplay);

} // namespace

} // namespace vek::tool
