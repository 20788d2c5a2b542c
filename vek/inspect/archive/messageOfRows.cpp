// Keys go out in the order of their record, those of which there is nothing are left out: so the library writes them.
#include "vek/inspect/archive/messageOfRows.hpp"

#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/characters.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

class bodyWriter_t {
public:
    explicit bodyWriter_t(const rowsOfMessage_t &rowsOf) : rowsOf_(rowsOf) {}

    std::string body(const recordSchema_t &record, const table_t &table) {
        const std::span<const keptRow_t> rows = rowsOf_(table);
        if (!rows.empty())
            putRecord(record, table.record, rows.front());
        return out_.empty() ? out_ : joined({"{", out_, "}"});
    }

private:
    void putRecord(const recordSchema_t &record, const recordColumns_t &columns, const keptRow_t &row) {
        for (const fieldSchema_t &field : record.fields) {
            const std::size_t start = out_.size();
            out_.append(field.key).append(1, equalsSign);
            if (putValue(field, columns.targets[static_cast<std::size_t>(field.position)], row))
                out_ += semicolon;
            else
                out_.resize(start);
        }
    }

    bool putValue(const fieldSchema_t &field, const recordColumns_t::target_t &target, const keptRow_t &row) {
        if (target.nested != nullptr)
            return putGroup([&] { putRecord(*field.record(), *target.nested, row); });
        if (target.child != nullptr)
            return putGroup([&] { putElements(*field.record(), *target.child, row); });
        const cell_t &cell = row.cells[target.column];
        if (field.isList())
            return cell.kind == cell_t::kind_t::list && putGroup([&] { putList(field, cell, row); });
        return cell.kind != cell_t::kind_t::null && putScalar(field, cell);
    }

    // False when there is nothing in it.
    template <class Put>
    bool putGroup(Put put) {
        out_ += openBrace;
        const std::size_t start = out_.size();
        put();
        const bool isThere = out_.size() > start;
        out_ += closeBrace;
        return isThere;
    }

    void putElements(const recordSchema_t &record, const table_t &table, const keptRow_t &parent) {
        for (const keptRow_t &row : rowsOf_(table))
            if (std::equal(parent.elements.begin(), parent.elements.end(), row.elements.begin())) {
                putGroup([&] { putRecord(record, table.record, row); });
                out_ += comma;
            }
    }

    void putList(const fieldSchema_t &field, const cell_t &list, const keptRow_t &row) {
        for (const cell_t &cell :
             std::span(row.listCells).subspan(static_cast<std::size_t>(list.integer), list.count)) {
            putScalar(field, cell);
            out_ += comma;
        }
    }

    bool putScalar(const fieldSchema_t &field, const cell_t &cell) {
        switch (field.kind) {
        case fieldKind_t::boolean:
            out_ += cell.integer != 0 ? "TRUE" : "FALSE";
            break;
        case fieldKind_t::text16:
            out_ += wideCodes(cell.text).value_or("{0,}");
            break;
        case fieldKind_t::text:
            out_ += escapedText(cell.text);
            break;
        default:
            out_ += isReal(field.kind)      ? realText(cell.real)
                    : isInteger(field.kind) ? std::to_string(cell.integer)
                                            : std::string(cell.text);
        }
        return true;
    }

    const rowsOfMessage_t &rowsOf_;
    std::string out_;
};

} // namespace

std::string messageOfRows(const messageNumbers_t &numbers, const rowsOfMessage_t &rowsOf) {
    const messageSchema_t *message = schema().find(numbers.id);
    const table_t *table = archiveTables().of(message);
    return sealed(numbers.id, numbers.echoTag, numbers.sequenceNumber,
                  table != nullptr ? bodyWriter_t(rowsOf).body(*message->record, *table) : std::string());
}

} // namespace vek::inspect
