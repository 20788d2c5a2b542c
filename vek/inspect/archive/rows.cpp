// Goes over a message's tree once for each table; the memory of cells and texts serves for message after message.
#include "vek/inspect/archive/rows.hpp"

#include "vek/inspect/check/bodyBuilder.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <array>

namespace vek::inspect {

namespace {

// How many elements a host reads of a list: one a pair, as far as there is room.
std::size_t elementCount(const tree_t &tree, const node_t &list) {
    const std::span<const node_t> pairs = tree.children(list);
    const auto count = static_cast<std::size_t>(
        std::count_if(pairs.begin(), pairs.end(), [](const node_t &pair) { return pair.hasKey || pair.hasValue; }));
    const std::optional<std::int32_t> room = list.field->list->room;
    return room ? std::min(count, static_cast<std::size_t>(*room)) : count;
}

// Whether the value that a column holds gives the pair again.
bool isInItsColumn(const tree_t &tree, const node_t &node) {
    if (node.isCode)
        return true; // of a text of them
    if (node.field == nullptr || node.use != pairUse_t::assigned)
        return false;
    const bool isText16 = node.valueKind() == fieldKind_t::text16;
    if (node.isBody)
        return node.childCount > 0 && (!isText16 || wideText(tree, node));
    const std::string_view value = tree.value(node);
    constexpr std::string_view negativeZero = "-0.000000"; // which not every database keeps
    switch (node.field->kind) {
    case fieldKind_t::integer32:
        return isUsualInteger(value) || value == std::to_string(readInteger(value));
    case fieldKind_t::integer16:
        return value == std::to_string(static_cast<std::int16_t>(readInteger(value)));
    case fieldKind_t::float64:
    case fieldKind_t::pixels:
        return value != negativeZero && (isUsualReal(value) || value == realText(readReal(value)));
    case fieldKind_t::float32:
        return value != negativeZero && value == realText(static_cast<double>(static_cast<float>(readReal(value))));
    case fieldKind_t::boolean:
        return value == "TRUE" || value == "FALSE";
    default:
        return !isText16;
    }
}

// Whether the rows say all of a message in which nothing was found.
bool isAllInColumns(const tree_t &tree) {
    return isPlain(tree) && std::all_of(tree.nodes().begin() + 1, tree.nodes().end(),
                                        [&](const node_t &node) { return isInItsColumn(tree, node); });
}

} // namespace

void rowMaker_t::make(const tree_t &tree, const rowFront_t &front, rowSink_t &sink) {
    tree_ = &tree;
    front_ = &front;
    sink_ = &sink;
    textCount_ = 0;
    elements_.clear();
    listCells_.clear(); // of the last message
    findings_.clear();
    if (!isClean(tree))
        findings_ = check(tree);
    isDamaged_ = std::any_of(findings_.begin(), findings_.end(),
                             [](const finding_t &finding) { return finding.severity == severity_t::error; });
    makeMessage();
    if (!findings_.empty())
        makeProblems();
    if (const table_t *table = archiveTables().of(tree.message()))
        makeRecord(*table, &tree.body());
}

void rowMaker_t::emit(const table_t &table, std::span<const cell_t> cells) {
    const envelopeParts_t &envelope = tree_->envelope();
    const auto valueOf = [](const envelopeNumber_t &number) {
        return number.isThere ? std::optional(number.value) : std::nullopt;
    };
    sink_->row({table, *front_, valueOf(envelope.echoTag), valueOf(envelope.sequenceNumber), isDamaged_, elements_,
                cells, listCells_});
}

void rowMaker_t::makeMessage() {
    const envelopeNumber_t &id = tree_->envelope().id;
    const table_t *table = archiveTables().of(tree_->message());
    const std::array<cell_t, 4> cells{
        cell_t::ofInteger(static_cast<std::int64_t>(front_->line)),
        id.isThere ? cell_t::ofInteger(id.value) : cell_t{},
        cell_t::ofText(table != nullptr ? std::string_view(table->name) : std::string_view()),
        findings_.empty() && isAllInColumns(*tree_) ? cell_t{} : cell_t::ofText(tree_->text()),
    };
    emit(archiveTables().messages(), cells);
}

void rowMaker_t::makeProblems() {
    elements_.assign(1, 0);
    for (const finding_t &finding : findings_) {
        const std::array<cell_t, 8> cells{
            cell_t::ofText(findingName(finding.code)),
            cell_t::ofText(severityName(finding.severity)),
            cell_t::ofText(finding.path),
            cell_t::ofInteger(finding.place.start),
            cell_t::ofInteger(finding.place.end),
            cell_t::ofText(finding.message),
            cell_t::ofText(finding.consequence),
            cell_t::ofText(finding.suggestion),
        };
        emit(archiveTables().problems(), cells);
        ++elements_.front();
    }
    elements_.clear();
}

// `body`: null for a list's element that nothing was assigned to.
void rowMaker_t::makeRecord(const table_t &table, const node_t *body) {
    while (cells_.size() <= table.depth)
        cells_.emplace_back();
    std::vector<cell_t> &cells = cells_[table.depth];
    cells.assign(table.columns.size(), {});
    listCells_.clear();
    if (body != nullptr)
        fill(table.record, *body, cells);
    emit(table, cells);
    if (body != nullptr && table.record.hasChildren)
        makeChildren(table.record, *body);
}

void rowMaker_t::fill(const recordColumns_t &columns, const node_t &body, std::vector<cell_t> &cells) {
    for (const node_t &node : tree_->children(body)) {
        if (node.field == nullptr || node.use != pairUse_t::assigned)
            continue;
        const recordColumns_t::target_t &target = columns.targets[static_cast<std::size_t>(node.field->position)];
        if (target.nested != nullptr)
            fill(*target.nested, node, cells);
        else if (target.child == nullptr)
            cells[target.column] = node.field->isList() ? listOf(node) : valueOf(node);
    }
}

void rowMaker_t::makeChildren(const recordColumns_t &columns, const node_t &body) {
    for (const node_t &node : tree_->children(body)) {
        if (node.field == nullptr || node.use != pairUse_t::assigned)
            continue;
        const recordColumns_t::target_t &target = columns.targets[static_cast<std::size_t>(node.field->position)];
        if (target.nested != nullptr)
            makeChildren(*target.nested, node);
        if (target.child == nullptr)
            continue;
        std::vector<const node_t *> bodies(elementCount(*tree_, node), nullptr);
        for (const node_t &element : tree_->children(node))
            if (element.index >= 0 && element.use == pairUse_t::assigned && element.isBody)
                bodies[static_cast<std::size_t>(element.index)] = &element;
        for (std::size_t index = 0; index < bodies.size(); ++index) {
            elements_.push_back(static_cast<std::uint32_t>(index));
            makeRecord(*target.child, bodies[index]);
            elements_.pop_back();
        }
    }
}

// As many elements as a host reads: one a pair, also of those that assign nothing, as 0 or an empty text; keyed ones in
// the order of their numbers.
cell_t rowMaker_t::listOf(const node_t &node) {
    const std::size_t first = listCells_.size();
    listCells_.resize(first + elementCount(*tree_, node), defaultOf(*node.field));
    for (const node_t &element : tree_->children(node))
        if (element.index >= 0 && element.use == pairUse_t::assigned)
            listCells_[first + static_cast<std::size_t>(element.index)] = valueOf(element);
    return {cell_t::kind_t::list, static_cast<std::int64_t>(first), 0.0, {}, listCells_.size() - first};
}

// What a host reads of an element that nothing was assigned to.
cell_t rowMaker_t::defaultOf(const fieldSchema_t &field) {
    return isReal(field.kind)                                            ? cell_t::ofReal(0.0)
           : isInteger(field.kind) || field.kind == fieldKind_t::boolean ? cell_t::ofInteger(0)
                                                                         : cell_t::ofText({});
}

cell_t rowMaker_t::valueOf(const node_t &node) {
    const std::string_view value = tree_->value(node);
    switch (node.field->kind) {
    case fieldKind_t::integer32:
        return cell_t::ofInteger(readInteger(value));
    case fieldKind_t::integer16:
        return cell_t::ofInteger(static_cast<std::int16_t>(readInteger(value)));
    case fieldKind_t::float64:
    case fieldKind_t::pixels:
        return cell_t::ofReal(readReal(value));
    case fieldKind_t::float32:
        return cell_t::ofReal(static_cast<double>(static_cast<float>(readReal(value))));
    case fieldKind_t::boolean:
        return cell_t::ofInteger(value == "TRUE" ? 1 : 0);
    case fieldKind_t::text16:
        return kept(wideTextRead(*tree_, node));
    case fieldKind_t::text:
        return std::any_of(value.begin(), value.end(), isEscapeCode) ? kept(unescapedText(value))
                                                                     : cell_t::ofText(value);
    default:
        return cell_t::ofText(value);
    }
}

cell_t rowMaker_t::kept(std::string text) {
    if (textCount_ == texts_.size())
        texts_.emplace_back();
    return cell_t::ofText(texts_[textCount_++] = std::move(text));
}

} // namespace vek::inspect
