// vekmsg get and set: single values.
#include "vek/inspect/change/change.hpp"

#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/reading/messageOutput.hpp"

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

struct assignment_t {
    std::string path, value;
};

class setTask_t final : public messageTask_t {
public:
    explicit setTask_t(const options_t &options) : messageTask_t(options) {
        for (const std::string &word : options.words) {
            const std::size_t place = word.find('=');
            assignments_.push_back({word.substr(0, place), word.substr(place + 1)});
        }
    }

private:
    std::optional<std::string> made(const item_t &item) override {
        std::string text(item.text), words;
        std::size_t oldLength = 0, newLength = 0;
        for (const assignment_t &assignment : assignments_) {
            inspect::change_t change = inspect::changed(inspect::tree_t(text), assignment.path, assignment.value);
            if (!change.isDone()) {
                complain(item.place() + ": error: " + change.error);
                return std::nullopt;
            }
            oldLength = words.empty() ? change.oldLength : oldLength;
            newLength = change.newLength;
            words += (words.empty() ? "" : ", ") + assignment.path + " " +
                     (change.oldValue.empty() ? "(nothing)" : change.oldValue) + " -> " +
                     (change.newValue.empty() ? "(nothing)" : change.newValue);
            text = std::move(change.text);
        }
        if (!options_.isQuiet)
            complain((item.form == inspect::form_t::none ? item.place() + ": " : "") + words + ", length " +
                     std::to_string(oldLength) + " -> " + std::to_string(newLength));
        return text;
    }

    std::vector<assignment_t> assignments_;
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

int runSet(const options_t &options) {
    setTask_t task(options);
    return writeMessages(options, task);
}

} // namespace vek::tool
