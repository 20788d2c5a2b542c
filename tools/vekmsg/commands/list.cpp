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
    constexpr std::size_t column = 31; // of the purposes
    const std::size_t width = isTerminal(1) ? pageWidth() : SIZE_MAX;
    for (const inspect::messageSchema_t &message : inspect::schema().messages()) {
        const bool hasRecord = message.record != nullptr;
        const std::string_view name = hasRecord ? message.record->name : "-";
        const std::string_view purpose = hasRecord ? message.record->purpose() : "No structure.";
        out.append(colours.bold).append(std::to_string(message.id)).append(colours.reset).append("  ");
        if (column + purpose.size() <= width || width >= 2 * column) {
            const std::string line = wrapped(std::string(column, ' ') + std::string(purpose), width, column);
            out.append(colours.cyan)
                .append(padded(name, column - 7))
                .append(colours.reset)
                .append(line, column - 1)
                .append("\n");
        } else { // below the name
            out.append(colours.cyan).append(name).append(colours.reset).append("\n");
            out.append(wrapped("    " + std::string(purpose), width, 4)).append("\n");
        }
    }
    writeAll(1, out);
    return exitFine;
}

const commandOf_t<listArguments_t> listCommand(
    {.order = 150, .name = "list", .about = "All messages there are", .examples = "  vekmsg list | grep -i cassette"},
    runList);

} // namespace

} // namespace vek::tool
