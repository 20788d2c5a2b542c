// vekmsg flat: messages as lines of "path = value".
#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/reading/reader.hpp"

namespace vek::tool {

namespace {

class flatTask_t final : public task_t {
public:
    std::unique_ptr<task_t> fork() const override { return std::make_unique<flatTask_t>(); }

    void take(const item_t &item) override {
        if (item.form == inspect::form_t::none)
            out += "# " + item.place() + "\n";
        inspect::appendFlat(out, item.tree());
    }
};

} // namespace

int runFlat(const options_t &options) {
    flatTask_t task;
    reader_t reader(options, task);
    reader.run();
    return reader.status();
}

} // namespace vek::tool
