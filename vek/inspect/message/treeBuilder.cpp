// Cuts a body into pairs by the library's own scanner, level by level, and then says of each pair what the reader makes
// of it.
#include "vek/inspect/message/private/treeBuilder.hpp"

#include "vek/inspect/words/words.hpp"
#include "vek/text/elementKeys.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

const char *skipSeparators(const char *at, const char *end) {
    while (at != end && isSeparator(*at))
        ++at;
    return at;
}

bool isLostRest(const node_t &node) {
    return !node.hasKey && !node.hasValue;
}

bool isBraced(std::string_view value) {
    return value.size() >= 2 && value.front() == openBrace && value.back() == closeBrace;
}

} // namespace

bodyTarget_t targetOf(const tree_t &tree, const node_t &node) {
    using enum bodyTarget_t::kind_t;
    if (node.parent == node_t::none)
        return {tree.record() != nullptr ? record : unknown, tree.record(), nullptr};
    if (node.field == nullptr || node.isCode)
        return {};
    const fieldSchema_t &field = *node.field;
    if (field.isList() && !node.isElement)
        return {list, nullptr, &field};
    if (field.kind == fieldKind_t::text16)
        return {codes, nullptr, &field};
    return {field.record() != nullptr ? record : unknown, field.record(), &field};
}

void treeBuilder_t::build() {
    nodes_.clear();
    node_t body;
    body.value = body.whole = tree_.envelope_.body;
    body.use = pairUse_t::assigned;
    body.hasValue = body.isBody = true;
    nodes_.push_back(body);
    // A body's pairs are appended while the array is gone through, so nothing ever recurses.
    for (std::uint32_t i = 0; i < nodes_.size(); ++i)
        if (nodes_[i].isBody) {
            addPairs(i);
            assignPairs(i);
        }
}

place_t treeBuilder_t::place(const char *start, const char *end) const {
    const char *const text = tree_.text_.data();
    return {static_cast<std::uint32_t>(start - text), static_cast<std::uint32_t>(end - text)};
}

// What stands between a body's braces. A host takes its first and last characters for them, whatever they are; of a
// message that no host reads as it stands, people see all.
std::string_view treeBuilder_t::inside(const node_t &node) const {
    std::string_view body = node.value.in(tree_.text_);
    const bool isAsForHost = node.parent != node_t::none || tree_.envelope_.isWholeForHost();
    if (isAsForHost)
        return body.size() > 2 ? body.substr(1, body.size() - 2) : std::string_view();
    if (body.starts_with(openBrace))
        body.remove_prefix(1);
    if (body.ends_with(closeBrace))
        body.remove_suffix(1);
    return body;
}

void treeBuilder_t::addPairs(std::uint32_t parent) {
    const std::string_view body = inside(nodes_[parent]);
    nodes_[parent].firstChild = static_cast<std::uint32_t>(nodes_.size());
    if (!body.empty()) {
        const char *const innerEnd = body.data() + body.size();
        tolerantScanner_t pairs{tolerantTokenizer_t(body)};
        textPair_t pair;
        const char *start = pairs.position();
        for (; pairs.next(pair); start = pairs.position())
            nodes_.push_back(pairNode(pair, start, pairs.position(), innerEnd));
        nodes_[parent].isKeyed = pairs.isKeyed();
        if (skipSeparators(start, innerEnd) != innerEnd) // a brace without its end, which no pair came of
            nodes_.push_back(pairNode({noToken, noToken}, start, innerEnd, innerEnd));
    }
    nodes_[parent].childCount = static_cast<std::uint32_t>(nodes_.size()) - nodes_[parent].firstChild;
    for (std::uint32_t i = nodes_[parent].firstChild; i < nodes_.size(); ++i) {
        nodes_[i].parent = parent;
        nodes_[i].depth = static_cast<std::uint16_t>(nodes_[parent].depth + 1);
    }
}

// The scanner gives the views; where quotes and separators stand follows from them.
node_t treeBuilder_t::pairNode(const textPair_t &pair, const char *start, const char *end, const char *innerEnd) const {
    node_t node;
    node.whole = place(start, end);
    const char *at = skipSeparators(start, end);
    bool isPlain = at == start;
    node.hasKey = pair.key.data() != nullptr;
    node.key = place(at, at);
    if (node.hasKey) {
        const char *keyEnd = pair.key.data() + pair.key.size();
        node.key = place(pair.key.data(), keyEnd);
        node.isKeyQuoted = pair.key.data() != at;
        keyEnd += node.isKeyQuoted ? 1 : 0;
        at = skipSeparators(keyEnd, end);
        isPlain &= !node.isKeyQuoted && at == keyEnd + 1;
    }
    node.hasValue = pair.value.data() != nullptr;
    node.value = place(at, at);
    if (!node.hasValue) {
        node.lost = place(at, innerEnd > at ? innerEnd : at);
        return node;
    }
    const char *const valueEnd = pair.value.data() + pair.value.size();
    node.value = place(pair.value.data(), valueEnd);
    node.isQuoted = pair.value.data() != at;
    node.isQuoteOpen = node.isQuoted && valueEnd == innerEnd;
    node.isCanonical =
        isPlain && !node.isQuoted && end == valueEnd + 1 && *valueEnd == (node.hasKey ? semicolon : comma);
    return node;
}

void treeBuilder_t::assignPairs(std::uint32_t parentIndex) {
    seen_.clear();
    withoutKey_ = 0;
    node_t &parent = nodes_[parentIndex];
    const bodyTarget_t target = targetOf(tree_, parent);
    switch (target.kind) {
    case bodyTarget_t::kind_t::record:
        assignToRecord(parent, *target.record);
        break;
    case bodyTarget_t::kind_t::list:
    case bodyTarget_t::kind_t::codes:
        assignToList(parent, target);
        break;
    case bodyTarget_t::kind_t::unknown:
        countUnknown(parent);
    }
    for (std::uint32_t i = 0; i < parent.childCount; ++i) {
        node_t &node = nodes_[parent.firstChild + i];
        if (isLostRest(node)) // the last one
            node.ordinal = ++withoutKey_;
        decideBody(parent, node);
    }
}

std::uint32_t treeBuilder_t::countOf(const node_t &node) {
    return node.hasKey ? ++seen_[node.key.in(tree_.text_)] : ++withoutKey_;
}

void treeBuilder_t::assignToRecord(node_t &parent, const recordSchema_t &record) {
    matched_.assign(record.fields.size(), 0);
    std::size_t hint = 0;
    for (std::uint32_t i = 0; i < parent.childCount; ++i) {
        node_t &node = nodes_[parent.firstChild + i];
        if (isLostRest(node))
            continue;
        const bool isNamed = node.hasKey && parent.isKeyed;
        const fieldSchema_t *field = nullptr;
        if (isNamed)
            field = record.find(node.key.in(tree_.text_), hint);
        else if (!parent.isKeyed && i < record.fields.size())
            field = &record.fields[i];
        node.field = field;
        if (field == nullptr) {
            node.use = isNamed ? pairUse_t::unknown : parent.isKeyed ? pairUse_t::noKey : pairUse_t::surplus;
            node.ordinal = countOf(node);
            continue;
        }
        const auto position = static_cast<std::size_t>(field->position);
        if (matched_[position] != 0) {
            node.use = pairUse_t::duplicate;
            node.ordinal = countOf(node) + 1;
            continue;
        }
        matched_[position] = 1;
        hint = position + 1;
        node.use = node.value.isEmpty() ? pairUse_t::empty : pairUse_t::assigned;
    }
}

void treeBuilder_t::assignToList(node_t &parent, const bodyTarget_t &target) {
    const bool isCodes = target.kind == bodyTarget_t::kind_t::codes;
    std::int32_t count = 0;
    for (std::uint32_t i = 0; i < parent.childCount; ++i)
        count += isLostRest(nodes_[parent.firstChild + i]) ? 0 : 1;
    const std::int32_t room = isCodes ? count : std::min(count, target.field->list->room.value_or(count));
    std::string listKey;
    if (parent.isKeyed)
        listKey = joined({target.field->key, isCodes && parent.isElement ? std::to_string(parent.index) : ""});
    matched_.assign(parent.isKeyed ? static_cast<std::size_t>(room) : 0, 0);
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(parent.childCount); ++i) {
        node_t &node = nodes_[parent.firstChild + static_cast<std::uint32_t>(i)];
        if (isLostRest(node))
            continue;
        node.field = target.field;
        node.isElement = true;
        node.isCode = isCodes;
        node.use = node.value.isEmpty() ? pairUse_t::empty : pairUse_t::assigned;
        if (!parent.isKeyed) {
            node.index = i;
            node.use = i < room ? node.use : pairUse_t::surplus;
            continue;
        }
        const std::int32_t index = node.hasKey ? elementIndex(node.key.in(tree_.text_), listKey, room) : -1;
        const bool isTaken = index >= 0 && matched_[static_cast<std::size_t>(index)] != 0;
        if (index < 0 || isTaken) {
            node.use = isTaken ? pairUse_t::duplicate : node.hasKey ? pairUse_t::unknown : pairUse_t::noKey;
            node.ordinal = countOf(node) + (isTaken ? 1 : 0);
            node.field = isTaken ? node.field : nullptr;
            node.isElement = isTaken;
            node.isCode &= isTaken;
            continue;
        }
        matched_[static_cast<std::size_t>(index)] = 1;
        node.index = index;
    }
}

void treeBuilder_t::countUnknown(node_t &parent) {
    std::int32_t index = 0;
    for (std::uint32_t i = 0; i < parent.childCount; ++i) {
        node_t &node = nodes_[parent.firstChild + i];
        if (isLostRest(node))
            continue;
        node.use = pairUse_t::unknown;
        if (parent.isKeyed)
            node.ordinal = countOf(node);
        else
            node.index = index++;
    }
}

// A known group takes whatever stands there for a body; of the unknown, what stands in braces is shown as one.
void treeBuilder_t::decideBody(const node_t &parent, node_t &node) const {
    if (parent.use != pairUse_t::assigned)
        node.use = parent.use == pairUse_t::unknown ? pairUse_t::unknown : pairUse_t::unread;
    if (node.value.isEmpty())
        return;
    if (node.field == nullptr)
        node.isBody =
            !node.isQuoted && node.depth < unknownDepth && isBraced(node.value.in(tree_.text_)) && !parent.isCode;
    else if (node.isElement)
        node.isBody = !node.isCode && (node.field->record() != nullptr || node.field->kind == fieldKind_t::text16);
    else
        node.isBody = node.field->isGroup();
}

} // namespace vek::inspect
