// vekmsg new: a message with the defaults.
#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/problem.hpp"
#include "tools/vekmsg/reading/filter.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "vek/inspect/message/written.hpp"

namespace vek::tool {

int runNew(const options_t &options) {
    const std::int32_t id = idsNamed({*options.id}).front();
    const std::optional<std::string> text =
        inspect::newMessage(id, options.echoTag.value_or(-1), options.sequenceNumber.value_or(0));
    if (!text)
        throw usageError_t(*options.id + " has no structure, so no defaults; vekmsg list shows what has one");
    writeAll(1, isTerminal(1) ? *text + "\n" : *text);
    return exitFine;
}

} // namespace vek::tool
