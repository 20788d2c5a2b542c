// vekmsg show: messages as a readable tree.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/message/written.hpp"

#include <map>

namespace vek::tool {

namespace {

struct showArguments_t {
    readingOptions_t reading;
    colorOption_t color;
    bool asRead = false, onlyChanges = false;

    void declare(argumentList_t &list) {
        reading.declareFiles(list);
        list.addFlag(asRead, "--as-read", "What a host keeps of the message, with what changes by that");
        list.addFlag(onlyChanges, "--changes", "Only what differs from the previous message of that kind");
        reading.declare(list);
        color.declare(list);
    }
};

class showTask_t final : public task_t {
public:
    showTask_t(const showArguments_t &arguments, const colours_t &colours)
        : arguments_(arguments), colours_(colours), width_(isTerminal(1) ? terminalWidth() : 100) {}

    bool hasColours() const override { return true; }
    std::unique_ptr<task_t> fork() const override {
        return arguments_.onlyChanges ? nullptr : std::make_unique<showTask_t>(arguments_, colours_);
    }

    void take(const item_t &item) override {
        if (item.form == inspect::form_t::none) {
            out += colours_.dim;
            out += "# " + item.place();
            if (const std::optional<logTime_t> time = times_.in(item.lineHead))
                out += "  " + time->inWords();
            out += colours_.reset;
            out += '\n';
        }
        arguments_.asRead ? showAsRead(item) : showAsItStands(item);
        out += '\n';
    }

private:
    inspect::showOptions_t showOptions() const {
        inspect::showOptions_t shown;
        shown.styles = colours_.styles();
        shown.width = width_;
        return shown;
    }

    void showAsItStands(const item_t &item) {
        const inspect::tree_t &tree = item.tree();
        const std::vector<inspect::finding_t> findings = inspect::check(tree);
        inspect::showOptions_t shown = showOptions();
        shown.findings = findings;
        if (!arguments_.onlyChanges)
            return inspect::appendShow(out, tree, shown);
        const std::int32_t id = tree.envelope().id.value;
        std::string &previous = previous_[id];
        const inspect::tree_t other(previous);
        shown.other = previous.empty() ? nullptr : &other;
        shown.onlyChanges = shown.noteChanges = shown.other != nullptr;
        inspect::appendShow(out, tree, shown);
        previous = item.text;
    }

    void showAsRead(const item_t &item) {
        const std::optional<std::string> kept = inspect::asRead(item.tree());
        if (!kept) {
            inspect::appendShow(out, item.tree(), showOptions());
            out += "# No host reads this message: there is no structure for its id.\n";
            return;
        }
        const inspect::tree_t tree(*kept);
        inspect::showOptions_t shown = showOptions();
        shown.other = &item.tree();
        shown.noteChanges = true;
        inspect::appendShow(out, tree, shown);
    }

    const showArguments_t &arguments_;
    const colours_t &colours_;
    const std::size_t width_;
    const timeFinder_t times_{arguments_.reading.timeExpression, arguments_.reading.zone};
    std::map<std::int32_t, std::string> previous_; // messages, by id
};

int runShow(const showArguments_t &arguments) {
    const colours_t colours = arguments.color.colours();
    showTask_t task(arguments, colours);
    reader_t reader(arguments.reading, task);
    reader.run();
    return reader.statusWithMessages();
}

const commandOf_t<showArguments_t>
    showCommand({.order = 10,
                 .name = "show",
                 .about = "Show messages as a readable tree, which seal reads back",
                 .examples = "  vekmsg show device.log --id DeviceStatus --head 1\n"
                             "  vekmsg show focus.txt > focus.show; vekmsg seal focus.show\n"
                             "  vekmsg show --follow --changes device.log"},
                runShow);

} // namespace

} // namespace vek::tool
