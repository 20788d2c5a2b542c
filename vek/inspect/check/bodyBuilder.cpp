// What a form says is put together in the order of the record, and then read again as a host would: only what comes
// back as it was said is handed out.
#include "vek/inspect/check/bodyBuilder.hpp"

#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/characters.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

using saidKind_t = said_t::kind_t;

// What an element of a list, or a field, is read into when a group stands there.
bodyTarget_t groupOf(const fieldSchema_t &field, bool isElement) {
    if (field.isList() && !isElement)
        return {bodyTarget_t::kind_t::list, nullptr, &field};
    if (field.kind == fieldKind_t::text16)
        return {bodyTarget_t::kind_t::codes, nullptr, &field};
    if (field.record() != nullptr)
        return {bodyTarget_t::kind_t::record, field.record(), &field};
    return {};
}

// A key without a value is as good as left out; but the library writes an empty 16-bit text, as its terminating 0.
bool isThere(const said_t &said, bool isText16) {
    return said.kind == saidKind_t::group ? !said.members.empty()
                                          : said.kind != saidKind_t::nothing && (isText16 || !said.text.empty());
}

std::string_view emptyElement(const bodyTarget_t &target) {
    return target.kind == bodyTarget_t::kind_t::record ? "an element can't be empty: say one of its keys at least"
                                                       : "an element can't be empty: a host writes the list without it";
}

// A number behind "#" tells the pairs of one key apart; it is no part of the key.
std::string_view keyOf(const said_t &said) {
    const std::string_view name = said.name;
    const std::size_t mark = name.find_last_not_of("0123456789");
    if (mark == std::string_view::npos || name[mark] != '#' || mark + 1 == name.size())
        return name;
    return name.substr(0, mark) == emptyKey ? std::string_view() : name.substr(0, mark);
}

const said_t *memberNamed(const said_t &group, std::string_view name) {
    for (const said_t &member : group.members)
        if (member.name == name)
            return &member;
    return nullptr;
}

bool isPlainBody(const tree_t &tree, const node_t &node) {
    const std::string_view value = tree.value(node);
    const std::span<const node_t> children = tree.children(node);
    if (value.size() < 2 || value.front() != openBrace || value.back() != closeBrace)
        return node.parent == node_t::none && value.empty();
    if (children.empty())
        return node.parent != node_t::none && value.size() == 2;
    const bool isList = node.field != nullptr && tree.recordOf(node) == nullptr;
    const bool isRecord = tree.recordOf(node) != nullptr;
    return children.front().whole.start == node.value.start + 1 && children.back().whole.end == node.value.end - 1 &&
           !(isList && node.isKeyed) && !(isRecord && !node.isKeyed);
}

bool isPlainPair(const tree_t &tree, const node_t &parent, const node_t &node) {
    if (!node.isCanonical || node.hasKey != parent.isKeyed || node.ordinal > 1 || node.use == pairUse_t::duplicate)
        return false;
    if (node.hasKey && node.field == nullptr && tree.key(node).find('#') != std::string_view::npos)
        return false;
    if (node.isBody)
        return isPlainBody(tree, node);
    const std::string_view value = tree.value(node);
    return !isText(node) || std::none_of(value.begin(), value.end(), [](char c) { return escaped(c) != c; });
}

} // namespace

bodyBuilder_t::bodyBuilder_t(const said_t &said, const recordSchema_t *record, bool isRaw) : isRaw_(isRaw) {
    putMembers(said,
               {record != nullptr ? bodyTarget_t::kind_t::record : bodyTarget_t::kind_t::unknown, record, nullptr});
    text_ += '}';
    if (text_.size() == 2)
        text_.clear();
}

bool bodyBuilder_t::refuse(const said_t &said, std::string_view why) {
    refusals_.push_back({joined({path_, ": ", why}), said.offset});
    return false;
}

void bodyBuilder_t::putMembers(const said_t &group, const bodyTarget_t &around) {
    if (around.kind == bodyTarget_t::kind_t::record && !isRaw_)
        return putRecord(group, *around.record);
    for (std::size_t i = 0; i < group.members.size(); ++i) {
        const said_t &member = group.members[i];
        const bool isField = around.kind == bodyTarget_t::kind_t::record;
        put(member, around, isField ? around.record->find(keyOf(member)) : around.field, i);
    }
}

// In the order of the record, with the count of a list that the form does not give.
void bodyBuilder_t::putRecord(const said_t &group, const recordSchema_t &record) {
    const bodyTarget_t around{bodyTarget_t::kind_t::record, &record, nullptr};
    for (const said_t &member : group.members) {
        const bool isKnown = record.find(member.name) != nullptr;
        const bool isFirst = memberNamed(group, member.name) == &member;
        if (!isKnown || !isFirst)
            put(member, around, nullptr, 0);
    }
    for (const fieldSchema_t &field : record.fields) {
        const said_t *said = memberNamed(group, field.key);
        const bool isText16 = field.kind == fieldKind_t::text16 && !field.isList();
        if (said != nullptr && isThere(*said, isText16)) {
            put(*said, around, &field, 0);
            continue;
        }
        for (const fieldSchema_t &list : record.fields)
            if (const said_t *counted = list.counter() == &field ? memberNamed(group, list.key) : nullptr;
                counted != nullptr && !counted->members.empty()) {
                said_t count{saidKind_t::words, std::string(field.key), -1, std::to_string(counted->members.size())};
                count.offset = counted->offset;
                put(count, around, &field, 0);
                break;
            }
    }
}

void bodyBuilder_t::put(const said_t &said, const bodyTarget_t &around, const fieldSchema_t *field,
                        std::size_t ordinal) {
    const bool isElement = around.isOfElements();
    const std::size_t length = path_.size(), start = text_.size(), pieces = pieces_.size();
    const std::string_view key = isElement && !isRaw_ ? std::string_view() : keyOf(said);
    if (isElement) {
        path_ += joined({"[", std::to_string(ordinal), "]"});
    } else {
        path_ += path_.empty() ? "" : ".";
        appendPathKey(path_, said.name);
    }
    text_ += key;
    text_ += key.empty() ? "" : "=";
    const std::size_t valueStart = text_.size();
    const bool isCode = around.kind == bodyTarget_t::kind_t::codes;
    if (!isCode)
        pieces_.push_back({valueStart, valueStart, said.offset});
    if (putValue(said, around, field)) {
        if (!isCode)
            pieces_[pieces].end = text_.size();
        text_ += key.empty() ? ',' : ';';
    } else {
        text_.resize(start);
        pieces_.resize(pieces);
    }
    path_.resize(length);
}

// False, and perhaps a refusal, when nothing is to stand there.
bool bodyBuilder_t::putValue(const said_t &said, const bodyTarget_t &around, const fieldSchema_t *field) {
    const bool isElement = around.isOfElements();
    const bool isCode = around.kind == bodyTarget_t::kind_t::codes;
    if (isRaw_ || around.kind == bodyTarget_t::kind_t::unknown) {
        const bool isScalar = field != nullptr && !isCode && (isElement || !field->isList());
        if (said.kind == saidKind_t::group)
            return putGroup(said, field != nullptr && !isCode ? groupOf(*field, isElement) : bodyTarget_t());
        const bool isWide = isScalar && field->kind == fieldKind_t::text16 && !said.text.starts_with('{');
        if (said.kind == saidKind_t::wide || isWide)
            return putWide(said);
        text_ += isScalar && field->kind == fieldKind_t::text ? escapedText(said.text) : said.text;
        return said.kind != saidKind_t::nothing;
    }
    if (field == nullptr) {
        const bool isAgain = around.record->find(keyOf(said)) != nullptr;
        const findingWords_t words = isAgain ? wordsOfDuplicate(keyOf(said)) : wordsOfUnknown(around.record, said.name);
        return refuse(said, words.inShort());
    }
    if (isElement && !said.name.empty())
        return refuse(said, joined({"an element of a list has no name, here is ", shownValue(said.name)}));
    if (isElement && said.index >= 0 &&
        path_.substr(path_.rfind('[')) != joined({"[", std::to_string(said.index), "]"}))
        return refuse(said, joined({"here is [", std::to_string(said.index),
                                    "]: the elements of a list come in their order, and none is left out"}));
    const bodyTarget_t target = isCode ? bodyTarget_t() : groupOf(*field, isElement);
    const bool isText16 = target.kind == bodyTarget_t::kind_t::codes;
    if (!isThere(said, isText16))
        return isElement && refuse(said, emptyElement(target));
    if (said.kind == saidKind_t::group) {
        const std::size_t start = text_.size(), refusals = refusals_.size();
        if (target.kind == bodyTarget_t::kind_t::unknown)
            return refuse(said, joined({"a group stands where a value should be: ", kindInWords(*field)}));
        const bool isEmpty = putGroup(said, target) && text_.size() == start + 2;
        if (isEmpty && isElement && refusals == refusals_.size())
            return refuse(said, emptyElement(target));
        return !isEmpty;
    }
    if (isText16)
        return putWide(said);
    if (said.kind == saidKind_t::wide)
        return refuse(said, joined({"a 16-bit text stands where another value should be: ", kindInWords(*field)}));
    if (target.kind != bodyTarget_t::kind_t::unknown)
        return refuse(said, joined({shownValue(said.text), " stands where a group should be: ", kindInWords(*field)}));
    std::string error;
    const std::optional<std::string> text = spelt(*field, said.text,
                                                  isCode      ? part_t::code
                                                  : isElement ? part_t::element
                                                              : part_t::whole,
                                                  error);
    if (!text)
        return refuse(said, error);
    text_ += *text;
    return true;
}

bool bodyBuilder_t::putGroup(const said_t &said, const bodyTarget_t &target) {
    text_ += '{';
    putMembers(said, target);
    text_ += '}';
    return true;
}

bool bodyBuilder_t::putWide(const said_t &said) {
    std::string error;
    const std::optional<std::string> codes = isRaw_ ? wideCodes(said.text) : speltWide(said.text, error);
    if (!codes && !isRaw_)
        return refuse(said, error);
    text_ += codes.value_or("{0,}");
    return true;
}

bool bodyBuilder_t::isReadIn(const tree_t &tree, std::size_t &offset) const {
    const std::uint32_t start = tree.envelope().body.start;
    std::vector<const node_t *> nodes; // as the builder puts them, one behind the other
    for (const node_t &node : tree.nodes())
        if (node.parent != node_t::none && !node.isCode)
            nodes.push_back(&node);
    std::sort(nodes.begin(), nodes.end(),
              [](const node_t *one, const node_t *other) { return one->value.start < other->value.start; });
    const bool isKnown = tree.record() != nullptr;
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
        offset = pieces_[i].offset;
        if (i >= nodes.size() || nodes[i]->value.start != start + pieces_[i].start ||
            nodes[i]->value.end != start + pieces_[i].end || (isKnown && nodes[i]->use != pairUse_t::assigned))
            return false;
    }
    return nodes.size() == pieces_.size();
}

std::size_t bodyBuilder_t::offsetOf(std::size_t place) const {
    std::size_t offset = 0;
    for (const piece_t &piece : pieces_)
        if (piece.start <= place)
            offset = piece.offset;
    return offset;
}

std::vector<refusal_t> refusalsOf(const tree_t &tree, bool isAnew) {
    std::vector<refusal_t> refusals;
    for (const finding_t &finding : check(tree))
        if (finding.severity == severity_t::error || (isAnew && finding.code == findingCode_t::countMismatch))
            refusals.push_back(
                {joined({finding.path, finding.path.empty() ? "" : ": ", finding.inShort()}), finding.place.start});
    return refusals;
}

std::string formResult_t::errorIn(std::string_view form) const {
    const std::string_view before = form.substr(0, offset);
    const auto isCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const std::string_view line = before.substr(before.rfind('\n') + 1);
    const auto column = std::count_if(line.begin(), line.end(), isCharacter);
    return joined({"line ", std::to_string(lines + 1), ", column ", std::to_string(column + 1), " (byte ",
                   std::to_string(before.size()), "): ", error});
}

formResult_t refused(std::vector<refusal_t> refusals) {
    formResult_t result{{}, std::move(refusals.front().words), refusals.front().offset};
    refusals.erase(refusals.begin());
    result.further = std::move(refusals);
    return result;
}

formResult_t messageSaid(const envelopeNumbers_t &numbers, const said_t &said, bool isRaw) {
    const messageSchema_t *message = schema().find(numbers.id);
    const bodyBuilder_t builder(said, message != nullptr ? message->record : nullptr, isRaw);
    std::string text = sealed(numbers.id, numbers.echoTag, numbers.sequenceNumber, builder.body());
    if (isRaw)
        return {std::move(text), {}, 0, {}, true};
    std::vector<refusal_t> refusals = builder.refusals();
    if (refusals.empty()) {
        const tree_t tree(text);
        refusals = refusalsOf(tree, true);
        for (refusal_t &refusal : refusals)
            refusal.offset = builder.offsetOf(refusal.offset - tree.envelope().body.start);
        if (std::size_t offset = 0; refusals.empty() && !builder.isReadIn(tree, offset))
            refusals.push_back({"a host would read something else than what stands here", offset});
    }
    return refusals.empty() ? formResult_t{std::move(text)} : refused(std::move(refusals));
}

bool isPlain(const tree_t &tree) {
    if (!tree.envelope().isCanonical || !isPlainBody(tree, tree.body()))
        return false;
    const std::vector<node_t> &nodes = tree.nodes();
    return std::all_of(nodes.begin() + 1, nodes.end(),
                       [&](const node_t &node) { return isPlainPair(tree, nodes[node.parent], node); });
}

bool isSaidByItsWords(const tree_t &tree) {
    return isPlain(tree) && isClean(tree, tolerance_t::whatIsBuilt);
}

} // namespace vek::inspect
