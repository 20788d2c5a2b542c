// vekmsg schema: the tables of the archive as SQL, and all JSON as JSON Schema.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/reading/filter.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/archive/rowJson.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

struct schemaArguments_t {
    std::vector<std::string> messages; ///< ids or names
    std::string dialect;
    bool isJson = false;

    void declare(argumentList_t &list) {
        list.add(messages, {"ID|NAME", "Only the tables of these messages, and those of all messages"});
        list.add(dialect, {.names = "--sql",
                           .about = "The tables; whose SQL: sqlite or clickhouse",
                           .type = "DATABASE",
                           .oneOf = {"sqlite", "clickhouse"}});
        list.addFlag(isJson, "--json", "The JSON Schema (draft 7) of all JSON that vekmsg writes and reads");
    }
};

using inspect::archiveTables;
using inspect::table_t;

std::string schemaOfJson() {
    constexpr std::string_view documents[] = {"row"};
    std::string text;
    inspect::appendJsonSchema(text, inspect::rowDefinitions(), documents);
    return text;
}

int runSchema(const schemaArguments_t &arguments) {
    if (arguments.isJson == !arguments.dialect.empty() || (arguments.isJson && !arguments.messages.empty()))
        throw usageError_t("one schema at a time: --sql sqlite or --sql clickhouse gives the tables, --json the JSON "
                           "Schema of all JSON");
    if (arguments.isJson) {
        writeAll(1, schemaOfJson());
        return exitFine;
    }
    std::vector<const table_t *> tables;
    if (arguments.messages.empty()) {
        for (const table_t &table : archiveTables().all())
            tables.push_back(&table);
    } else {
        tables = {&archiveTables().messages(), &archiveTables().problems()};
        for (const std::int32_t id : idsNamed(arguments.messages))
            if (const inspect::messageSchema_t *message = inspect::schema().find(id))
                for (const table_t *table : archiveTables().familyOf(*message))
                    if (std::find(tables.begin(), tables.end(), table) == tables.end())
                        tables.push_back(table);
    }
    std::string text;
    if (arguments.dialect == "sqlite")
        inspect::appendSqliteSchema(text, tables);
    else
        inspect::appendClickhouseSchema(text, tables);
    writeAll(1, text);
    return exitFine;
}

const commandOf_t<schemaArguments_t>
    schemaCommand({.order = 140,
                   .name = "schema",
                   .about = "What programs can expect: the tables of messages as SQL, all JSON as JSON Schema",
                   .examples = "  vekmsg schema --sql sqlite | sqlite3 empty.sqlite\n"
                               "  vekmsg schema --sql clickhouse FocusValue DeviceStatus | clickhouse-client -n\n"
                               "  vekmsg schema --json > vekmsg.schema.json"},
                  runSchema);

} // namespace

} // namespace vek::tool
