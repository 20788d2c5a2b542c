// vekmsg flat: messages as lines of "path = value".
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/reading/reader.hpp"

namespace vek::tool {

namespace {

struct flatArguments_t {
    readingOptions_t reading;

    void declare(argumentList_t &list) {
        reading.declareFiles(list);
        reading.declare(list);
    }
};

class flatTask_t final : public task_t {
public:
    std::unique_ptr<task_t> fork() const override { return std::make_unique<flatTask_t>(); }

    void take(const item_t &item) override {
        if (item.form == inspect::form_t::none)
            out += "# " + item.place() + "\n";
        inspect::appendFlat(out, item.tree());
    }
};

int runFlat(const flatArguments_t &arguments) {
    flatTask_t task;
    reader_t reader(arguments.reading, task);
    reader.run();
    return reader.statusWithMessages();
}

const commandOf_t<flatArguments_t> flatCommand({.order = 80,
                                                .name = "flat",
                                                .about = "Messages as lines of \"path = value\", for grep",
                                                .examples = "  vekmsg flat device.log | grep MEDIA_NAME\n"
                                                            "  diff <(vekmsg flat a.txt) <(vekmsg flat b.txt)"},
                                               runFlat);

} // namespace

} // namespace vek::tool
