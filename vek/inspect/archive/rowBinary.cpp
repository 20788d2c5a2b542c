// Bytes in the order that the columns' types ask for, without names: a column too many or too few garbles all rows.
#include "vek/inspect/archive/rowBinary.hpp"

#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/forms/forms.hpp"

#include <bit>
#include <cstring>

namespace vek::inspect {

namespace {

static_assert(std::endian::native == std::endian::little, "as numbers go out");

template <class Value>
void appendBytes(std::string &out, Value value) {
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    out.append(bytes, sizeof value);
}

void appendSize(std::string &out, std::uint64_t size) {
    for (; size >= 0x80; size >>= 7)
        out += static_cast<char>(size | 0x80);
    out += static_cast<char>(size);
}

void appendText(std::string &out, std::string_view text) {
    appendSize(out, text.size());
    out += text;
}

void appendWellFormed(std::string &out, std::string_view text) {
    std::string room;
    appendText(out, wellFormed(text, room));
}

// A number of a type by its name, of which a value that is not there is 0.
void appendNumber(std::string &out, std::string_view type, const cell_t &cell) {
    if (type.ends_with("64"))
        return appendBytes(out, cell.integer);
    if (type.ends_with("8"))
        return appendBytes(out, static_cast<std::uint8_t>(cell.integer));
    appendBytes(out, static_cast<std::uint32_t>(cell.integer));
}

void appendScalar(std::string &out, columnType_t type, const cell_t &cell) {
    switch (type) {
    case columnType_t::integer64:
        return appendBytes(out, cell.integer);
    case columnType_t::integer32:
        return appendBytes(out, static_cast<std::int32_t>(cell.integer));
    case columnType_t::integer16:
        return appendBytes(out, static_cast<std::int16_t>(cell.integer));
    case columnType_t::real64:
        return appendBytes(out, cell.real);
    case columnType_t::real32:
        return appendBytes(out, static_cast<float>(cell.real));
    case columnType_t::boolean:
        return appendBytes(out, static_cast<std::uint8_t>(cell.integer));
    case columnType_t::text:
        return appendWellFormed(out, cell.text);
    }
}

void appendFront(std::string &out, const row_t &row) {
    constexpr std::string_view nullable = "Nullable(";
    std::string room;
    for (const frontColumn_t &column : frontColumns()) {
        std::string_view type = column.clickhouse.type;
        if (type.empty())
            continue;
        const cell_t cell = column.clickhouse.value(row, room);
        const bool isNull = cell.kind == cell_t::kind_t::null;
        if (type.starts_with(nullable)) {
            out += isNull ? '\1' : '\0';
            if (isNull)
                continue;
            type = type.substr(nullable.size(), type.size() - nullable.size() - 1);
        }
        if (type.starts_with("DateTime"))
            appendBytes(out, static_cast<std::uint32_t>(clickhouseSeconds(row.front.time).value_or(0)));
        else if (type == "String")
            appendWellFormed(out, cell.text);
        else
            appendNumber(out, type, cell);
    }
}

void appendCell(std::string &out, const row_t &row, const column_t &column, const cell_t &cell) {
    if (column.isList) {
        const bool isThere = cell.kind == cell_t::kind_t::list;
        appendSize(out, isThere ? cell.count : 0);
        if (isThere)
            for (const cell_t &element : row.list(cell))
                appendScalar(out, column.type, element);
        return;
    }
    const bool isNull = cell.kind == cell_t::kind_t::null;
    if (!column.isAlwaysThere)
        out += isNull ? '\1' : '\0';
    if (column.isAlwaysThere || !isNull)
        appendScalar(out, column.type, cell);
}

} // namespace

void appendRowBinary(std::string &out, const row_t &row) {
    appendFront(out, row);
    for (const std::uint32_t element : row.elements)
        appendBytes(out, element);
    for (std::size_t i = 0; i < row.cells.size(); ++i)
        appendCell(out, row, row.table.columns[i], row.cells[i]);
}

void appendMark(std::string &out, std::int64_t mark, std::uint64_t log) {
    appendBytes(out, mark);
    appendBytes(out, log);
}

void appendRowBinary(std::string &out, const archivedLog_t &log) {
    for (const sourceColumn_t &column : sourceColumns()) {
        const cell_t cell = column.get(log);
        if (column.clickhouse == "String")
            appendText(out, cell.text);
        else
            appendNumber(out, column.clickhouse, cell);
    }
}

} // namespace vek::inspect
