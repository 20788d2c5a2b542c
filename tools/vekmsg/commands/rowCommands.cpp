// vekmsg schema, and json --rows: the tables of the archive, and what goes into them.
#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "vek/inspect/archive/rowJson.hpp"
#include "vek/inspect/archive/sql.hpp"
#include "vek/inspect/words/nearest.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

using inspect::archiveTables;
using inspect::table_t;

class rowsTask_t final : public task_t, private inspect::rowSink_t {
public:
    rowsTask_t(const options_t &options, const timeFinder_t &times, const table_t *only)
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
    const table_t *only_;
    inspect::rowMaker_t rows_;
};

const table_t *tableNamed(const std::string &name) {
    if (name.empty())
        return nullptr;
    if (const table_t *table = archiveTables().find(name))
        return table;
    std::vector<std::string_view> names;
    for (const table_t &table : archiveTables().all())
        names.push_back(table.name);
    const std::string_view near = inspect::nearest(name, names);
    throw usageError_t("--table " + name + ": there is no such table; " +
                       (near.empty() ? std::string("vekmsg schema --sql clickhouse shows all")
                                     : "did you mean " + std::string(near) + "?"));
}

} // namespace

int runRows(const options_t &options) {
    const timeFinder_t times(options.timeExpression);
    rowsTask_t task(options, times, tableNamed(options.table));
    reader_t reader(options, task);
    reader.run();
    return reader.status();
}

int runSchema(const options_t &options) {
    std::vector<const table_t *> tables;
    if (options.words.empty()) {
        for (const table_t &table : archiveTables().all())
            tables.push_back(&table);
    } else {
        tables = {&archiveTables().messages(), &archiveTables().problems()};
        for (const std::int32_t id : idsNamed(options.words))
            if (const inspect::messageSchema_t *message = inspect::schema().find(id))
                for (const table_t *table : archiveTables().familyOf(*message))
                    if (std::find(tables.begin(), tables.end(), table) == tables.end())
                        tables.push_back(table);
    }
    std::string text;
    if (options.sqlDialect == "sqlite")
        inspect::appendSqliteSchema(text, tables);
    else
        inspect::appendClickhouseSchema(text, tables);
    writeAll(1, text);
    return exitFine;
}

} // namespace vek::tool
