// Bytes in the order that the columns' types ask for, without names: a column too many or too few garbles all rows.
#include "vek/inspect/archive/rowBinary.hpp"

#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/forms/forms.hpp"

#include <bit>
#include <cstring>

namespace vek::inspect {

namespace {

static_assert(std::endian::native == std::endian::little, "as numbers go out");

// Bytes one behind the other, many of which go out together.
class bytes_t {
public:
    explicit bytes_t(std::string &out) : out_(out) {}
    ~bytes_t() { flush(); }
    bytes_t(const bytes_t &) = delete;
    bytes_t &operator=(const bytes_t &) = delete;

    template <class Value>
    void add(Value value) {
        if (sizeof room_ - size_ < sizeof value)
            flush();
        std::memcpy(room_ + size_, &value, sizeof value);
        size_ += sizeof value;
    }
    void addSize(std::uint64_t size) {
        for (; size >= 0x80; size >>= 7)
            add(static_cast<std::uint8_t>(size | 0x80));
        add(static_cast<std::uint8_t>(size));
    }
    void addText(std::string_view text) {
        addSize(text.size());
        if (sizeof room_ - size_ < text.size())
            flush();
        if (sizeof room_ < text.size()) {
            out_ += text;
            return;
        }
        std::memcpy(room_ + size_, text.data(), text.size());
        size_ += text.size();
    }
    void addWellFormed(std::string_view text) {
        std::string room;
        addText(wellFormed(text, room));
    }

private:
    void flush() {
        out_.append(room_, size_);
        size_ = 0;
    }

    std::string &out_;
    std::size_t size_ = 0;
    char room_[512];
};

// A number of a type by its name, of which a value that is not there is 0.
void addNumber(bytes_t &out, std::string_view type, const cell_t &cell) {
    if (type.ends_with("64"))
        return out.add(cell.integer);
    if (type.ends_with("8"))
        return out.add(static_cast<std::uint8_t>(cell.integer));
    out.add(static_cast<std::uint32_t>(cell.integer));
}

void addScalar(bytes_t &out, columnType_t type, const cell_t &cell) {
    switch (type) {
    case columnType_t::integer64:
        return out.add(cell.integer);
    case columnType_t::integer32:
        return out.add(static_cast<std::int32_t>(cell.integer));
    case columnType_t::integer16:
        return out.add(static_cast<std::int16_t>(cell.integer));
    case columnType_t::real64:
        return out.add(cell.real);
    case columnType_t::real32:
        return out.add(static_cast<float>(cell.real));
    case columnType_t::boolean:
        return out.add(static_cast<std::uint8_t>(cell.integer));
    case columnType_t::text:
        return out.addWellFormed(cell.text);
    }
}

void addFront(bytes_t &out, const row_t &row) {
    constexpr std::string_view nullable = "Nullable(";
    const std::optional<std::int64_t> seconds = clickhouseSeconds(row.front.time);
    std::string room;
    for (const frontColumn_t &column : frontColumns()) {
        std::string_view type = column.clickhouse.type;
        if (type.empty())
            continue;
        const bool isNullable = type.starts_with(nullable);
        if (isNullable)
            type = type.substr(nullable.size(), type.size() - nullable.size() - 1);
        const bool isTime = type.starts_with("DateTime"); // whose words nobody needs here
        const cell_t cell = !isTime   ? column.clickhouse.value(row, room)
                            : seconds ? cell_t::ofInteger(*seconds)
                                      : cell_t{};
        const bool isNull = cell.kind == cell_t::kind_t::null;
        if (isNullable)
            out.add(static_cast<std::uint8_t>(isNull ? 1 : 0));
        if (isNullable && isNull)
            continue;
        if (type == "String")
            out.addWellFormed(cell.text);
        else
            addNumber(out, isTime ? "UInt32" : type, cell);
    }
}

void addCell(bytes_t &out, const row_t &row, const column_t &column, const cell_t &cell) {
    if (column.isList) {
        const bool isThere = cell.kind == cell_t::kind_t::list;
        out.addSize(isThere ? cell.count : 0);
        if (isThere)
            for (const cell_t &element : row.list(cell))
                addScalar(out, column.type, element);
        return;
    }
    const bool isNull = cell.kind == cell_t::kind_t::null;
    if (!column.isAlwaysThere)
        out.add(static_cast<std::uint8_t>(isNull ? 1 : 0));
    if (column.isAlwaysThere || !isNull)
        addScalar(out, column.type, cell);
}

} // namespace

void appendRowBinary(std::string &out, const row_t &row) {
    bytes_t bytes(out);
    addFront(bytes, row);
    for (const std::uint32_t element : row.elements)
        bytes.add(element);
    for (std::size_t i = 0; i < row.cells.size(); ++i)
        addCell(bytes, row, row.table.columns[i], row.cells[i]);
}

void appendMark(std::string &out, std::int64_t mark, std::uint64_t log) {
    bytes_t bytes(out);
    bytes.add(mark);
    bytes.add(log);
}

void appendRowBinary(std::string &out, const archivedLog_t &log) {
    bytes_t bytes(out);
    for (const sourceColumn_t &column : sourceColumns()) {
        const cell_t cell = column.get(log);
        if (column.clickhouse == "String")
            bytes.addText(cell.text);
        else
            addNumber(bytes, column.clickhouse, cell);
    }
}

} // namespace vek::inspect
