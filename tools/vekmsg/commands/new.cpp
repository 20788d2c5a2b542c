// vekmsg new: a message with the defaults.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/reading/filter.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/change/change.hpp"
#include "vek/inspect/message/written.hpp"

namespace vek::tool {

namespace {

struct newArguments_t {
    headerOptions_t header;
    std::string id; ///< or name
    std::vector<std::string> values;

    void declare(argumentList_t &list) {
        list.add(id, {.names = "ID", .about = "The id or name of a message", .isRequired = true, .pages = {"names"}});
        list.add(values, {.names = "PATH=VALUE", .about = "What it has instead of the defaults", .pages = {"keys"}});
        header.declare(list);
    }
};

int runNew(const newArguments_t &arguments) {
    const std::int32_t id = idsNamed({arguments.id}).front();
    std::optional<std::string> text =
        inspect::newMessage(id, arguments.header.echoTag.value_or(-1), arguments.header.sequenceNumber.value_or(0));
    if (!text)
        throw usageError_t(arguments.id + " has no structure, so no defaults; vekmsg list shows what has one");
    for (const std::string &value : arguments.values) {
        const std::size_t place = value.find('=');
        if (place == std::string::npos || place == 0)
            throw usageError_t(value + ": what is the value of what? Write PATH=VALUE, for example FOCUS_VALUE=3.5");
        inspect::change_t change =
            inspect::changed(inspect::tree_t(*text), value.substr(0, place), value.substr(place + 1));
        if (!change.isDone()) {
            complain("error: " + change.error);
            return exitDifferences;
        }
        *text = std::move(change.text);
    }
    writeText(1, isTerminal(1) ? *text + "\n" : *text);
    return exitFine;
}

const commandOf_t<newArguments_t> newCommand({.order = 170,
                                              .name = "new",
                                              .about = "A message with the defaults, or with the values that are given",
                                              .examples = "  vekmsg new FocusValue > focus.txt\n"
                                                          "  vekmsg new FocusValue FOCUS_VALUE=3.5 --seq 12"},
                                             runNew);

} // namespace

} // namespace vek::tool
