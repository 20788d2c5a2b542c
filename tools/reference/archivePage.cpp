#include "tools/reference/pages.hpp"

#include "tools/reference/markdown.hpp"
#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/archive/sources.hpp"
#include "vek/inspect/archive/sql.hpp"

#include <ostream>

namespace vek {

namespace {

using namespace inspect;

constexpr std::string_view archiveIntroduction = R"(# Tables of messages

The tables that `vekmsg load` fills and `vekmsg json --rows` writes rows of; `vekmsg schema --sql sqlite` and
`--sql clickhouse` make them.

- **Names** are those of the records and keys, in lower case. The keys of a nested record stand behind its own key:
  `VERSION.TYPE` is `version_type`. A list of records has a table, named after the record and the key.
- **Values** are what a host reads: a text that is no number gives 0. An enumeration is the name that stands in the
  message, known or not; a boolean is 0 or 1; a text has the characters that its codes stand for. Bytes that are no
  UTF-8 become the characters U+EF80 to U+EFFF. NULL: the message has no such key, or no value for it.
- **Lists of scalars** are arrays in ClickHouse. SQLite has a table for each, named in the list below, with the number
  of the element and its `value`; every element of the list is there, one without a value as 0 or an empty text.
- **Damaged** messages are in the tables as far as they can be read, with all that was found in `problems`.
- **Every message comes back byte for byte**: from its rows when they say all of it, spelt as hosts spell messages; else its
  text stands in `messages.text`. That is so when anything was found, and for a header, a number or a list that is spelt
  otherwise (`@@ 4112`, `1.5` for `1.500000`), for a 16-bit text without its NUL, and for `-0.0`, which is 0.0 in SQLite.
- **Every log comes back byte for byte**, with `vekmsg export`: what stands in front of a message, from the one before on, is
  kept in `sources.usual_fronts` once for all messages of an id, and in `fronts` where it is otherwise. Logs that an older
  vekmsg began to load come back as their messages alone; `sources.is_whole` tells.
- **Reals** are there to their last bit, infinite ones as `inf`: in ClickHouse `inf`, in SQLite `Inf`, in rows as JSON the
  text `"inf"`.

## In front of each row

| Column | ClickHouse | SQLite | Holds |
|---|---|---|---|
)";

constexpr std::string_view archiveRest =
    R"(| `element`, `element_2` | UInt32 | INTEGER | in the tables of lists: the number of the element, from 0 |
| `log_date` | Date |  | the day of `log_time`, 1970-01-01 when there is none: the server computes it, and parts its tables by its month |

In SQLite the tables of lists have `source_id`, `byte_offset` and the numbers alone; the rest is in `messages` and in the
record's table, `JOIN messages USING (source_id, byte_offset)`. With the numbers of elements these two are the key of every
table: a log's rows lie side by side, and `WHERE source_id = 7 AND byte_offset BETWEEN 1000 AND 2000` reads no others.

Further in SQLite: the rows of a message refer to it (`ON DELETE CASCADE`, where `PRAGMA foreign_keys` is on), and three
views answer what is asked most: `latest_state`, of each log the last device status with what it said; `gaps`, where sequence
numbers are missing; `findings`, the problems with their logs and lines.

The table `days` has a row for each log and day (`source_id`, `log_date`) with the offsets of the first and the last message
of that day in that log, `first_offset` and `last_offset`: joined with it, any table is read only where a span of time stands.
`sqlite_stat1` is SQLite's own, from samples that are taken while the archive grows; by it SQLite chooses with which of several
tables a question begins.

Up to version 4 of the tables a message was known by one number, `message_id`, instead of these two columns. Such an archive is
written anew when something is loaded into it or exported from it for the first time, in one transaction; columns and indexes
that were added to it stay, queries and views that name `message_id` are to name `source_id` and `byte_offset`.

## Logs

The table `sources` has a row for each log and what is known of it. How far it is loaded stands there, apart from the
messages: what is deleted from the other tables is not loaded again.

- A log is known again by its first 4096 bytes, as they are when unpacked, whatever its file is called: packed, renamed,
  rotated, copied or named by another path it goes on as the log that it is. Of shorter logs 256 bytes have to be alike, or
  the name. Found by index, the last of many logs as fast as the first.
- Two logs that only have their name in common, as of two machines or after a rotation, are two.
- With `--source` the logs of a device have one name, whatever their files are called, and are known by it. With `--device`,
  `--site` and `--host`, or `--pattern`, equal logs of two devices are two. Standard input is called `-`.
- A log that begins otherwise and has messages of one that is loaded, as an extract of it has, is refused, unless it has a
  name (`--source`) or an origin of its own; what is twice there then, or comes later, is told. The table `marks` holds by
  what they are known: a number for each of a log's first messages, and for one of eight further ones, of those that have
  a date on their line. Logs that were loaded by version 1 have none.
- A log that is shorter than what was loaded, or differs where the last message stood, is refused, and nothing changes.
- In SQLite a message that is cut off at the log's end is taken as it stands, and anew when the log has grown; how far a log
  is loaded is written with the messages themselves. One writes at a time; a second loader waits for the end of the first
  one's transaction. Reading is always possible.
- In ClickHouse `sources` has a row a `claim` of a loader; the highest one of a log counts, and a row whose `is_settled` is 1
  was written when all was there.

| Column | ClickHouse | SQLite | Holds |
|---|---|---|---|
)";

void writeFront(std::ostream &out) {
    for (const frontColumn_t &column : frontColumns())
        out << "| " << code(column.name) << " | " << column.clickhouse.type << " | "
            << column.sqlite.type.substr(0, column.sqlite.type.find(' ')) << " | " << column.meaning << " |\n";
}

void writeSources(std::ostream &out) {
    for (const sourceColumn_t &column : sourceColumns())
        out << "| " << code(column.name) << " | " << column.clickhouse << " | "
            << column.sqlite.substr(0, column.sqlite.find(' ')) << " | " << column.meaning << " |\n";
}

void writeArchiveTable(std::ostream &out, const table_t &table) {
    out << "\n## " << table.name << "\n\n" << table.about << ".";
    if (table.depth > 0)
        out << " Key: the message and `" << elementColumn(table.depth - 1) << "`.";
    out << "\n";
    if (table.columns.empty())
        return;
    out << "\n| Column | ClickHouse | SQLite | Holds |\n|---|---|---|---|\n";
    for (const column_t &column : table.columns) {
        const std::string sqlite = sqliteType(column);
        out << "| " << code(column.name) << " | " << clickhouseType(column) << " | "
            << (column.isList ? joined({"table ", code(joined({table.name, "_", column.name})), ", `value` ", sqlite})
                              : sqlite)
            << " | " << (column.field != nullptr ? code(column.meaning) : column.meaning) << " |\n";
    }
}

} // namespace

void writeArchivePage(std::ostream &out) {
    out << generatedNotice << archiveIntroduction;
    writeFront(out);
    out << archiveRest;
    writeSources(out);
    for (const table_t &table : archiveTables().all())
        writeArchiveTable(out, table);
}

} // namespace vek
