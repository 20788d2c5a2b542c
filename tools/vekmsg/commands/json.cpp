// vekmsg json: messages for programs, whole or as the rows of the archive's tables.
#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "vek/inspect/archive/rowJson.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/words/nearest.hpp"

#include <algorithm>
#include <charconv>

namespace vek::tool {

namespace {

void appendNumber(std::string &out, std::uint64_t number) {
    char digits[24];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

class jsonTask_t final : public task_t {
public:
    jsonTask_t(const options_t &options, const timeFinder_t &times) : options_(options), times_(times) {}

    std::unique_ptr<task_t> fork() const override { return std::make_unique<jsonTask_t>(options_, times_); }

    void take(const item_t &item) override {
        members_ = "\"file\":";
        inspect::appendJsonString(members_, item.file);
        members_ += ",\"line\":";
        appendNumber(members_, item.line);
        members_ += ",\"offset\":";
        appendNumber(members_, item.offset);
        if (!item.before.empty()) {
            members_ += ",\"before\":";
            inspect::appendJsonString(members_, item.before);
        }
        if (const std::optional<logTime_t> time = times_.in(item.lineHead)) {
            members_ += ",\"time\":\"";
            members_ += time->inWords();
            members_ += '"';
        }
        const inspect::tree_t &tree = item.tree();
        findings_.clear();
        if (!inspect::isClean(tree))
            findings_ = inspect::check(tree);
        const bool hasErrors = std::any_of(findings_.begin(), findings_.end(), [](const inspect::finding_t &finding) {
            return finding.severity == inspect::severity_t::error;
        });
        if (!findings_.empty())
            members_ += hasErrors ? ",\"level\":\"error\"" : ",\"level\":\"warning\"";
        inspect::jsonOptions_t json;
        json.members = members_;
        json.findings = findings_;
        inspect::appendJson(out, tree, json);
        out += '\n';
    }

private:
    const options_t &options_;
    const timeFinder_t &times_;
    std::string members_;
    std::vector<inspect::finding_t> findings_;
};

class rowsTask_t final : public task_t, private inspect::rowSink_t {
public:
    rowsTask_t(const options_t &options, const timeFinder_t &times, const inspect::table_t *only)
        : options_(options), times_(times), only_(only) {}

    std::unique_ptr<task_t> fork() const override { return std::make_unique<rowsTask_t>(options_, times_, only_); }

    void take(const item_t &item) override {
        const std::string_view source = options_.source.empty() ? item.file : std::string_view(options_.source);
        rows_.make(item.tree(), {source, item.offset, item.line, times_.in(item.lineHead)}, *this);
    }

private:
    void row(const inspect::row_t &row) override {
        if (only_ != nullptr && only_ != &row.table)
            return;
        inspect::appendRowJson(out, row, only_ == nullptr);
        out += '\n';
    }

    const options_t &options_;
    const timeFinder_t &times_;
    const inspect::table_t *only_;
    inspect::rowMaker_t rows_;
};

const inspect::table_t *tableNamed(const std::string &name) {
    if (name.empty())
        return nullptr;
    if (const inspect::table_t *table = inspect::archiveTables().find(name))
        return table;
    std::vector<std::string_view> names;
    for (const inspect::table_t &table : inspect::archiveTables().all())
        names.push_back(table.name);
    const std::string_view near = inspect::nearest(name, names);
    throw usageError_t("--table " + name + ": there is no such table; " +
                       (near.empty() ? std::string("vekmsg schema --sql clickhouse shows all")
                                     : "did you mean " + std::string(near) + "?"));
}

int runRows(const options_t &options) {
    const timeFinder_t times(options.timeExpression);
    rowsTask_t task(options, times, tableNamed(options.table));
    reader_t reader(options, task);
    reader.run();
    return reader.status();
}

} // namespace

int runJson(const options_t &options) {
    if (options.isRows || !options.table.empty())
        return runRows(options);
    if (!options.source.empty())
        throw usageError_t("--source belongs to rows: write json --rows --source " + options.source);
    const timeFinder_t times(options.timeExpression);
    jsonTask_t task(options, times);
    reader_t reader(options, task);
    reader.run();
    return reader.status();
}

} // namespace vek::tool
