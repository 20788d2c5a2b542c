#include "vek/inspect/archive/sql.hpp"

#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/words/words.hpp"

namespace vek::inspect {

namespace {

class tableWriter_t {
public:
    tableWriter_t(std::string &out, const sqliteTable_t &table) : out_(out), table_(table) {}

    void write() {
        const frontColumn_t &key = frontColumns().front();
        out_ += joined({"CREATE TABLE ", quotedName(table_.name), " (\n    ", quotedName(key.name), " ",
                        key.sqlite.type, table_.depth == 0 ? " PRIMARY KEY" : " NOT NULL"});
        for (const frontColumn_t &column : frontColumns().subspan(1))
            if (column.isComputed())
                line(column.name, column.sqlite.type);
        for (std::size_t i = 0; i < table_.depth; ++i)
            line(elementColumn(i), "INTEGER NOT NULL");
        if (table_.hasFront)
            for (const frontColumn_t &column : frontColumns())
                if (column.sqlite.value != nullptr)
                    line(column.name, column.sqlite.type);
        writeColumns();
        writeKey();
    }

private:
    void line(std::string_view name, std::string_view words) {
        out_ += joined({",\n    ", quotedName(name), " ", words});
    }

    void writeColumns() {
        if (table_.list != nullptr)
            return line("value", joined({sqliteType(*table_.list), " NOT NULL"}));
        for (const column_t &column : table_.table->columns)
            if (!column.isList)
                line(column.name, joined({sqliteType(column), column.isAlwaysThere ? " NOT NULL" : ""}));
    }

    // The rows of a message's lists lie side by side, in the order of the messages.
    void writeKey() {
        if (table_.depth > 0) {
            out_ += ",\n    PRIMARY KEY (\"message_id\"";
            for (std::size_t i = 0; i < table_.depth; ++i)
                out_ += ", " + quotedName(elementColumn(i));
            out_ += ")\n) WITHOUT ROWID";
        } else {
            out_ += "\n)";
        }
    }

    std::string &out_;
    const sqliteTable_t &table_;
};

} // namespace

std::string quotedName(std::string_view name) {
    std::string quoted = "\"";
    for (const char c : name)
        quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

std::vector<sqliteTable_t> sqliteTablesOf(const table_t &table) {
    std::vector<sqliteTable_t> tables{{table.name, &table, nullptr, table.depth, table.depth == 0}};
    for (const column_t &column : table.columns)
        if (column.isList)
            tables.push_back({joined({table.name, "_", column.name}), &table, &column, table.depth + 1, false});
    return tables;
}

std::string sqliteInsert(const sqliteTable_t &table) {
    std::string names = "\"message_id\"", values = "?";
    const auto add = [&](std::string_view name) {
        names += ", " + quotedName(name);
        values += ", ?";
    };
    for (std::size_t i = 0; i < table.depth; ++i)
        add(elementColumn(i));
    if (table.hasFront)
        for (const frontColumn_t &column : frontColumns())
            if (column.sqlite.value != nullptr)
                add(column.name);
    if (table.list != nullptr)
        add("value");
    else
        for (const column_t &column : table.table->columns)
            if (!column.isList)
                add(column.name);
    return joined({"INSERT INTO ", quotedName(table.name), " (", names, ") VALUES (", values, ")"});
}

std::string sqliteType(const column_t &column) {
    switch (column.type) {
    case columnType_t::real64:
    case columnType_t::real32:
        return "REAL";
    case columnType_t::text:
        return "TEXT";
    default:
        return "INTEGER";
    }
}

std::string sqliteCreate(const sqliteTable_t &table) {
    std::string text;
    tableWriter_t(text, table).write();
    return text;
}

std::string sqliteCreateSources() {
    return R"(CREATE TABLE "sources" (
    "source_id" INTEGER PRIMARY KEY,
    "source" TEXT NOT NULL,
    "first_bytes" BLOB NOT NULL,
    "loaded_bytes" INTEGER NOT NULL,
    "has_tail" INTEGER NOT NULL,
    "next_line" INTEGER NOT NULL,
    "line_head" BLOB NOT NULL,
    "is_line_head_complete" INTEGER NOT NULL,
    "last_message_offset" INTEGER NOT NULL,
    "last_message_bytes" INTEGER NOT NULL,
    "last_message_hash" INTEGER NOT NULL
))";
}

void appendSqliteSchema(std::string &out, std::span<const table_t *const> tables) {
    const auto append = [&out](std::string text) {
        constexpr std::string_view create = "CREATE TABLE ";
        out += text.insert(create.size(), "IF NOT EXISTS ") + ";\n";
    };
    append(sqliteCreateSources());
    for (const table_t *table : tables)
        for (const sqliteTable_t &one : sqliteTablesOf(*table))
            append(sqliteCreate(one));
}

} // namespace vek::inspect
