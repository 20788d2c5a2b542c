// A table of the archive by the name that a person gives.
#pragma once

#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/archive/tables.hpp"
#include "vek/inspect/words/nearest.hpp"

namespace vek::tool {

/// Null when no name is given. Throws usageError_t with a suggestion when there is no such table.
inline const inspect::table_t *tableNamed(const std::string &name) {
    if (name.empty())
        return nullptr;
    if (const inspect::table_t *table = inspect::archiveTables().find(name))
        return table;
    std::vector<std::string_view> names;
    for (const inspect::table_t &table : inspect::archiveTables().all())
        names.push_back(table.name);
    throw usageError_t(
        "--table " + name + ": there is no such table; " +
        inspect::didYouMean(name, names,
                            "messages and problems are tables, and each kind of message has its own, such "
                            "as focus_value; vekmsg schema --sql clickhouse shows all of them"));
}

} // namespace vek::tool
