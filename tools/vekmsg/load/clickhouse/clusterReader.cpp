// An archive on a ClickHouse server, piece by piece in RowBinary. Every value is cast to what is expected of it, as
// tables may be somebody else's.
#include "tools/vekmsg/load/archiveReader.hpp"
#include "tools/vekmsg/load/clickhouse/claims.hpp"
#include "tools/vekmsg/load/clickhouse/clusterStore.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/words/words.hpp"

#include <cstring>

namespace vek::tool {

using namespace inspect;

namespace {

// Values one behind the other. Nothing is read behind the end.
class values_t {
public:
    explicit values_t(std::string_view bytes) : rest_(bytes) {}

    bool isAtEnd() const { return rest_.empty(); }

    template <class Value>
    Value number() {
        Value value{};
        const std::string_view bytes = take(sizeof value);
        std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }
    template <class Value>
    std::optional<Value> optional() {
        return number<std::uint8_t>() != 0 ? std::nullopt : std::optional(number<Value>());
    }
    std::uint64_t size() {
        std::uint64_t size = 0;
        for (unsigned shift = 0; shift < 64 && !rest_.empty(); shift += 7) {
            const auto byte = number<std::uint8_t>();
            size |= std::uint64_t{byte & 0x7FU} << shift;
            if (byte < 0x80)
                break;
        }
        return size;
    }
    std::string text() { return jsonBytes(take(size())); }

    cell_t scalar(columnType_t type, keptRows_t &rows) {
        switch (type) {
        case columnType_t::integer64:
            return cell_t::ofInteger(number<std::int64_t>());
        case columnType_t::integer32:
            return cell_t::ofInteger(number<std::int32_t>());
        case columnType_t::integer16:
            return cell_t::ofInteger(number<std::int16_t>());
        case columnType_t::real64:
            return cell_t::ofReal(number<double>());
        case columnType_t::real32:
            return cell_t::ofReal(static_cast<double>(number<float>()));
        case columnType_t::boolean:
            return cell_t::ofInteger(number<std::uint8_t>());
        default:
            return rows.text(text());
        }
    }

private:
    std::string_view take(std::uint64_t size) {
        const std::string_view taken = rest_.substr(0, static_cast<std::size_t>(size));
        rest_.remove_prefix(taken.size());
        return taken;
    }

    std::string_view rest_;
};

std::string cast(std::string_view value, std::string_view type) {
    return joined({"CAST(", value, " AS ", type, ")"});
}

class clusterReader_t final : public archiveReader_t {
public:
    explicit clusterReader_t(const std::string &url) : server_(url, false) {}

    const std::string &name() const override { return server_.name(); }

    std::vector<archivedLog_t> logs() override { return claims_t(server_).find("1"); }

    std::vector<message_t> messages(std::uint64_t log, std::uint64_t from, std::size_t most) override {
        std::string names;
        for (const auto &[value, type] : {std::pair("byte_offset", "UInt64"),
                                          {"line", "UInt64"},
                                          {"id", "Nullable(Int32)"},
                                          {"echo_tag", "Nullable(Int32)"},
                                          {"sequence_number", "Nullable(Int32)"},
                                          {"toUInt32(log_time)", "Nullable(UInt32)"},
                                          {"log_microsecond", "UInt32"},
                                          {"damaged", "UInt8"},
                                          {"text", "Nullable(String)"}})
            names.append(names.empty() ? "" : ", ").append(cast(value, type));
        const std::string answer =
            server_.ask(joined({"SELECT ", names, " FROM messages WHERE ", placesOf(log, from, UINT64_MAX),
                                " ORDER BY byte_offset LIMIT ", std::to_string(most), " FORMAT RowBinary"}));
        std::vector<message_t> found;
        for (values_t values(answer); !values.isAtEnd();) {
            message_t &one = found.emplace_back();
            one.offset = values.number<std::uint64_t>();
            one.line = values.number<std::uint64_t>();
            one.id = values.optional<std::int32_t>();
            one.echoTag = values.optional<std::int32_t>();
            one.sequenceNumber = values.optional<std::int32_t>();
            const std::optional<std::uint32_t> seconds = values.optional<std::uint32_t>();
            const auto microseconds = values.number<std::uint32_t>();
            if (seconds)
                one.time = logTime_t{std::int64_t{*seconds} * 1'000'000 + microseconds};
            one.isDamaged = values.number<std::uint8_t>() != 0;
            if (values.number<std::uint8_t>() == 0)
                one.text = values.text();
        }
        return found;
    }

    void read(const table_t &table, std::uint64_t log, std::uint64_t first, std::uint64_t last,
              keptRows_t &rows) override {
        std::string names = cast("byte_offset", "UInt64"), order = "byte_offset";
        for (std::size_t i = 0; i < table.depth; ++i) {
            names += ", " + cast(elementColumn(i), "UInt32");
            order += ", " + elementColumn(i);
        }
        for (const column_t &column : table.columns)
            names += ", " + cast(sqlName(column.name), clickhouseType(column));
        const std::string answer =
            server_.ask(joined({"SELECT ", names, " FROM ", sqlName(table.name), " WHERE ", placesOf(log, first, last),
                                " ORDER BY ", order, " FORMAT RowBinary"}));
        for (values_t values(answer); !values.isAtEnd();) {
            keptRow_t &row = rows.rows.emplace_back();
            row.offset = values.number<std::uint64_t>();
            for (std::size_t i = 0; i < table.depth; ++i)
                row.elements.push_back(values.number<std::uint32_t>());
            for (const column_t &column : table.columns)
                row.cells.push_back(cell(values, column, row, rows));
        }
    }

private:
    static std::string placesOf(std::uint64_t log, std::uint64_t first, std::uint64_t last) {
        return joined({"source_id = ", std::to_string(log), " AND byte_offset >= ", std::to_string(first),
                       " AND byte_offset <= ", std::to_string(last)});
    }

    static cell_t cell(values_t &values, const column_t &column, keptRow_t &row, keptRows_t &rows) {
        if (column.isList) {
            const std::size_t first = row.listCells.size();
            const std::uint64_t count = values.size();
            for (std::uint64_t i = 0; i < count && !values.isAtEnd(); ++i)
                row.listCells.push_back(values.scalar(column.type, rows));
            return count == 0 ? cell_t{}
                              : cell_t{cell_t::kind_t::list,
                                       static_cast<std::int64_t>(first),
                                       0.0,
                                       {},
                                       row.listCells.size() - first};
        }
        if (!column.isAlwaysThere && values.number<std::uint8_t>() != 0)
            return {};
        return values.scalar(column.type, rows);
    }

    clusterServer_t server_;
};

} // namespace

std::unique_ptr<archiveReader_t> openClusterReader(const std::string &url) {
    {
        clusterServer_t server(url, false);
        const std::string where = " WHERE database = " + sqlText(server.database());
        if (server.ask("SELECT count() FROM system.tables" + where + " AND name = 'messages'") == "0\n")
            throw usageError_t(server.name() + " has no archive; vekmsg load makes one");
        if (server.ask("SELECT count() FROM system.columns" + where + " AND table = 'sources' AND name = 'is_whole'") ==
            "0\n")
            clusterStore_t(url, false); // of an older version: what it lacks is added
    }
    return std::make_unique<clusterReader_t>(url);
}

} // namespace vek::tool
