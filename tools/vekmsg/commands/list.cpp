// vekmsg list: all messages there are.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "tools/vekmsg/terminal/wrapping.hpp"

namespace vek::tool {

namespace {

struct listArguments_t {
    colorOption_t color;
    bool isJson = false;

    void declare(argumentList_t &list) {
        list.addFlag(isJson, "--json", "The whole catalogue with keys, kinds, members and defaults, as JSON");
        color.declare(list);
    }
};

int runList(const listArguments_t &arguments) {
    std::string out;
    if (arguments.isJson) {
        inspect::appendCatalogueJson(out);
        out += '\n';
        writeAll(1, out);
        return exitFine;
    }
    const colours_t colours = arguments.color.colours();
    for (const inspect::messageSchema_t &message : inspect::schema().messages()) {
        const bool hasRecord = message.record != nullptr;
        out.append(colours.bold).append(std::to_string(message.id)).append(colours.reset).append("  ");
        out.append(colours.cyan).append(padded(hasRecord ? message.record->name : "-", 24)).append(colours.reset);
        out.append(" ").append(hasRecord ? message.record->purpose() : "No structure.").append("\n");
    }
    writeAll(1, out);
    return exitFine;
}

const commandOf_t<listArguments_t> listCommand(
    {.order = 150, .name = "list", .about = "All messages there are", .examples = "  vekmsg list | grep -i cassette"},
    runList);

} // namespace

} // namespace vek::tool
