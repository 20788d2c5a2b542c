// Rows of the archive's tables from a message: one piece for every database and form of rows.
//
// A row's values are what a host reads: a text that is no number gives 0, and what a host ignores is in no column. An
// enumeration is the name that stands there, known or not. Texts have the characters that their codes stand for, and
// may hold any bytes.
#pragma once

#include "vek/inspect/archive/tables.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/log/logTime.hpp"
#include "vek/inspect/message/tree.hpp"

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

/// Where a message stood.
struct rowFront_t {
    std::string_view source;       ///< the log
    std::uint64_t byteOffset = 0;  ///< of its first byte in the log
    std::uint64_t line = 0;        ///< from 1
    std::optional<logTime_t> time; ///< that stands on the line
    std::uint64_t number = 0;      ///< of the log in an archive; 0: the rows are for none
};

/// A value of a row.
struct cell_t {
    enum class kind_t : std::uint8_t { null, integer, real, text, list };
    kind_t kind = kind_t::null;
    std::int64_t integer = 0; ///< also a boolean, 0 or 1; of a list, where it begins among row_t::listCells
    double real = 0.0;        ///< may be infinite
    std::string_view text;
    std::size_t count = 0; ///< of a list

    static cell_t ofInteger(std::int64_t value) { return {kind_t::integer, value, 0.0, {}, 0}; }
    static cell_t ofReal(double value) { return {kind_t::real, 0, value, {}, 0}; }
    static cell_t ofText(std::string_view value) { return {kind_t::text, 0, 0.0, value, 0}; }
};

/// One row. It and what it views are valid during rowSink_t::row() only.
struct row_t {
    const table_t &table;
    const rowFront_t &front;
    std::optional<std::int32_t> echoTag, sequenceNumber;
    bool isDamaged;
    std::span<const std::uint32_t> elements; ///< as many as the table's depth
    std::span<const cell_t> cells;           ///< one a column
    std::span<const cell_t> listCells;       ///< the elements of the row's lists

    /// The elements of a list column; none when the key is not there. They are never null.
    std::span<const cell_t> list(const cell_t &cell) const {
        return listCells.subspan(static_cast<std::size_t>(cell.integer), cell.count);
    }
};

class rowSink_t {
public:
    virtual void row(const row_t &row) = 0;

protected:
    ~rowSink_t() = default;
};

/// Keeps its memory from message to message. One thread at a time.
class rowMaker_t {
public:
    /// Makes every row of a message: in `messages`, in `problems` what check() finds, in its record's table and those
    /// of its lists. Throws std::bad_alloc, and what the sink throws.
    void make(const tree_t &tree, const rowFront_t &front, rowSink_t &sink);

private:
    void makeMessage();
    void makeProblems();
    void makeRecord(const table_t &table, const node_t *body);
    void fill(const recordColumns_t &columns, const node_t &body, std::vector<cell_t> &cells);
    void makeChildren(const recordColumns_t &columns, const node_t &body);
    void emit(const table_t &table, std::span<const cell_t> cells);
    cell_t listOf(const node_t &node);
    cell_t valueOf(const node_t &node);
    static cell_t defaultOf(const fieldSchema_t &field);
    cell_t kept(std::string text);

    const tree_t *tree_ = nullptr;
    const rowFront_t *front_ = nullptr;
    rowSink_t *sink_ = nullptr;
    bool isDamaged_ = false;
    std::vector<finding_t> findings_;
    std::vector<std::uint32_t> elements_;
    std::deque<std::vector<cell_t>> cells_; // of the rows in hand, by the depth of their tables
    std::vector<cell_t> listCells_;
    std::deque<std::string> texts_; // that don't stand in the message as a row has them
    std::size_t textCount_ = 0;
};

} // namespace vek::inspect
