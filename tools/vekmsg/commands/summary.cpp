// vekmsg summary: how many messages of each kind there are, which are damaged, and which are missing.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "tools/vekmsg/terminal/wrapping.hpp"
#include "vek/api/envelope.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/log/sequences.hpp"

#include <algorithm>
#include <map>

namespace vek::tool {

namespace {

struct summaryArguments_t {
    readingOptions_t reading;
    colorOption_t color;
    bool isChecked = false;

    void declare(argumentList_t &list) {
        reading.declareFiles(list);
        list.addFlag(isChecked, "--check", "Damaged is also what check finds an error in, not the envelope alone");
        reading.declare(list, false);
        color.declare(list);
    }
};

class summaryTask_t final : public task_t {
public:
    struct moment_t {
        std::string lineHead;
        std::uint64_t line = 0;
        void set(const item_t &item) {
            lineHead = item.lineHead.substr(0, 128);
            line = item.line;
        }
    };
    struct kind_t {
        std::uint64_t count = 0, damaged = 0;
        moment_t first, last;
    };

    summaryTask_t(bool isChecked, bool isPiece) : isChecked_(isChecked), isPiece_(isPiece) {}

    bool hasColours() const override { return true; }
    std::unique_ptr<task_t> fork() const override { return std::make_unique<summaryTask_t>(isChecked_, true); }
    bool needsLines() const override { return false; }
    void join(task_t &task) override {
        auto &later = static_cast<summaryTask_t &>(task);
        for (auto &[id, other] : later.kinds) {
            kind_t &kind = kinds[id];
            other.first.line += later.linesInFront;
            other.last.line += later.linesInFront;
            if (kind.count == 0)
                std::swap(kind.first, other.first);
            std::swap(kind.last, other.last);
            kind.count += other.count;
            kind.damaged += other.damaged;
        }
        for (const run_t &run : later.runs_)
            sequences.takeRun(run.first, run.count);
    }

    void take(const item_t &item) override {
        const envelopeHead_t &head = item.head;
        const std::int32_t id = head.id.valueOr(-1);
        if (latest_ == nullptr || latestId_ != id) {
            latest_ = &kinds[id];
            latestId_ = id;
        }
        kind_t &kind = *latest_;
        if (kind.count++ == 0)
            kind.first.set(item);
        kind.last.set(item);
        if (item.isDamaged || (isChecked_ && !inspect::isPlainlyClean(item.whole) &&
                               !inspect::isClean(item.tree(), inspect::tolerance_t::warnings)))
            ++kind.damaged;
        if (!head.sequenceNumber.isThere)
            return;
        if (isPiece_)
            keep(head.sequenceNumber.value);
        else
            sequences.take(head.sequenceNumber.value);
    }

    std::map<std::int32_t, kind_t> kinds;
    inspect::sequences_t sequences;

private:
    // Sequence numbers of which each is one more than that before it.
    struct run_t {
        std::int32_t first;
        std::uint32_t count;
    };

    void keep(std::int32_t number) {
        if (!runs_.empty() && number == std::int64_t{runs_.back().first} + runs_.back().count)
            ++runs_.back().count;
        else
            runs_.push_back({number, 1});
    }

    const bool isChecked_, isPiece_;
    std::vector<run_t> runs_; // of a piece, whose sequences begin in the piece before
    kind_t *latest_ = nullptr;
    std::int32_t latestId_ = 0;
};

std::string momentInWords(const summaryTask_t::moment_t &moment, const timeFinder_t &times) {
    const std::optional<logTime_t> time = times.in(moment.lineHead);
    return time ? time->inWords() : "line " + std::to_string(moment.line);
}

void write(const summaryTask_t &task, std::string &out, const readingOptions_t &reading, const colours_t &colours) {
    const timeFinder_t times(reading.timeExpression, reading.zone);
    std::uint64_t count = 0, damaged = 0;
    constexpr std::size_t narrow = 50;
    const std::size_t nameWidth = pageWidth() < narrow ? 13 : 24;
    out.append(colours.bold).append("   id  ").append(padded("name", nameWidth)).append(" messages  damaged");
    out.append(pageWidth() < narrow ? "\n  first and last\n" : "  first and last\n").append(colours.reset);
    for (const auto &[id, kind] : task.kinds) {
        const inspect::messageSchema_t *message = inspect::schema().find(id);
        const std::string_view name = message == nullptr           ? "(unknown id)"
                                      : message->record == nullptr ? "(no structure)"
                                                                   : message->record->name;
        count += kind.count;
        damaged += kind.damaged;
        out += padded(id < 0 ? "-" : std::to_string(id), 5, true) + "  " +
               padded(name.substr(0, nameWidth), nameWidth) + padded(std::to_string(kind.count), 9, true) + "  ";
        out.append(kind.damaged > 0 ? colours.red : "").append(padded(std::to_string(kind.damaged), 7, true));
        out.append(kind.damaged > 0 ? colours.reset : "").append("  ");
        const std::string first = momentInWords(kind.first, times), last = momentInWords(kind.last, times);
        constexpr std::size_t columns = 49; // in front of the times
        const std::string gap = "\n  ";
        const std::size_t width = pageWidth();
        const bool fits = columns + first.size() + 2 + last.size() <= width;
        if (!fits)
            out.erase(out.find_last_not_of(' ') + 1);
        out.append(fits ? "" : gap).append(first);
        if (first != last)
            out.append(fits || 4 + first.size() + last.size() <= width ? "  " : gap).append(last);
        out += '\n';
    }
    out +=
        std::to_string(count) + (count == 1 ? " message" : " messages") + ", " + std::to_string(damaged) + " damaged\n";
    // Of chosen messages, the numbers in between are others'.
    if (task.sequences.gaps() > 0 && reading.ids.empty() && reading.conditions.empty())
        out += wrapped(std::to_string(task.sequences.gaps()) + (task.sequences.gaps() == 1 ? " gap" : " gaps") +
                           " in the sequence numbers, " + std::to_string(task.sequences.missing()) +
                           " missing: " + task.sequences.inWords(),
                       pageWidth(), 2) +
               "\n";
}

int runSummary(const summaryArguments_t &arguments) {
    summaryTask_t task(arguments.isChecked, false);
    reader_t reader(arguments.reading, task);
    reader.run();
    const exitCode_t status = reader.statusWithMessages();
    if (reader.taken() > 0)
        write(task, task.out, arguments.reading, arguments.color.colours());
    reader.flush();
    return status;
}

const commandOf_t<summaryArguments_t>
    summaryCommand({.order = 110,
                    .name = "summary",
                    .about = "Count the messages of each kind, the damaged and the missing ones",
                    .examples = "  vekmsg summary device.log\n"
                                "  vekmsg summary --jobs 0 --check *.log"},
                   runSummary);

} // namespace

} // namespace vek::tool
