// rowWriter_t: rows of one table on their way into SQLite. They go as many by one statement as it can be told at once,
// which is half of the time: until flush() some of them are only here.
//
// Everything throws databaseError_t. One thread at a time.
#pragma once

#include "tools/vekmsg/load/sqlite/database.hpp"
#include "vek/inspect/archive/rows.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace vek::tool {

class rowWriter_t {
public:
    rowWriter_t(database_t &database, inspect::sqliteTable_t table);

    /// The values of a row, one a column, in their order; texts are copied.
    void add(const inspect::cell_t &cell);
    void endRow();
    void flush();

private:
    void insert(std::optional<statement_t> &statement, std::size_t first, std::size_t rows);

    database_t *database_;
    inspect::sqliteTable_t table_;
    std::size_t columns_, rowsAtOnce_;
    std::optional<statement_t> one_, many_; // made when they are needed first
    std::vector<inspect::cell_t> cells_;    // texts by their places in texts_
    std::string texts_, room_;
};

} // namespace vek::tool
