#include "tools/vekmsg/load/loadedLog.hpp"

#include "tools/vekmsg/problem.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

constexpr const char *columns =
    "SELECT \"source_id\", \"source\", \"first_bytes\", \"first_bytes_hash\", \"loaded_bytes\", \"has_tail\", "
    "\"line\", "
    "\"line_head\", \"is_line_head_complete\", \"last_message_offset\", \"last_message_bytes\", \"last_message_hash\" "
    "FROM \"sources\" ";

bool beginsSo(std::string_view bytes, std::uint64_t size, std::uint64_t hash) {
    return bytes.size() >= size && hashOf(bytes.substr(0, static_cast<std::size_t>(size))) == hash;
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
    number_ = database.number("SELECT coalesce(max(\"source_id\"), 0) + 1 FROM \"sources\"");
    setFirst(first);
    statement_t insert(database, "INSERT INTO \"sources\" VALUES (?, ?, 0, 0, 0, 0, 0, '', 0, 0, 0, 0)");
    insert.bind(1, number_);
    insert.bind(2, std::string_view(name_));
    insert.run();
    save(database, position_, last_);
}

// The latest of this name; else one that now has a new name, since its old one belongs to another log or to none.
bool loadedLog_t::find(database_t &database, std::string_view first, const beginning_t &beginningOf) {
    const std::string wanted = name_;
    statement_t rows(database, std::string(columns) + "ORDER BY (\"source\" = ?) DESC, \"source_id\" DESC");
    rows.bind(1, std::string_view(wanted));
    while (rows.next()) {
        const bool isSameName = rows.text(1) == wanted;
        hasPredecessor_ |= isSameName;
        const auto size = static_cast<std::uint64_t>(rows.integer(2)),
                   hash = static_cast<std::uint64_t>(rows.integer(3));
        if (!beginsSo(first, size, hash))
            continue;
        constexpr std::uint64_t telling = 256; // shorter beginnings may be alike by chance
        if (!isSameName && (size < telling || beginsSo(beginningOf(rows.text(1)), size, hash)))
            continue;
        read(rows);
        return true;
    }
    return false;
}

void loadedLog_t::read(const statement_t &row) {
    number_ = row.integer(0);
    name_ = row.text(1);
    firstSize_ = static_cast<std::uint64_t>(row.integer(2));
    firstHash_ = static_cast<std::uint64_t>(row.integer(3));
    position_.offset = static_cast<std::uint64_t>(row.integer(4));
    hasTail_ = row.integer(5) != 0;
    position_.line = static_cast<std::uint64_t>(row.integer(6));
    position_.lineHead = row.text(7);
    position_.isLineHeadComplete = row.integer(8) != 0;
    last_ = {static_cast<std::uint64_t>(row.integer(9)), static_cast<std::uint64_t>(row.integer(10)),
             static_cast<std::uint64_t>(row.integer(11))};
}

void loadedLog_t::setFirst(std::string_view first) {
    first = first.substr(0, firstBytes);
    firstSize_ = first.size();
    firstHash_ = hashOf(first);
}

void loadedLog_t::checkIsOwn(database_t &database) const {
    statement_t row(database, "SELECT \"loaded_bytes\" FROM \"sources\" WHERE \"source_id\" = ?");
    row.bind(1, number_);
    if (!row.next() || static_cast<std::uint64_t>(row.integer(0)) != position_.offset)
        throw usageError_t("another vekmsg loads " + name_ + " into " + database.file() + " at the same time; let it");
}

void loadedLog_t::save(database_t &database, const inspect::logPosition_t &position, const message_t &last) {
    position_ = position;
    last_ = last;
    statement_t update(database,
                       "UPDATE \"sources\" SET \"first_bytes\" = ?, \"first_bytes_hash\" = ?, \"loaded_bytes\" = ?, "
                       "\"has_tail\" = ?, \"line\" = ?, \"line_head\" = ?, \"is_line_head_complete\" = ?, "
                       "\"last_message_offset\" = ?, \"last_message_bytes\" = ?, \"last_message_hash\" = ? "
                       "WHERE \"source_id\" = ?");
    int parameter = 0;
    const auto bind = [&](std::uint64_t value) { update.bind(++parameter, static_cast<std::int64_t>(value)); };
    bind(firstSize_);
    bind(firstHash_);
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
