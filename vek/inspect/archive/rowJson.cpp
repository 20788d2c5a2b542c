#include "vek/inspect/archive/rowJson.hpp"

#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/forms/jsonAppender.hpp"

#include <cmath>

namespace vek::inspect {

namespace {

class rowWriter_t {
public:
    rowWriter_t(std::string &out, const row_t &row) : json_(out), row_(row) {}

    // Names of columns need no escapes: they are made of letters, digits and "_".
    void write(bool namesTable) {
        json_.open('{');
        if (namesTable)
            json_.member("table", row_.table.name);
        writeFront();
        for (std::size_t i = 0; i < row_.elements.size(); ++i)
            json_.member(elementColumn(i), row_.elements[i]);
        for (std::size_t i = 0; i < row_.cells.size(); ++i)
            writeCell(row_.table.columns[i].name, row_.cells[i]);
        json_.close('}');
    }

private:
    void writeFront() {
        std::string room;
        for (const frontColumn_t &column : frontColumns())
            if (column.clickhouse.value != nullptr)
                writeCell(column.name, column.clickhouse.value(row_, room));
    }

    void writeCell(std::string_view column, const cell_t &cell) {
        if (cell.kind == cell_t::kind_t::null || (cell.kind == cell_t::kind_t::list && cell.count == 0))
            return;
        if (cell.kind == cell_t::kind_t::list)
            return json_.list(column, row_.list(cell), [this](const cell_t &element) { writeScalar(element); });
        json_.name(column);
        writeScalar(cell);
    }

    // Infinity, which JSON lacks, is the text that the library writes.
    void writeScalar(const cell_t &cell) {
        switch (cell.kind) {
        case cell_t::kind_t::integer:
            return json_.value(cell.integer);
        case cell_t::kind_t::real:
            if (!std::isfinite(cell.real))
                return json_.value(std::string_view(cell.real < 0 ? "-inf" : "inf"));
            return json_.value(cell.real);
        case cell_t::kind_t::text:
            return json_.value(cell.text);
        default:
            json_.ready("null");
        }
    }

    jsonAppender_t json_;
    const row_t &row_;
};

} // namespace

void appendRowJson(std::string &out, const row_t &row, bool namesTable) {
    rowWriter_t(out, row).write(namesTable);
}

} // namespace vek::inspect
