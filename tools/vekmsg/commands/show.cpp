// vekmsg show: messages as a readable tree.
#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "tools/vekmsg/terminal/colours.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/message/written.hpp"

#include <map>

namespace vek::tool {

namespace {

class showTask_t final : public task_t {
public:
    showTask_t(const options_t &options, const colours_t &colours)
        : options_(options), colours_(colours), width_(isTerminal(1) ? terminalWidth() : 100) {}

    std::unique_ptr<task_t> fork() const override {
        return options_.onlyChanges ? nullptr : std::make_unique<showTask_t>(options_, colours_);
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
        options_.asRead ? showAsRead(item) : showAsItStands(item);
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
        if (!options_.onlyChanges)
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

    const options_t &options_;
    const colours_t &colours_;
    const std::size_t width_;
    const timeFinder_t times_{options_.timeExpression};
    std::map<std::int32_t, std::string> previous_; // messages, by id
};

} // namespace

int runShow(const options_t &options) {
    const colours_t colours = colours_t::of(options.color);
    showTask_t task(options, colours);
    reader_t reader(options, task);
    reader.run();
    return reader.statusWithMessages();
}

} // namespace vek::tool
