#include "tools/vekmsg/load/sqlite/rowWriter.hpp"

#include "vek/inspect/forms/forms.hpp"

#include <algorithm>
#include <utility>

namespace vek::tool {

using inspect::cell_t;

// Further rows would gain little, and each value has its room in a statement.
rowWriter_t::rowWriter_t(database_t &database, inspect::sqliteTable_t table)
    : database_(&database), table_(std::move(table)), columns_(inspect::sqliteColumns(table_).size()),
      rowsAtOnce_(std::clamp<std::size_t>(256 / columns_, 1, 32)) {}

void rowWriter_t::add(const cell_t &cell) {
    if (cell.kind != cell_t::kind_t::text) {
        cells_.push_back(cell);
        return;
    }
    const std::string_view text = inspect::wellFormed(cell.text, room_);
    cells_.push_back({cell_t::kind_t::text, static_cast<std::int64_t>(texts_.size()), 0.0, {}, text.size()});
    texts_ += text;
}

void rowWriter_t::endRow() {
    constexpr std::size_t mostBytes = std::size_t{1} << 16;
    if (cells_.size() == rowsAtOnce_ * columns_ || texts_.size() >= mostBytes)
        flush();
}

void rowWriter_t::flush() {
    const std::size_t rows = cells_.size() / columns_;
    if (rows == rowsAtOnce_)
        insert(many_, 0, rows);
    else
        for (std::size_t row = 0; row < rows; ++row)
            insert(one_, row, 1);
    cells_.clear();
    texts_.clear();
}

void rowWriter_t::insert(std::optional<statement_t> &statement, std::size_t first, std::size_t rows) {
    if (!statement)
        statement.emplace(*database_, inspect::sqliteInsert(table_, rows));
    for (std::size_t i = 0; i < rows * columns_; ++i) {
        const cell_t &cell = cells_[first * columns_ + i];
        const int parameter = static_cast<int>(i) + 1;
        if (cell.kind == cell_t::kind_t::text)
            statement->bind(parameter,
                            std::string_view(texts_).substr(static_cast<std::size_t>(cell.integer), cell.count));
        else
            statement->bind(parameter, cell);
    }
    statement->run();
}

} // namespace vek::tool
