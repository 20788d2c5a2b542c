// vekmsg table: values as CSV or TSV.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/reading/csv.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/inspect/words/nearest.hpp"

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

    std::uint64_t rows = 0;

    void header() {
        for (const std::string &key : arguments_.keys)
            cell(key, &key == &arguments_.keys.front());
        out += lineEnd();
    }

    // What may be a column besides paths: something of the place where a message was found.
    static constexpr std::string_view placeNames[] = {"time", "file", "line", "offset", "before",
                                                      "id",   "name", "echo", "seq",    "length"};
    static bool isPlace(std::string_view key) { return std::ranges::find(placeNames, key) != std::end(placeNames); }

    void take(const item_t &item) override {
        values_.clear();
        bool hasValue = false, hasPath = false;
        for (const std::string &key : arguments_.keys) {
            const bool isPath = !isPlace(key);
            std::optional<std::string> value = isPath ? inspect::valueAt(item.tree(), key) : ofPlace(item, key);
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

    std::optional<std::string> ofPlace(const item_t &item, std::string_view key) const {
        if (key == "time") {
            const std::optional<logTime_t> time = times_.in(item.lineHead);
            return time ? std::optional(time->inWords()) : std::nullopt;
        }
        if (key == "file")
            return std::string(item.file);
        if (key == "line")
            return std::to_string(item.line);
        if (key == "offset")
            return std::to_string(item.offset);
        if (key == "before")
            return std::string(item.before);
        if (key == "name")
            return item.tree().record() != nullptr ? std::string(item.tree().record()->name) : std::string();
        return inspect::valueAt(item.tree(), "@" + std::string(key));
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

// The key at the end of a path, without an element's number.
std::string_view lastKey(std::string_view path) {
    path.remove_prefix(path.rfind('.') + 1);
    return path.substr(0, path.find('['));
}

void checkKeys(const tableArguments_t &arguments) {
    const std::vector<std::string_view> keys = inspect::schema().keys();
    for (const std::string &path : arguments.keys) {
        const std::string_view key = lastKey(path);
        const inspect::envelopeParts_t anyEnvelope;
        const bool isOfHeader = path.starts_with('@') && inspect::headerNumberAt(anyEnvelope, path) != nullptr;
        if (tableTask_t::isPlace(path) || isOfHeader || std::ranges::find(keys, key) != keys.end())
            continue;
        std::vector<std::string_view> candidates = keys;
        if (path.starts_with('@'))
            candidates = {"@id", "@echo", "@seq", "@length"};
        candidates.insert(candidates.end(), std::begin(tableTask_t::placeNames), std::end(tableTask_t::placeNames));
        throw usageError_t("--keys " + path + ": no message has this key; " +
                           inspect::didYouMean(key, candidates, "vekmsg describe shows the keys of a message"));
    }
}

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
    checkKeys(arguments);
    const timeFinder_t times(arguments.reading.timeExpression);
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
