// vekmsg new: a message with the defaults.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/reading/filter.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/message/written.hpp"

namespace vek::tool {

namespace {

struct newArguments_t {
    headerOptions_t header;
    std::string id; ///< or name

    void declare(argumentList_t &list) {
        list.add(id, {.names = "ID", .about = "The id or name of a message", .isRequired = true, .pages = {"names"}});
        header.declare(list);
    }
};

int runNew(const newArguments_t &arguments) {
    const std::int32_t id = idsNamed({arguments.id}).front();
    const std::optional<std::string> text =
        inspect::newMessage(id, arguments.header.echoTag.value_or(-1), arguments.header.sequenceNumber.value_or(0));
    if (!text)
        throw usageError_t(arguments.id + " has no structure, so no defaults; vekmsg list shows what has one");
    writeText(1, isTerminal(1) ? *text + "\n" : *text);
    return exitFine;
}

const commandOf_t<newArguments_t> newCommand({.order = 170,
                                              .name = "new",
                                              .about = "A message with the defaults, to be changed",
                                              .examples = "  vekmsg new FocusValue > focus.txt\n"
                                                          "  vekmsg new 4112 | vekmsg set FOCUS_VALUE=3.5"},
                                             runNew);

} // namespace

} // namespace vek::tool
