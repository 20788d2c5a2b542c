// vekmsg get: one value of each message.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/reading/columns.hpp"
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
                        .isRequired = true,
                        .pages = {"keys"}});
        reading.declareFiles(list);
        reading.declare(list);
    }
};

class getTask_t final : public task_t {
public:
    explicit getTask_t(const std::string &path) : path_(path) {}

    std::unique_ptr<task_t> fork() const override { return std::make_unique<getTask_t>(path_); }
    void join(task_t &later) override {
        found += static_cast<getTask_t &>(later).found;
        ofDamaged += static_cast<getTask_t &>(later).ofDamaged;
    }
    bool needsLines() const override { return false; }

    void take(const item_t &item) override {
        const std::optional<std::string> value = inspect::valueAt(item.tree(), path_);
        if (!value)
            return;
        ++found;
        ofDamaged += item.isDamaged && !path_.starts_with('@') ? 1 : 0;
        out += *value;
        out += '\n';
    }

    std::uint64_t found = 0, ofDamaged = 0;

private:
    std::string path_;
};

int runGet(const getArguments_t &arguments) {
    checkIsNoFile("get", arguments.path);
    getTask_t task(arguments.path);
    reader_t reader(arguments.reading, task);
    reader.run();
    const exitCode_t status = reader.statusWithMessages();
    reader.flush();
    if (task.ofDamaged > 0)
        complain((task.found == 1 ? "the value stands in a damaged message"
                                  : std::to_string(task.ofDamaged) + " of the values stand in damaged messages") +
                 std::string("; vekmsg check says what a host makes of ") + (task.ofDamaged == 1 ? "it" : "them"));
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
