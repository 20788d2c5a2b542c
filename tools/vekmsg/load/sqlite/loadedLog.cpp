#include "tools/vekmsg/load/sqlite/loadedLog.hpp"

#include "tools/vekmsg/terminal/problem.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

constexpr const char *columns =
    "SELECT source_id, source, first_bytes, loaded_bytes, has_tail, next_line, line_head, is_line_head_complete, "
    "last_message_offset, last_message_bytes, last_message_hash FROM sources ";

// How much two logs have in common at their beginnings when one of them is the other's beginning; else 0.
std::size_t commonBeginning(std::string_view one, std::string_view other) {
    const std::size_t size = std::min(one.size(), other.size());
    return one.substr(0, size) == other.substr(0, size) ? size : 0;
}

} // namespace

std::uint64_t hashOf(std::string_view bytes) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char byte : bytes)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
    return hash;
}

loadedLog_t::loadedLog_t(database_t &database, std::string_view name, std::string_view first, bool isNew,
                         const beginning_t &beginningOf)
    : name_(name) {
    if (!isNew && find(database, first, beginningOf))
        return;
    number_ = database.number("SELECT coalesce(max(source_id), 0) + 1 FROM sources");
    setFirst(first);
    statement_t insert(database, "INSERT INTO sources VALUES (?, ?, x'', 0, 0, 0, x'', 0, 0, 0, 0)");
    insert.bind(1, number_);
    insert.bind(2, std::string_view(name_));
    insert.run();
    save(database, position_, last_);
}

// The latest of this name; else one that now has a new name, since its old one belongs to another log or to none.
bool loadedLog_t::find(database_t &database, std::string_view first, const beginning_t &beginningOf) {
    const std::string wanted = name_;
    statement_t rows(database, std::string(columns) + "ORDER BY (source = ?) DESC, source_id DESC");
    rows.bind(1, std::string_view(wanted));
    while (rows.next()) {
        const bool isSameName = rows.text(1) == wanted;
        isBesideOthers_ |= isSameName;
        const std::string known = rows.text(2);
        const std::size_t common = commonBeginning(first, known);
        constexpr std::size_t telling = 256; // shorter beginnings may be alike by chance
        const bool isKnown = isSameName ? common > 0
                                        : common >= telling && common == known.size() &&
                                              commonBeginning(beginningOf(rows.text(1)), known) < common;
        if (!isKnown)
            continue;
        isBesideOthers_ = false;
        read(rows);
        return true;
    }
    return false;
}

void loadedLog_t::read(const statement_t &row) {
    number_ = row.integer(0);
    name_ = row.text(1);
    first_ = row.text(2);
    position_.offset = static_cast<std::uint64_t>(row.integer(3));
    hasTail_ = row.integer(4) != 0;
    position_.line = static_cast<std::uint64_t>(row.integer(5));
    position_.lineHead = row.text(6);
    position_.isLineHeadComplete = row.integer(7) != 0;
    last_ = {static_cast<std::uint64_t>(row.integer(8)), static_cast<std::uint64_t>(row.integer(9)),
             static_cast<std::uint64_t>(row.integer(10))};
}

void loadedLog_t::checkIsOwn(database_t &database) const {
    statement_t row(database, "SELECT loaded_bytes FROM sources WHERE source_id = ?");
    row.bind(1, number_);
    if (!row.next() || static_cast<std::uint64_t>(row.integer(0)) != position_.offset)
        throw usageError_t("another vekmsg loads " + name_ + " into " + database.file() + " at the same time; let it");
}

void loadedLog_t::save(database_t &database, const inspect::logPosition_t &position, const message_t &last) {
    position_ = position;
    last_ = last;
    statement_t update(
        database, "UPDATE sources SET first_bytes = ?, loaded_bytes = ?, has_tail = ?, next_line = ?, line_head = ?, "
                  "is_line_head_complete = ?, last_message_offset = ?, last_message_bytes = ?, "
                  "last_message_hash = ? WHERE source_id = ?");
    int parameter = 0;
    const auto bind = [&](std::uint64_t value) { update.bind(++parameter, static_cast<std::int64_t>(value)); };
    update.bindBytes(++parameter, first_);
    bind(position.offset);
    bind(hasTail_ ? 1 : 0);
    bind(position.line);
    update.bindBytes(++parameter, position.lineHead);
    bind(position.isLineHeadComplete ? 1 : 0);
    bind(last.offset);
    bind(last.size);
    bind(last.hash);
    bind(static_cast<std::uint64_t>(number_));
    update.run();
}

} // namespace vek::tool
