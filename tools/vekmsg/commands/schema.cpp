// vekmsg schema: the tables of the archive, as SQL.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/problem.hpp"
#include "tools/vekmsg/reading/filter.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

struct schemaArguments_t {
    std::vector<std::string> messages; ///< ids or names
    std::string dialect;

    void declare(argumentList_t &list) {
        list.add(messages, {"ID|NAME", "Only the tables of these messages, and those of all messages"});
        list.add(dialect, {.names = "--sql",
                           .about = "Whose SQL: sqlite or clickhouse",
                           .type = "DATABASE",
                           .isRequired = true,
                           .oneOf = {"sqlite", "clickhouse"}});
    }
};

using inspect::archiveTables;
using inspect::table_t;

int runSchema(const schemaArguments_t &arguments) {
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
                   .about = "The tables that messages are kept in for queries, as SQL",
                   .examples = "  vekmsg schema --sql sqlite | sqlite3 empty.sqlite\n"
                               "  vekmsg schema --sql clickhouse FocusValue DeviceStatus | clickhouse-client -n"},
                  runSchema);

} // namespace

} // namespace vek::tool
