// vekmsg help: the same as --help.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/commandLine.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"

#include <CLI/CLI.hpp>

namespace vek::tool {

namespace {

struct helpArguments_t {
    const CLI::App *all = nullptr;
    std::string command;

    void declare(argumentList_t &list) {
        all = list.app.get_parent();
        list.add(command, {.names = "COMMAND", .about = "The command; none for all", .pages = {"commands"}});
    }
};

int runHelp(const helpArguments_t &arguments) {
    writeAll(1, helpOf(*arguments.all, arguments.command));
    return exitFine;
}

const commandOf_t<helpArguments_t> helpCommand({.order = 190,
                                                .name = "help",
                                                .about = "What a command does and takes, with examples",
                                                .examples = "  vekmsg help check\n"
                                                            "  vekmsg help"},
                                               runHelp);

} // namespace

} // namespace vek::tool
