#include "tools/vekmsg/load/logCursor.hpp"

#include "vek/inspect/archive/lineFront.hpp"

#include <algorithm>
#include <set>

namespace vek::tool {

using namespace inspect;

logCursor_t::logCursor_t(archiveReader_t &archive, archivedLog_t log, const table_t *table, std::size_t most)
    : archive_(archive), log_(std::move(log)), table_(table), most_(most) {
    readPiece();
}

void logCursor_t::readPiece() {
    messages_ = archive_.messages(log_.number, from_, most_);
    rows_.clear();
    at_ = front_ = 0;
    const std::uint64_t last = messages_.size() < most_ ? UINT64_MAX >> 24U : messages_.back().offset;
    std::set<const table_t *> tables;
    if (table_ != nullptr)
        tables.insert(table_);
    else
        for (const archiveReader_t::message_t &message : messages_)
            if (const messageSchema_t *schema = inspect::schema().find(message.id.value_or(-1));
                schema != nullptr && !message.text)
                for (const table_t *table : archiveTables().familyOf(*schema))
                    tables.insert(table);
    if (table_ == nullptr)
        tables.insert(&archiveTables().fronts());
    for (const table_t *table : tables)
        archive_.read(*table, log_.number, from_, last, rows_[table]);
    from_ = last + 1;
    take();
}

void logCursor_t::take() {
    if (!isAtEnd() && isInTail())
        at_ = messages_.size(); // it is in the tail's bytes
    if (!isAtEnd() && message().time)
        time_ = message().time;
}

void logCursor_t::next() {
    if (++at_ == messages_.size() && at_ == most_)
        readPiece();
    else
        take();
}

std::span<const keptRow_t> logCursor_t::rowsOf(const table_t &table) const {
    const auto found = rows_.find(&table);
    if (found == rows_.end())
        return {};
    const std::vector<keptRow_t> &rows = found->second.rows;
    const std::uint64_t offset = message().offset;
    const auto first =
        std::partition_point(rows.begin(), rows.end(), [&](const auto &row) { return row.offset < offset; });
    const auto end = std::partition_point(first, rows.end(), [&](const auto &row) { return row.offset == offset; });
    return std::span(first, end);
}

void logCursor_t::appendText(std::string &out) {
    const archiveReader_t::message_t &one = message();
    const std::size_t start = out.size();
    const std::vector<keptRow_t> &fronts = rows_[&archiveTables().fronts()].rows;
    bool hasFront = false;
    for (; front_ < fronts.size() && fronts[front_].offset <= one.offset; ++front_) {
        appendFront(out, fronts[front_].cells.front().text, one.time);
        hasFront |= fronts[front_].offset == one.offset;
    }
    if (!log_.isWhole && one.time)
        out += one.time->inWords() + " ";
    if (const std::string *usual = log_.fronts.of(one.id); !hasFront && usual != nullptr)
        appendFront(out, *usual, one.time);
    const std::uint64_t begin = told_ + (out.size() - start);
    if (log_.isWhole)
        missing_ += one.offset - std::min(begin, one.offset);
    const std::size_t text = out.size();
    out += one.text ? *one.text
                    : messageOfRows({one.id.value_or(0), one.echoTag.value_or(0), one.sequenceNumber.value_or(0)},
                                    [this](const table_t &table) { return rowsOf(table); });
    told_ = one.offset + (out.size() - text);
    out += log_.isWhole ? "" : "\n";
}

void logCursor_t::appendEnd(std::string &out) {
    const std::vector<keptRow_t> &fronts = rows_[&archiveTables().fronts()].rows;
    const std::uint64_t end = log_.position.offset;
    for (; front_ < fronts.size() && fronts[front_].offset <= end; told_ = fronts[front_++].offset)
        appendFront(out, fronts[front_].cells.front().text, std::nullopt);
    if (!log_.isWhole)
        return;
    missing_ += end - std::min(end, told_ + log_.behind.size());
    out.append(log_.behind).append(log_.tail);
}

} // namespace vek::tool
