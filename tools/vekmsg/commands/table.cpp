// vekmsg table: values as CSV or TSV.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/reading/columns.hpp"
#include "tools/vekmsg/reading/csv.hpp"
#include "tools/vekmsg/reading/reader.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

struct tableArguments_t {
    readingOptions_t reading;
    std::vector<std::string> keys;
    bool isTabs = false, isOfOneKind = false;

    void declare(argumentList_t &list) {
        reading.declareFiles(list);
        list.add(
            keys,
            {.names = "--keys",
             .about =
                 "The columns: paths of values; time, file, line, offset, before, id, name, echo, seq, length. When "
                 "they are not given: time, seq and all keys of the message that --id says",
             .type = "KEY,...",
             .separator = ',',
             .pages = {"keys"}});
        list.addFlag(isTabs, "--tsv", "Tabs instead of commas");
        reading.declare(list);
    }
};

class tableTask_t final : public task_t {
public:
    tableTask_t(const tableArguments_t &arguments, const timeFinder_t &times) : arguments_(arguments), times_(times) {}

    std::unique_ptr<task_t> fork() const override { return std::make_unique<tableTask_t>(arguments_, times_); }

    void join(task_t &later) override { rows += static_cast<tableTask_t &>(later).rows; }
    bool needsLines() const override { return std::ranges::find(arguments_.keys, "line") != arguments_.keys.end(); }

    std::uint64_t rows = 0;

    void header() {
        for (const std::string &key : arguments_.keys)
            cell(key, &key == &arguments_.keys.front());
        out += lineEnd();
    }

    void take(const item_t &item) override {
        if (!mayHaveValue(item))
            return;
        values_.clear();
        bool hasValue = false, hasPath = false;
        for (const std::string &key : arguments_.keys) {
            const bool isPath = !isPlaceColumn(key);
            std::optional<std::string> value = columnOf(item, times_, key);
            hasPath |= isPath;
            hasValue |= isPath && value;
            values_.push_back(value ? std::move(*value) : std::string());
        }
        if (hasPath && !hasValue && !arguments_.isOfOneKind)
            return; // a message of another kind
        ++rows;
        for (const std::string &value : values_)
            cell(value, &value == &values_.front());
        out += lineEnd();
    }

private:
    // RFC 4180 has CR LF for commas; spreadsheets and plotters take LF from either.
    static std::string_view lineEnd() { return "\n"; }

    // A message of another kind is told without its pairs.
    bool mayHaveValue(const item_t &item) const {
        const auto isPlace = [](const std::string &key) { return isPlaceColumn(key); };
        return arguments_.isOfOneKind || std::ranges::all_of(arguments_.keys, isPlace) ||
               std::ranges::any_of(arguments_.keys,
                                   [&](const std::string &key) { return !isPlace(key) && mayHavePath(item, key); });
    }

    void cell(std::string_view value, bool isFirst) {
        if (!isFirst)
            out += arguments_.isTabs ? '\t' : ',';
        if (arguments_.isTabs) {
            for (const char c : value)
                out += c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
        } else {
            appendCsvCell(out, value);
        }
    }

    const tableArguments_t &arguments_;
    const timeFinder_t &times_;
    std::vector<std::string> values_;
};

// The values of a record that are no groups, and its lists.
void addKeys(std::vector<std::string> &keys, const inspect::recordSchema_t &record, const std::string &path) {
    for (const inspect::fieldSchema_t &field : record.fields)
        if (const std::string own = path + std::string(field.key); field.record() != nullptr && !field.isList())
            addKeys(keys, *field.record(), own + ".");
        else
            keys.push_back(own);
}

std::vector<std::string> allKeys(const std::vector<std::string> &words) {
    const std::vector<std::int32_t> ids = idsNamed(words, "--id");
    const inspect::messageSchema_t *message = ids.size() == 1 ? inspect::schema().find(ids.front()) : nullptr;
    if (message == nullptr || message->record == nullptr)
        throw usageError_t(
            "which columns? --keys time,seq,FOCUS_VALUE names them, and --id FocusValue takes all keys of "
            "that message");
    std::vector<std::string> keys{"time", "seq"};
    addKeys(keys, *message->record, {});
    return keys;
}

int runTable(const tableArguments_t &given) {
    tableArguments_t arguments = given;
    arguments.isOfOneKind = arguments.keys.empty();
    if (arguments.isOfOneKind)
        arguments.keys = allKeys(arguments.reading.ids);
    for (const std::string &key : arguments.keys)
        checkColumn("--keys", key);
    const timeFinder_t times(arguments.reading.timeExpression, arguments.reading.zone);
    tableTask_t task(arguments, times);
    task.header();
    reader_t reader(arguments.reading, task);
    reader.run();
    const exitCode_t status = reader.statusWithMessages();
    if (status != exitFine || task.rows > 0)
        return status;
    complain("none of these keys in what was read; vekmsg flat shows the paths of all values");
    return exitDifferences;
}

const commandOf_t<tableArguments_t>
    tableCommand({.order = 90,
                  .name = "table",
                  .about = "Values as a table (CSV, or TSV) for spreadsheets and plots",
                  .examples = "  vekmsg table --keys time,FOCUS_VALUE device.log > focus.csv\n"
                              "  vekmsg table --id FocusValue device.log\n"
                              "  vekmsg table --tsv --keys line,seq,STATUS,LOW_STATUS --id DeviceStatus device.log"},
                 runTable);

} // namespace

} // namespace vek::tool
