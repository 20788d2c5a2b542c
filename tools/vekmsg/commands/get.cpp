// vekmsg get: one value of each message.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "vek/inspect/message/valueAt.hpp"

namespace vek::tool {

namespace {

struct getArguments_t {
    readingOptions_t reading;
    std::string path;

    void declare(argumentList_t &list) {
        list.add(path, {.names = "PATH",
                        .about = "The key, with those it stands in; @id, @echo, @seq, @length",
                        .isRequired = true});
        reading.declareFiles(list);
        reading.declare(list);
    }
};

class getTask_t final : public task_t {
public:
    explicit getTask_t(const std::string &path) : path_(path) {}

    std::unique_ptr<task_t> fork() const override { return std::make_unique<getTask_t>(*this); }
    void join(task_t &later) override { found += static_cast<getTask_t &>(later).found; }

    void take(const item_t &item) override {
        const std::optional<std::string> value = inspect::valueAt(item.tree(), path_);
        if (!value)
            return;
        ++found;
        if (item.isDamaged && item.whole.size() != item.text.size())
            complain(std::string(item.file) +
                     ": a host reads nothing of the message as it stands there; vekmsg check says why");
        out += *value;
        out += '\n';
    }

    std::uint64_t found = 0;

private:
    std::string path_;
};

int runGet(const getArguments_t &arguments) {
    getTask_t task(arguments.path);
    reader_t reader(arguments.reading, task);
    reader.run();
    const exitCode_t status = reader.statusWithMessages();
    if (status == exitFine && task.found == 0) {
        complain("no " + arguments.path + " in what was read; vekmsg flat shows the paths of all values");
        return exitDifferences;
    }
    return status;
}

const commandOf_t<getArguments_t>
    getCommand({.order = 40,
                .name = "get",
                .about = "Print one value of each message",
                .examples = "  vekmsg get FOCUS_VALUE focus.txt\n"
                            "  vekmsg get 'ARRAY_CASSETTE[0].VERSION.TYPE' cassettes.txt\n"
                            "  vekmsg get @seq device.log"},
               runGet);

} // namespace

} // namespace vek::tool
