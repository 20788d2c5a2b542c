#include "vek/inspect/archive/rowJson.hpp"

#include "vek/inspect/forms/forms.hpp"
#include "vek/text/numberText.hpp"

#include <charconv>
#include <cmath>
#include <limits>

namespace vek::inspect {

namespace {

// The server's times are seconds since 1970 in 32 bits.
bool isInRange(const logTime_t &time) {
    constexpr std::int64_t end = std::int64_t{1} << 32;
    return time.hasDate && time.microseconds >= 0 && time.microseconds / 1'000'000 < end;
}

class rowWriter_t {
public:
    rowWriter_t(std::string &out, const row_t &row) : out_(out), row_(row) {}

    void write(bool namesTable) {
        out_ += '{';
        if (namesTable)
            text("table", row_.table.name);
        writeFront();
        for (std::size_t i = 0; i < row_.elements.size(); ++i)
            number(elementColumn(i), row_.elements[i]);
        for (std::size_t i = 0; i < row_.cells.size(); ++i)
            writeCell(row_.table.columns[i].name, row_.cells[i]);
        out_ += '}';
    }

private:
    // Names of columns need no escapes: they are made of letters, digits and "_".
    void name(std::string_view column) {
        out_ += out_.back() == '{' ? "\"" : ",\"";
        out_ += column;
        out_ += "\":";
    }
    void text(std::string_view column, std::string_view value) {
        name(column);
        appendJsonString(out_, value);
    }
    template <class Number>
    void appendNumber(Number value) {
        char digits[32];
        out_.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    }
    template <class Number>
    void number(std::string_view column, Number value) {
        name(column);
        appendNumber(value);
    }

    void writeFront() {
        text("source", row_.front.source);
        number("byte_offset", row_.front.byteOffset);
        if (const std::optional<logTime_t> &time = row_.front.time; time && isInRange(*time)) {
            name("log_time");
            out_ += '"';
            time->appendTo(out_, ' ', logTime_t::fraction_t::none);
            out_ += '"';
            number("log_microsecond", time->microsecond());
        }
        if (row_.echoTag)
            number("echo_tag", *row_.echoTag);
        if (row_.sequenceNumber)
            number("sequence_number", *row_.sequenceNumber);
        number("damaged", row_.isDamaged ? 1 : 0);
    }

    void writeCell(std::string_view column, const cell_t &cell) {
        const bool isLeftOut = cell.kind == cell_t::kind_t::null ||
                               (cell.kind == cell_t::kind_t::list && cell.count == 0) ||
                               (cell.kind == cell_t::kind_t::real && !std::isfinite(cell.real));
        if (isLeftOut)
            return;
        name(column);
        if (cell.kind != cell_t::kind_t::list)
            return writeScalar(cell);
        out_ += '[';
        for (const cell_t &element : row_.list(cell)) {
            if (out_.back() != '[')
                out_ += ',';
            writeScalar(element);
        }
        out_ += ']';
    }

    // Elements must be there: an infinite one is the largest number.
    void writeScalar(const cell_t &cell) {
        switch (cell.kind) {
        case cell_t::kind_t::integer:
            return appendNumber(cell.integer);
        case cell_t::kind_t::real:
            return appendNumber(
                std::isfinite(cell.real) ? cell.real : std::copysign(std::numeric_limits<double>::max(), cell.real));
        case cell_t::kind_t::text:
            return appendJsonString(out_, cell.text);
        default:
            out_ += "null";
        }
    }

    std::string &out_;
    const row_t &row_;
};

} // namespace

void appendRowJson(std::string &out, const row_t &row, bool namesTable) {
    rowWriter_t(out, row).write(namesTable);
}

} // namespace vek::inspect
