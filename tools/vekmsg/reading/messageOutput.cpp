#include "tools/vekmsg/reading/messageOutput.hpp"

namespace vek::tool {

void messageTask_t::take(const item_t &item) {
    const std::optional<std::string> text = made(item);
    hasFailed = hasFailed || !text;
    if (!text)
        return;
    if (rewriter != nullptr)
        return isAsItWas ? void() : rewriter->replace(item, *text);
    if (!isFirst)
        out += '\n';
    isFirst = false;
    out += *text;
}

int writeMessages(const readingOptions_t &options, bool isInPlace, messageTask_t &task) {
    int status = exitFine;
    if (!isInPlace) {
        reader_t reader(options, task);
        reader.run();
        if (reader.taken() > 1 || (isTerminal(1) && !task.isFirst))
            task.out += '\n';
        reader.flush();
        status = reader.statusWithMessages();
    } else if (options.head || options.follows) {
        throw usageError_t("--in-place goes with neither --head nor --follow");
    } else {
        for (const std::string &name : options.files) {
            const readingOptions_t one = options.ofFile(name);
            rewriter_t rewriter(name);
            task.rewriter = &rewriter;
            reader_t reader(one, task);
            reader.run();
            const int own = task.hasFailed ? exitDifferences : reader.statusWithMessages();
            if (own == exitFine)
                rewriter.commit(task.keepsBackup);
            else
                complain(name + " stays as it was");
            status = std::max(status, own);
        }
    }
    return std::max<int>(status, task.hasFailed ? exitDifferences : task.status);
}

} // namespace vek::tool
