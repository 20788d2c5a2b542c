// The tables that messages are kept in for queries: one a record, made from the declarations that convert.
//
// A record's columns are its keys in lower case; nested records are flattened, "VERSION.TYPE" is `version_type`. A list
// of records has a table of its own, a row an element. A list of scalars is one column here; a database without arrays
// makes a table of it. Names are stable: they follow from the names of records and keys alone. Made once, from the
// schema, when first asked for; it then never changes, so it may be read from any thread. What it hands out lives as
// long as the program.
#pragma once

#include "vek/inspect/schema/schema.hpp"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vek::inspect {

enum class columnType_t : std::uint8_t { integer64, integer32, integer16, real64, real32, boolean, text };

/// A type in the words of both databases.
struct columnWords_t {
    std::string_view clickhouse, sqlite;
};
constexpr columnWords_t wordsOf(columnType_t type) {
    constexpr columnWords_t words[] = {{"UInt64", "INTEGER"}, {"Int32", "INTEGER"}, {"Int16", "INTEGER"},
                                       {"Float64", "REAL"},   {"Float32", "REAL"},  {"UInt8", "INTEGER"},
                                       {"String", "TEXT"}};
    return words[static_cast<std::size_t>(type)];
}

struct column_t {
    std::string name;
    columnType_t type = columnType_t::text;
    bool isList = false;                  ///< of scalars of this type
    bool isAlwaysThere = false;           ///< never null
    std::string meaning;                  ///< for people: the path of the key that it holds, or words
    const fieldSchema_t *field = nullptr; ///< null for what is no key
};

struct table_t;

/// Where the values of a record's fields go, by the fields' positions.
struct recordColumns_t {
    struct target_t {
        std::size_t column = 0;                  ///< of a scalar and of a list of scalars
        const recordColumns_t *nested = nullptr; ///< of a nested record
        const table_t *child = nullptr;          ///< of a list of records
    };
    std::vector<target_t> targets;
    bool hasChildren = false; ///< also in nested records
};

/// In front of its columns each table has those of frontColumns(), and `depth` numbers of elements.
struct table_t {
    std::string name;
    std::string about;      ///< for people, without a full stop
    std::size_t number = 0; ///< among all tables, from 0
    std::size_t depth = 0;  ///< numbers of elements in front: 0 for a message's record, 1 for a list's elements...
    std::vector<column_t> columns;
    recordColumns_t record; ///< empty for those that are of no record
};

class archiveTables_t {
public:
    archiveTables_t();
    archiveTables_t(const archiveTables_t &) = delete;
    archiveTables_t &operator=(const archiveTables_t &) = delete;

    /// `messages`, `problems`, `fronts`, and then each record with the tables of its lists behind it.
    const std::deque<table_t> &all() const { return tables_; }
    /// Of every message there is.
    const table_t &messages() const { return tables_[0]; }
    /// Of what check() finds.
    const table_t &problems() const { return tables_[1]; }
    /// Of what stands in front of messages.
    const table_t &fronts() const { return tables_[2]; }
    /// Of a message's record; null when it has none.
    const table_t *of(const messageSchema_t *message) const;
    /// The same with the tables of its lists.
    std::vector<const table_t *> familyOf(const messageSchema_t &message) const;
    /// Null when there is none.
    const table_t *find(std::string_view name) const;

private:
    class builder_t;

    std::deque<table_t> tables_;
    std::deque<recordColumns_t> nested_;
    std::vector<const table_t *> byMessage_; // in the schema's order of messages
};

const archiveTables_t &archiveTables();

/// The name of a column of element numbers: "element", for a list in a list's element "element_2".
std::string elementColumn(std::size_t depth);

/// "device_status" of "deviceStatus_t", "focus_value" of "FOCUS_VALUE".
std::string tableWord(std::string_view name);

} // namespace vek::inspect
