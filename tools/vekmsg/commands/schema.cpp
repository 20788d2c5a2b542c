// vekmsg schema: the tables of the archive, as SQL.
#include "tools/vekmsg/commands/commands.hpp"
#include "tools/vekmsg/problem.hpp"
#include "tools/vekmsg/reading/filter.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <algorithm>

namespace vek::tool {

using inspect::archiveTables;
using inspect::table_t;

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
