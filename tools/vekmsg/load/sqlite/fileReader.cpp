// An SQLite archive as it stands at one moment; another process may write on.
#include "tools/vekmsg/load/archiveReader.hpp"
#include "tools/vekmsg/load/sqlite/archiveFile.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/words/words.hpp"

#include <map>

namespace vek::tool {

using namespace inspect;

namespace {

std::optional<std::int32_t> numberIn(const statement_t &row, int column) {
    return row.isNull(column) ? std::nullopt : std::optional(static_cast<std::int32_t>(row.integer(column)));
}

// The columns of a table that are no lists, or a list's value, behind the offset and the numbers of elements.
std::string selection(const sqliteTable_t &table) {
    std::string elements;
    for (std::size_t i = 0; i < table.depth; ++i)
        elements += ", " + quotedName(elementColumn(i));
    std::string names = "byte_offset" + elements;
    if (table.list != nullptr)
        names += ", value";
    else
        for (const column_t &column : table.table->columns)
            if (!column.isList)
                names += ", " + quotedName(column.name);
    return joined({"SELECT ", names, " FROM ", quotedName(table.name),
                   " WHERE source_id = ? AND byte_offset BETWEEN ? AND ? ORDER BY byte_offset", elements});
}

// One of the tables that stand for one of the archive's, row by row.
class cursor_t {
public:
    cursor_t(database_t &database, const sqliteTable_t &table)
        : statement_(database, selection(table)), list_(table.list), elements_(table.depth) {}

    void start(std::uint64_t log, std::uint64_t first, std::uint64_t last) {
        statement_.reset();
        statement_.bind(1, static_cast<std::int64_t>(log));
        statement_.bind(2, static_cast<std::int64_t>(first));
        statement_.bind(3, static_cast<std::int64_t>(last));
        step();
    }
    void step() {
        isThere_ = statement_.next();
        if (!isThere_)
            return;
        offset_ = static_cast<std::uint64_t>(statement_.integer(0));
        for (std::size_t i = 0; i < elements_.size(); ++i)
            elements_[i] = static_cast<std::uint32_t>(statement_.integer(static_cast<int>(i) + 1));
    }
    bool isThere() const { return isThere_; }
    std::uint64_t offset() const { return offset_; }
    const std::vector<std::uint32_t> &elements() const { return elements_; }
    const column_t *list() const { return list_; }

    cell_t cell(const column_t &column, std::size_t number, keptRows_t &rows) const {
        const int at = static_cast<int>(1 + elements_.size() + number);
        if (statement_.isNull(at))
            return {};
        switch (column.type) {
        case columnType_t::real64:
        case columnType_t::real32:
            return cell_t::ofReal(statement_.real(at));
        case columnType_t::text:
            return rows.text(jsonBytes(statement_.text(at)));
        default:
            return cell_t::ofInteger(statement_.integer(at));
        }
    }
    // Whether this is an element of a row's list.
    bool isOf(const keptRow_t &row) const {
        return isThere_ && offset_ == row.offset &&
               std::equal(row.elements.begin(), row.elements.end(), elements_.begin());
    }

private:
    statement_t statement_;
    const column_t *list_;
    std::vector<std::uint32_t> elements_;
    std::uint64_t offset_ = 0;
    bool isThere_ = false;
};

class fileReader_t final : public archiveReader_t {
public:
    explicit fileReader_t(const std::string &file) : database_(file, true) {
        database_.run("BEGIN");
        messages_.emplace(database_,
                          "SELECT byte_offset, line, id, echo_tag, sequence_number, log_time, damaged, text "
                          "FROM messages WHERE source_id = ? AND byte_offset >= ? ORDER BY byte_offset LIMIT ?");
    }

    const std::string &name() const override { return database_.file(); }

    std::vector<archivedLog_t> logs() override {
        std::vector<archivedLog_t> logs = logsIn(database_, "ORDER BY source_id");
        database_.confirm();
        return logs;
    }

    std::vector<message_t> messages(std::uint64_t log, std::uint64_t from, std::size_t most) override {
        std::vector<message_t> found;
        statement_t &row = *messages_;
        row.reset();
        row.bind(1, static_cast<std::int64_t>(log));
        row.bind(2, static_cast<std::int64_t>(from));
        row.bind(3, static_cast<std::int64_t>(most));
        while (row.next()) {
            message_t &one = found.emplace_back();
            one.offset = static_cast<std::uint64_t>(row.integer(0));
            one.line = static_cast<std::uint64_t>(row.integer(1));
            one.id = numberIn(row, 2);
            one.echoTag = numberIn(row, 3);
            one.sequenceNumber = numberIn(row, 4);
            std::size_t size = 0;
            if (const std::string time = row.text(5); !time.empty())
                one.time = readTime(time, size);
            one.isDamaged = row.integer(6) != 0;
            if (!row.isNull(7))
                one.text = jsonBytes(row.text(7));
        }
        database_.confirm();
        return found;
    }

    void read(const table_t &table, std::uint64_t log, std::uint64_t first, std::uint64_t last,
              keptRows_t &rows) override {
        std::vector<cursor_t> &cursors = cursors_[&table];
        if (cursors.empty())
            for (const sqliteTable_t &one : sqliteTablesOf(table))
                cursors.emplace_back(database_, one);
        for (cursor_t &cursor : cursors)
            cursor.start(log, first, last);
        for (cursor_t &main = cursors.front(); main.isThere(); main.step()) {
            keptRow_t &row = rows.rows.emplace_back();
            row.offset = main.offset();
            row.elements = main.elements();
            std::size_t scalars = 0, lists = 0;
            for (const column_t &column : table.columns)
                row.cells.push_back(column.isList ? list(cursors[++lists], row, rows)
                                                  : main.cell(column, scalars++, rows));
        }
        database_.confirm();
    }

private:
    static cell_t list(cursor_t &cursor, keptRow_t &row, keptRows_t &rows) {
        const std::size_t first = row.listCells.size();
        for (; cursor.isOf(row); cursor.step())
            row.listCells.push_back(cursor.cell(*cursor.list(), 0, rows));
        const std::size_t count = row.listCells.size() - first;
        return count == 0 ? cell_t{} : cell_t{cell_t::kind_t::list, static_cast<std::int64_t>(first), 0.0, {}, count};
    }

    database_t database_;
    std::optional<statement_t> messages_;
    std::map<const table_t *, std::vector<cursor_t>> cursors_;
};

} // namespace

std::unique_ptr<archiveReader_t> openSqliteReader(const std::string &file) {
    if (!identityOf(file))
        throw usageError_t("there is no " + file + "; vekmsg load makes it");
    archiveFile_t::bringUpToDate(file);
    return std::make_unique<fileReader_t>(file);
}

} // namespace vek::tool
