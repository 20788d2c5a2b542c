// vekmsg last: the latest message of each kind, which is the device's state.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/reading/messageJson.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "vek/inspect/check/check.hpp"

#include <map>

namespace vek::tool {

namespace {

struct lastArguments_t {
    readingOptions_t reading;
    colorOption_t color;
    bool isJson = false;

    void declare(argumentList_t &list) {
        reading.declareFiles(list);
        list.add(reading.at, {"--at", "The state at this time instead of the end", "TIME"});
        list.addFlag(isJson, "--json", "As JSON lines");
        reading.declare(list, false);
        color.declare(list);
    }
};

class lastTask_t final : public task_t {
public:
    struct kept_t {
        std::string text, lineHead, before, file;
        std::uint64_t line = 0, column = 0, offset = 0;
    };

    bool hasColours() const override { return true; }
    std::unique_ptr<task_t> fork() const override { return std::make_unique<lastTask_t>(); }
    void join(task_t &later) override {
        for (auto &[id, kept] : static_cast<lastTask_t &>(later).latest)
            std::swap(latest[id], kept);
    }

    void take(const item_t &item) override {
        kept_t &kept = latest[item.head.id.valueOr(-1)];
        kept.text = item.text;
        kept.lineHead = item.lineHead;
        kept.file = item.file;
        kept.before = item.before;
        kept.offset = item.offset;
        kept.line = item.line;
        kept.column = item.column;
    }

    std::map<std::int32_t, kept_t> latest; // by id
};

void append(std::string &out, const lastTask_t::kept_t &kept, const timeFinder_t &times, bool isJson,
            const colours_t &colours) {
    const inspect::tree_t tree(kept.text);
    const std::vector<inspect::finding_t> findings = inspect::check(tree);
    const std::optional<logTime_t> time = times.in(kept.lineHead);
    if (isJson) {
        appendMessageJson(out, {kept.file, kept.line, kept.offset, kept.before, time}, tree, findings);
        return;
    }
    out.append(colours.dim).append("# ").append(kept.file).append(":" + std::to_string(kept.line));
    out.append(":" + std::to_string(kept.column)).append(time ? "  " + time->inWords() : "");
    out.append(colours.reset).append("\n");
    inspect::showOptions_t shown;
    shown.styles = colours.styles();
    shown.findings = findings;
    inspect::appendShow(out, tree, shown);
    out += '\n';
}

int runLast(const lastArguments_t &arguments) {
    lastTask_t task;
    reader_t reader(arguments.reading, task);
    reader.run();
    const exitCode_t status = reader.statusWithMessages();
    const colours_t colours = arguments.color.colours();
    const timeFinder_t times(arguments.reading.timeExpression, arguments.reading.zone);
    for (const auto &[id, kept] : task.latest)
        append(task.out, kept, times, arguments.isJson, colours);
    reader.flush();
    return status;
}

const commandOf_t<lastArguments_t>
    lastCommand({.order = 100,
                 .name = "last",
                 .about = "The latest message of each kind: the device's state",
                 .examples = "  vekmsg last device.log\n"
                             "  vekmsg last --at 2026-03-01T12:00 device.log --id DeviceStatus"},
                runLast);

} // namespace

} // namespace vek::tool
