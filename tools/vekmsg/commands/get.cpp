// vekmsg get: one value of each message.
#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "vek/inspect/change/change.hpp"

namespace vek::tool {

namespace {

class getTask_t final : public task_t {
public:
    explicit getTask_t(const options_t &options) : path_(options.path) {}

    std::unique_ptr<task_t> fork() const override { return std::make_unique<getTask_t>(*this); }
    void join(task_t &later) override { found += static_cast<getTask_t &>(later).found; }

    void take(const item_t &item) override {
        const std::optional<std::string> value = inspect::valueAt(item.tree(), path_);
        if (!value)
            return;
        ++found;
        out += *value;
        out += '\n';
    }

    std::uint64_t found = 0;

private:
    std::string path_;
};

} // namespace

int runGet(const options_t &options) {
    getTask_t task(options);
    reader_t reader(options, task);
    reader.run();
    const exitCode_t status = reader.statusWithMessages();
    if (status == exitFine && task.found == 0) {
        complain("no " + options.path + " in what was read; vekmsg flat shows the paths of all values");
        return exitDifferences;
    }
    return status;
}

} // namespace vek::tool
