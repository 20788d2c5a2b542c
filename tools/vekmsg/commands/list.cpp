// vekmsg list: all messages there are.
#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/problem.hpp"
#include "tools/vekmsg/terminal/colours.hpp"
#include "tools/vekmsg/terminal/wrapping.hpp"

namespace vek::tool {

int runList(const options_t &options) {
    std::string out;
    if (options.isJson) {
        inspect::appendCatalogueJson(out);
        out += '\n';
        writeAll(1, out);
        return exitFine;
    }
    const colours_t colours = colours_t::of(options.color);
    for (const inspect::messageSchema_t &message : inspect::schema().messages()) {
        const bool hasRecord = message.record != nullptr;
        out.append(colours.bold).append(std::to_string(message.id)).append(colours.reset).append("  ");
        out.append(colours.cyan).append(padded(hasRecord ? message.record->name : "-", 24)).append(colours.reset);
        out.append(" ").append(hasRecord ? message.record->purpose() : "No structure.").append("\n");
    }
    writeAll(1, out);
    return exitFine;
}

} // namespace vek::tool
