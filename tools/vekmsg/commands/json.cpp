// vekmsg json: messages for programs, whole or as the rows of the archive's tables.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/tableNames.hpp"
#include "tools/vekmsg/reading/messageJson.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "vek/inspect/archive/rowJson.hpp"
#include "vek/inspect/check/plainlyClean.hpp"

namespace vek::tool {

namespace {

struct jsonArguments_t {
    readingOptions_t reading;
    sourceOption_t source;
    bool isRows = false;
    std::string table; ///< the one whose rows are wanted

    void declare(argumentList_t &list) {
        reading.declareFiles(list);
        list.addFlag(isRows, "--rows",
                     "The rows of the tables of vekmsg schema, a line each, which begins with the table's name");
        list.add(table, {"--table", "The rows of this table alone, without its name", "TABLE"});
        source.declare(list);
        reading.declare(list);
    }
};

class jsonTask_t final : public task_t {
public:
    explicit jsonTask_t(const timeFinder_t &times) : times_(times) {}

    std::unique_ptr<task_t> fork() const override { return std::make_unique<jsonTask_t>(times_); }

    void take(const item_t &item) override {
        const messagePlace_t place{item.file, item.line, item.offset, item.before, times_.in(item.lineHead)};
        if (const std::optional<inspect::writtenMessage_t> message = inspect::plainlyClean(item.whole))
            appendMessageJson(out, place, *message);
        else
            appendMessageJson(out, place, item.tree(), inspect::check(item.tree()));
    }

private:
    const timeFinder_t &times_;
};

class rowsTask_t final : public task_t, private inspect::rowSink_t {
public:
    rowsTask_t(const std::string &source, const timeFinder_t &times, const inspect::table_t *only)
        : source_(source), times_(times), only_(only) {}

    std::unique_ptr<task_t> fork() const override { return std::make_unique<rowsTask_t>(source_, times_, only_); }

    void take(const item_t &item) override {
        const std::string_view source = source_.empty() ? item.file : std::string_view(source_);
        rows_.make(item.tree(), {source, item.offset, item.line, times_.in(item.lineHead)}, *this);
    }

private:
    void row(const inspect::row_t &row) override {
        if (only_ != nullptr && only_ != &row.table)
            return;
        inspect::appendRowJson(out, row, only_ == nullptr);
        out += '\n';
    }

    const std::string &source_;
    const timeFinder_t &times_;
    const inspect::table_t *only_;
    inspect::rowMaker_t rows_;
};

int runRows(const jsonArguments_t &arguments) {
    const timeFinder_t times(arguments.reading.timeExpression, arguments.reading.zone);
    rowsTask_t task(arguments.source.source, times, tableNamed(arguments.table));
    reader_t reader(arguments.reading, task);
    reader.run();
    return reader.statusWithMessages();
}

int runJson(const jsonArguments_t &arguments) {
    if (arguments.isRows || !arguments.table.empty())
        return runRows(arguments);
    if (!arguments.source.source.empty())
        throw usageError_t("--source belongs to rows: write json --rows --source " + arguments.source.source);
    const timeFinder_t times(arguments.reading.timeExpression, arguments.reading.zone);
    jsonTask_t task(times);
    reader_t reader(arguments.reading, task);
    reader.run();
    return reader.statusWithMessages();
}

const commandOf_t<jsonArguments_t>
    jsonCommand({.order = 70,
                 .name = "json",
                 .about = "Messages as JSON, one line each, with where they stood and their problems",
                 .examples = "  vekmsg json device.log | jq -c 'select(.problems)'\n"
                             "  vekmsg json focus.txt | jq -c '.focusValue_t.FOCUS_VALUE = 3' | vekmsg seal\n"
                             "  vekmsg json --follow device.log | lnav\n"
                             "  vekmsg json --table focus_value device.log"},
                runJson);

} // namespace

} // namespace vek::tool
