#include "tools/page/core/logRows.hpp"

#include "vek/api/problem.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/log/logTime.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace vek::page {

namespace {

using namespace vek::inspect;

static_assert(findingCodeCount <= 64);
constexpr double nothing = std::numeric_limits<double>::quiet_NaN();

template <class Value>
void appendBytes(std::string &out, const Value &value) {
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    out.append(bytes, sizeof bytes);
}

// Of the messages whose start and size in the block are given as 32-bit numbers.
template <class Take>
void eachMessage(std::string_view places, std::string_view block, Take take) {
    for (; places.size() >= 2 * sizeof(std::uint32_t); places.remove_prefix(2 * sizeof(std::uint32_t))) {
        std::uint32_t place[2];
        std::memcpy(place, places.data(), sizeof place);
        take(block.substr(std::min<std::size_t>(place[0], block.size()), place[1]));
    }
}

} // namespace

void logRows_t::take(std::string_view block, std::string &out) {
    out_ = &out;
    isSmall_ = isSmall_ && start_.size() + block.size() < largestMeant;
    start_ = isSmall_ ? start_.append(block) : std::string();
    if (!block.empty())
        return scanner_.feed(block, *this);
    scanner_.finish(*this);
    if (isFound_ || !isSmall_ || !isMeantAsMessage(start_))
        return;
    foundMessage_t meant;
    meant.text = trimmed(start_);
    meant.head = readEnvelopeHead(meant.text);
    meant.isDamaged = true;
    meant.offset = static_cast<std::uint64_t>(meant.text.data() - start_.data());
    meant.line += static_cast<std::uint64_t>(std::count(std::as_const(start_).data(), meant.text.data(), '\n'));
    message(meant);
}

void logRows_t::message(const foundMessage_t &found) {
    isFound_ = true;
    // Of a message that no host reads the front alone: a page shall not be kept busy by it.
    const envelopeHead_t &head = found.head;
    const bool isTooLong = found.text.size() >= longestReadableMessage;
    tree_.read(isTooLong ? std::string_view() : found.text);
    row_t row{};
    row.offset = static_cast<double>(found.offset);
    row.microseconds = nothing;
    if (const std::optional<logTime_t> time = timeIn(found.lineHead)) {
        row.microseconds = static_cast<double>(time->microseconds);
        row.hasDate = time->hasDate ? 1 : 0;
    }
    row.size = static_cast<std::uint32_t>(found.text.size());
    row.line = static_cast<std::uint32_t>(std::min<std::uint64_t>(found.line, UINT32_MAX));
    row.id = head.id.valueOr(-1);
    row.isDamaged = found.isDamaged ? 1 : 0;
    row.hasSequence = head.sequenceNumber.isThere ? 1 : 0;
    row.sequence = head.sequenceNumber.value;
    row.hasEcho = head.echoTag.isThere ? 1 : 0;
    row.echo = head.echoTag.value;
    if (head.sequenceNumber.isThere) // a damaged message is there too
        row.missing = sequences_.take(row.sequence);
    const auto tell = [&row](findingCode_t code, severity_t severity) {
        const auto bit = static_cast<std::size_t>(code);
        row.findings[bit / 32] |= std::uint32_t{1} << bit % 32;
        row.severity = std::max<std::uint8_t>(row.severity, severity == severity_t::error ? 2 : 1);
    };
    if (isTooLong)
        tell(findingCode_t::tooLong, severity_t::error);
    else if (!isClean(tree_))
        for (const finding_t &finding : check(tree_))
            tell(finding.code, finding.severity);
    appendBytes(*out_, row);
}

void appendMissing(std::string_view sequences, std::string &out) {
    sequences_t gaps;
    for (; sequences.size() >= sizeof(std::int32_t); sequences.remove_prefix(sizeof(std::int32_t))) {
        std::int32_t sequence = 0;
        std::memcpy(&sequence, sequences.data(), sizeof sequence);
        appendBytes(out, gaps.take(sequence));
    }
}

void series_t::choose(std::string_view paths) {
    paths_.clear();
    while (!paths.empty()) {
        const std::size_t end = std::min(paths.find('\n'), paths.size());
        paths_.emplace_back(paths.substr(0, end));
        paths.remove_prefix(std::min(end + 1, paths.size()));
    }
}

void appendChosen(std::string &out, const expression_t &where, std::string_view places, std::string_view block) {
    tree_t tree;
    eachMessage(places, block, [&](std::string_view text) {
        tree.read(text);
        out += where.holds(tree) ? '\1' : '\0';
    });
}

void series_t::take(std::string_view places, std::string_view block, std::string &out) {
    eachMessage(places, block, [&](std::string_view text) {
        tree_.read(text);
        for (const std::string &path : paths_)
            appendBytes(out, numberAt(path));
    });
}

double series_t::numberAt(const std::string &path) const {
    const node_t *const node = tree_.find(path);
    if (node == nullptr || !node->hasValue || node->field == nullptr || node->isBody)
        return nothing;
    const std::string_view value = tree_.value(*node);
    switch (node->field->kind) {
    case fieldKind_t::integer32:
    case fieldKind_t::integer16:
        return readInteger(value);
    case fieldKind_t::float64:
    case fieldKind_t::float32:
    case fieldKind_t::pixels:
        return readReal(value);
    case fieldKind_t::boolean:
        return value == "TRUE" ? 1.0 : 0.0;
    case fieldKind_t::enumeration: {
        const std::int32_t number = node->field->valueOf(value);
        return number < 0 ? nothing : number;
    }
    default:
        return nothing;
    }
}

} // namespace vek::page
