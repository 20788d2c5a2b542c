// vekmsg set: values changed, every other byte as it was.
#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/reading/messageOutput.hpp"
#include "vek/inspect/change/change.hpp"

namespace vek::tool {

namespace {

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

int runSet(const options_t &options) {
    setTask_t task(options);
    return writeMessages(options, task);
}

} // namespace vek::tool
