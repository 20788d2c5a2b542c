// A table for each record, by walking over its keys: nested ones become columns, lists of records tables.
#include "vek/inspect/archive/tables.hpp"

#include "vek/inspect/words/words.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

columnType_t typeOf(fieldKind_t kind) {
    switch (kind) {
    case fieldKind_t::integer32:
        return columnType_t::integer32;
    case fieldKind_t::integer16:
        return columnType_t::integer16;
    case fieldKind_t::float64:
    case fieldKind_t::pixels:
        return columnType_t::real64;
    case fieldKind_t::float32:
        return columnType_t::real32;
    case fieldKind_t::boolean:
        return columnType_t::boolean;
    default:
        return columnType_t::text;
    }
}

column_t fixed(std::string name, columnType_t type, bool isAlwaysThere, std::string meaning) {
    return {std::move(name), type, false, isAlwaysThere, std::move(meaning), nullptr};
}

} // namespace

std::string elementColumn(std::size_t depth) {
    return depth == 0 ? "element" : joined({"element_", std::to_string(depth + 1)});
}

std::string tableWord(std::string_view name) {
    if (name.ends_with("_t"))
        name.remove_suffix(2);
    std::string word;
    char previous = 'A';
    for (const char c : name) {
        if (isAsciiUpper(c) && !isAsciiUpper(previous) && previous != '_')
            word += '_';
        word += asciiToLower(c);
        previous = c;
    }
    return word;
}

class archiveTables_t::builder_t {
public:
    explicit builder_t(archiveTables_t &archive) : archive_(archive) {}

    void build() {
        addMessages();
        addProblems();
        addFronts();
        for (const messageSchema_t &message : schema().messages())
            archive_.byMessage_.push_back(message.record != nullptr ? ofRecord(*message.record) : nullptr);
    }

private:
    table_t &add(std::string name, std::string about, std::size_t depth) {
        table_t &table = archive_.tables_.emplace_back();
        table.name = std::move(name);
        table.about = std::move(about);
        table.number = archive_.tables_.size() - 1;
        table.depth = depth;
        return table;
    }

    void addMessages() {
        using enum columnType_t;
        add("messages", "Every message, also the damaged and the unknown", 0).columns = {
            fixed("line", integer64, true, "the line that it begins in, from 1"),
            fixed("id", integer32, false, "its id"),
            fixed("record", text, true, "the table of its record; empty for an unknown id"),
            fixed("text", text, false, "the message itself, unless its rows say all of it"),
        };
    }

    void addProblems() {
        using enum columnType_t;
        add("problems", "What check finds in the messages", 1).columns = {
            fixed("code", text, true, "the stable name of what was found, such as unknown-key"),
            fixed("severity", text, true, "error or warning"),
            fixed("path", text, true, "of the key; empty for the envelope"),
            fixed("start", integer64, true, "where in the message, from 0"),
            fixed("end", integer64, true, "and where behind it"),
            fixed("message", text, true, "what is wrong"),
            fixed("consequence", text, true, "what a host makes of it"),
            fixed("suggestion", text, true, "what it should be, when that is known"),
        };
    }

    void addFronts() {
        add("fronts", "What stands in front of a message, from the one before on, where it is not as usual in its log",
            1)
            .columns = {fixed("text", columnType_t::text, true,
                              "the words; a time as on most lines is left out of them, U+0011 marks its place")};
    }

    // Messages that share a record share its table.
    const table_t *ofRecord(const recordSchema_t &record) {
        const std::string name = tableWord(record.name);
        if (const table_t *known = archive_.find(name))
            return known;
        table_t &table = add(name, joined({"A row a message of ", record.name}), 0);
        fill(table, table.record, record, {}, {});
        return &table;
    }

    // The columns of a record's keys, in text order. `prefix` stands in front of their names, `path` in front of the
    // keys.
    void fill(table_t &table, recordColumns_t &columns, const recordSchema_t &record, const std::string &prefix,
              const std::string &path) {
        for (const fieldSchema_t &field : record.fields) {
            const std::string name = prefix + tableWord(field.key), keyPath = joined({path, field.key});
            recordColumns_t::target_t &target = columns.targets.emplace_back();
            if (field.record() == nullptr) {
                target.column = table.columns.size();
                table.columns.push_back({name, typeOf(field.kind), field.isList(), false, keyPath, &field});
            } else if (field.isList()) {
                target.child = childOf(table, field, name, keyPath);
                columns.hasChildren = true;
            } else {
                recordColumns_t &nested = archive_.nested_.emplace_back();
                fill(table, nested, *field.record(), name + "_", keyPath + ".");
                target.nested = &nested;
                columns.hasChildren |= nested.hasChildren;
            }
        }
    }

    const table_t *childOf(const table_t &parent, const fieldSchema_t &field, const std::string &name,
                           const std::string &path) {
        table_t &child = add(joined({parent.name, "_", name}),
                             joined({"A row an element of ", path, " in ", parent.name}), parent.depth + 1);
        fill(child, child.record, *field.record(), {}, path + "[].");
        return &child;
    }

    archiveTables_t &archive_;
};

archiveTables_t::archiveTables_t() {
    builder_t(*this).build();
}

const table_t *archiveTables_t::of(const messageSchema_t *message) const {
    if (message == nullptr)
        return nullptr;
    return byMessage_[static_cast<std::size_t>(message - schema().messages().data())];
}

std::vector<const table_t *> archiveTables_t::familyOf(const messageSchema_t &message) const {
    std::vector<const table_t *> family;
    if (const table_t *table = of(&message))
        for (std::size_t i = table->number; i < tables_.size() && (i == table->number || tables_[i].depth > 0); ++i)
            family.push_back(&tables_[i]);
    return family;
}

const table_t *archiveTables_t::find(std::string_view name) const {
    const auto found =
        std::find_if(tables_.begin(), tables_.end(), [&](const auto &table) { return table.name == name; });
    return found != tables_.end() ? &*found : nullptr;
}

const archiveTables_t &archiveTables() {
    static const archiveTables_t one;
    return one;
}

} // namespace vek::inspect
