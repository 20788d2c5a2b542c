// vekmsg stamp: what comes on a line, with the time in front of each message, for a log.
//
// Whatever the pieces are that it comes in, a message is written as soon as it is whole. What is none is written with
// its line, and what was cut off when nothing has come for a second. Of what comes nothing is lost but white space and
// NULs around messages and words.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/reading/following.hpp"
#include "vek/inspect/log/logScanner.hpp"
#include "vek/inspect/log/logTime.hpp"

#include <chrono>

namespace vek::tool {

namespace {

struct stampArguments_t {
    std::string label;
    bool isUtc = false;

    void declare(argumentList_t &list) {
        list.add(label, {"--label", "What stands behind the time, such as \"device > host\"", "WORDS"});
        list.addFlag(isUtc, "--utc", "The time at UTC, with its Z, and not that of this place");
    }
};

class stamper_t final : public followedLog_t, private inspect::messageSink_t {
public:
    explicit stamper_t(const stampArguments_t &arguments) : followedLog_t("-", false), arguments_(arguments) {}

    bool hasMessages = false;

private:
    void take(std::string_view block) override {
        pending_ += block;
        scanner_.feed(block, *this);
        putWords(scanner_.decided(), false);
        write();
    }
    void end(bool) override { standStill(); }
    void standStill() override {
        scanner_.finish(*this);
        putWords(scanner_.offset(), true);
        write();
    }
    void fail(const usageError_t &error) override { throw error; }

    void message(const inspect::foundMessage_t &found) override {
        const std::string_view words = putWords(found.offset, false);
        putLine(words, found.text);
        done_ = found.offset + found.text.size();
        hasMessages = true;
    }

    // Writes the lines of words in front of a place, the last one only when it is all; gives what is left of them.
    std::string_view putWords(std::uint64_t end, bool isAll) {
        constexpr std::size_t longest = std::size_t{1} << 16;
        std::string_view words = std::string_view(pending_).substr(0, static_cast<std::size_t>(end - pendingStart_));
        words.remove_prefix(std::min(static_cast<std::size_t>(done_ - pendingStart_), words.size()));
        while (!words.empty()) {
            const std::size_t size = words.find('\n');
            if (size == std::string_view::npos && !isAll && words.size() < longest)
                break;
            putLine(words.substr(0, size), {});
            words.remove_prefix(size == std::string_view::npos ? words.size() : size + 1);
        }
        done_ = end - words.size();
        return words;
    }

    void putLine(std::string_view words, std::string_view message) {
        constexpr std::string_view nothing(" \t\r\n\v\f\0", 7);
        const std::size_t first = std::min(words.find_first_not_of(nothing), words.size());
        words = words.substr(first, words.find_last_not_of(nothing) + 1 - first);
        if (words.empty() && message.empty())
            return;
        putTime();
        for (const std::string_view part : {std::string_view(arguments_.label), words, message})
            if (!part.empty())
                out_.append(" ").append(part);
        out_ += '\n';
    }

    void putTime() {
        using namespace std::chrono;
        const auto now = duration_cast<std::chrono::milliseconds>(system_clock::now().time_since_epoch()).count();
        const std::int64_t seconds = now / 1000;
        const std::int64_t here = arguments_.isUtc ? seconds : localSeconds(seconds);
        const inspect::logTime_t time{(here * 1000 + now % 1000) * 1000, true, arguments_.isUtc};
        time.appendTo(out_, 'T', inspect::logTime_t::fraction_t::always);
        out_ += arguments_.isUtc ? "Z" : "";
    }

    void write() {
        pending_.erase(0, static_cast<std::size_t>(done_ - pendingStart_));
        pendingStart_ = done_;
        writeText(1, out_);
        out_.clear();
    }

    const stampArguments_t &arguments_;
    inspect::logScanner_t scanner_;
    std::string pending_, out_;                 // what is not written yet; what is to be written
    std::uint64_t pendingStart_ = 0, done_ = 0; // in what came
};

int runStamp(const stampArguments_t &arguments) {
    if (arguments.label.find_first_of("\r\n") != std::string::npos || arguments.label.find("@@") != std::string::npos)
        throw usageError_t("--label: the words stand on one line, without @@, which begins a message");
    auto stamper = std::make_unique<stamper_t>(arguments);
    const stamper_t &line = *stamper;
    std::vector<std::unique_ptr<followedLog_t>> lines;
    lines.push_back(std::move(stamper));
    bool hasMessages = false;
    follow(std::move(lines), [&](bool) {
        hasMessages = line.hasMessages;
        return true;
    });
    if (!hasMessages)
        complain("no message came; a message begins with @@ and its number");
    return hasMessages ? exitFine : exitDifferences;
}

const commandOf_t<stampArguments_t>
    stampCommand({.order = 125,
                  .name = "stamp",
                  .about = "Put the time in front of each message as it comes on standard input",
                  .examples = "  vekmsg stamp < /dev/ttyS0 >> line.log\n"
                              "  socat -u TCP:device:4001 - | vekmsg stamp --label 'device > host' >> line.log"},
                 runStamp);

} // namespace

} // namespace vek::tool
