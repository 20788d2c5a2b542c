// Of a record as a whole: keys that are missing or out of order, and lists beside the keys that count them.
#include "vek/inspect/check/private/checker.hpp"
#include "vek/text/numberText.hpp"
#include "vek/text/valueRange.hpp"

#include <algorithm>
#include <cstring>

namespace vek::inspect {

namespace {

bool isRangeType(const recordSchema_t &record, const fieldSchema_t &field) {
    return std::any_of(record.fields.begin(), record.fields.end(),
                       [&](const fieldSchema_t &other) { return other.rangeType() == &field; });
}

// Whether a host writes the field although its key was not there: texts and lists are empty then, and left out, and so
// is the type of a range.
bool isAlwaysWritten(const recordSchema_t &record, const fieldSchema_t &field) {
    if (field.isList(listKind_t::array))
        return field.counter() == nullptr;
    if (field.isList())
        return false;
    if (field.kind == fieldKind_t::record)
        return std::any_of(field.record()->fields.begin(), field.record()->fields.end(),
                           [&field](const fieldSchema_t &one) { return isAlwaysWritten(*field.record(), one); });
    return field.kind != fieldKind_t::text && field.kind != fieldKind_t::text16 && !isRangeType(record, field);
}

std::size_t position(const fieldSchema_t &field) {
    return static_cast<std::size_t>(field.position);
}

} // namespace

// Which pairs are read into the record's fields.
void checker_t::gather(const node_t &body, const recordSchema_t &record) {
    nodes_.assign(record.fields.size(), nullptr);
    explained_.assign(record.fields.size(), 0);
    for (const node_t &child : tree_.children(body))
        if (child.use == pairUse_t::assigned && child.field != nullptr)
            nodes_[position(*child.field)] = &child;
}

bool checker_t::isExplained(const fieldSchema_t &field) const {
    return explained_[position(field)] != 0;
}

void checker_t::explain(const fieldSchema_t *field) {
    if (field != nullptr)
        explained_[position(*field)] = 1;
}

namespace {

bool hasKeys(const messageSchema_t &message, const tree_t &tree, std::span<const node_t> nodes) {
    return message.record != nullptr && std::all_of(nodes.begin(), nodes.end(), [&](const node_t &node) {
               return node.hasKey && message.record->find(tree.key(node)) != nullptr;
           });
}

} // namespace

// Whether no other message has all the keys of the body.
bool checker_t::isOnlyWithKeys(const messageSchema_t &message) const {
    const auto &messages = schema().messages();
    return std::none_of(messages.begin(), messages.end(), [&](const messageSchema_t &other) {
        return other.id != message.id && hasKeys(other, tree_, tree_.children(tree_.body()));
    });
}

// The first message that has all the keys of a body; null when there is none, or there are too many keys.
const messageSchema_t *checker_t::messageWithKeys(const node_t &body) const {
    const std::span<const node_t> children = tree_.children(body);
    constexpr std::size_t most = 100;
    if (children.empty() || children.size() > most)
        return nullptr;
    const auto &messages = schema().messages();
    const auto found = std::find_if(messages.begin(), messages.end(),
                                    [&](const messageSchema_t &message) { return hasKeys(message, tree_, children); });
    return found != messages.end() ? &*found : nullptr;
}

// A body with nothing but unknown keys, which are those of another message.
bool checker_t::checkOtherId(const node_t &body) {
    const std::span<const node_t> children = tree_.children(body);
    if (std::any_of(children.begin(), children.end(),
                    [](const node_t &child) { return child.use != pairUse_t::unknown; }))
        return false;
    const messageSchema_t *message = messageWithKeys(body);
    if (message != nullptr && report(unknownKey, envelope_.id.place))
        tell(joined({"the keys of the body are those of ", std::to_string(message->id), ", ", message->record->name,
                     isOnlyWithKeys(*message) ? "" : " and others", ", not of ", std::to_string(envelope_.id.value)}),
             "a host ignores them all");
    return message != nullptr;
}

void checker_t::checkRecord(const node_t &body, const recordSchema_t &record) {
    std::int32_t last = -1;
    if (!body.isKeyed && body.childCount > 0 && !isTorn_ && !isCutOff() && report(positionalBody, body.value, &body)) {
        const bool isJson = tree_.value(body).find("\":") != std::string_view::npos;
        tell(isJson ? "no \"=\" stands in the body, which is written as JSON, not in pairs KEY=VALUE;"
                    : "no \"=\" stands in the body",
             "a host tells the values apart by their order");
    }
    for (const node_t &child : tree_.children(body)) {
        if (child.use != pairUse_t::assigned || child.field == nullptr)
            continue;
        if (child.field->position < last && report(keyOrder, child.hasKey ? child.key : child.value, &child))
            tell(joined({child.field->key, " stands behind ", record.fields[static_cast<std::size_t>(last)].key}),
                 "a host reads it, and writes it in front");
        last = std::max(last, child.field->position);
    }
    for (const fieldSchema_t &field : record.fields) {
        if (isTorn_)
            break;
        if (field.isList(listKind_t::range))
            checkRange(body, field);
        else if (field.counter() != nullptr || (field.isList(listKind_t::array) && nodes_[position(field)] != nullptr))
            checkCount(field);
    }
    bool isEverEmpty = true;
    std::vector<const fieldSchema_t *> missing;
    if (record.kind != structureKind_t::ownRecord)
        for (const fieldSchema_t &field : record.fields)
            if (nodes_[position(field)] == nullptr && isAlwaysWritten(record, field)) {
                isEverEmpty = false; // of a body without keys; no other one is asked for that
                if (!isExplained(field))
                    missing.push_back(&field);
            }
    checkMissing(body, missing);
    if (isEverEmpty && body.parent == node_t::none && tree_.value(body) == "{}" &&
        report(emptyValue, body.value, &body))
        tell("an empty body in braces", "a host reads it, and writes it without them");
}

// All keys that are not there are one finding.
void checker_t::checkMissing(const node_t &body, const std::vector<const fieldSchema_t *> &fields) {
    if (fields.empty() || isCutOff() || isCutInHead() || isTorn_)
        return;
    const place_t end{std::max(body.value.start, body.value.end - (body.value.isEmpty() ? 0 : 1)), body.value.end};
    if (!report(missingKey, end, &body))
        return;
    if (fields.size() == 1) {
        tell(joined({"the key ", fields[0]->key, " is missing"}), joined({"a host gets ", valueOfAbsent(*fields[0])}));
        std::string &path = findings_.back().path;
        path += joined({path.empty() ? "" : ".", fields[0]->key});
        return;
    }
    std::string names;
    for (const fieldSchema_t *field : fields)
        names += joined({names.empty() ? "" : field == fields.back() ? " and " : ", ", field->key});
    tell(joined({"the keys ", names, " are missing"}), "a host gets 0 or what is empty");
}

// How many elements a list has, and how many its count says; of an array that is written whole, its room.
void checker_t::checkCount(const fieldSchema_t &list) {
    const node_t *node = nodes_[position(list)];
    const node_t *counter = list.counter() != nullptr ? nodes_[position(*list.counter())] : nullptr;
    std::int32_t count = 0;
    if (node != nullptr)
        for (const node_t &child : tree_.children(*node))
            count += child.hasKey || child.hasValue ? 1 : 0;
    if (list.counter() == nullptr)
        return checkRoom(list, count);
    if (isExplained(*list.counter()) || isExplained(list))
        return;
    const std::int32_t said = counter != nullptr && !counter->isBody ? readInteger(tree_.value(*counter)) : 0;
    if (said == count)
        return;
    if (counter == nullptr)
        explain(list.counter());
    const node_t *shown = counter != nullptr ? counter : node;
    if (report(countMismatch, said < count ? error : warning, shown->value, shown)) {
        const std::string says = joined({list.counter()->key, " says ", std::to_string(said)});
        const std::string has = node == nullptr
                                    ? std::string(" is missing")
                                    : joined({" has ", std::to_string(count), count == 1 ? " element" : " elements",
                                              said > count ? "; one may be missing, or a comma" : ""});
        tell(joined({counter != nullptr ? says : joined({list.counter()->key, " is missing"}), ", ", list.key, has}),
             said < count ? joined({"a host sees ", std::to_string(std::max(said, 0)), " of them"})
                          : std::string("a host takes the rest for empty, or not at all"),
             said > count         ? std::string() // elements may be missing
             : counter != nullptr ? std::to_string(count)
                                  : joined({list.counter()->key, "=", std::to_string(count)}));
        if (said < count && counter == nullptr)
            mend({node->whole.start, node->whole.start}, findings_.back().suggestion + semicolon, false);
        else if (said < count)
            mend(counter->value, findings_.back().suggestion, false);
    }
}

void checker_t::checkRoom(const fieldSchema_t &list, std::int32_t count) {
    const node_t *node = nodes_[position(list)];
    if (count == *list.list->room)
        return;
    if (report(count > *list.list->room ? countMismatch : listForm, node->value, node))
        tell(joined({std::to_string(count), " elements, the array has ", std::to_string(*list.list->room)}),
             count > *list.list->room ? "a host drops the surplus" : "a host fills it up with zeros");
}

// A continuous range is its minimum and its maximum; a range without values has no type.
void checker_t::checkRange(const node_t &body, const fieldSchema_t &list) {
    const node_t *node = nodes_[position(list)];
    const node_t *type = nodes_[position(*list.rangeType())];
    valueRange_t range;
    if (node != nullptr) {
        for (const node_t &child : tree_.children(*node))
            if (child.hasKey || child.hasValue)
                range.values().add();
        for (const node_t &child : tree_.children(*node))
            if (child.use == pairUse_t::assigned)
                range.values().at(child.index) = readReal(tree_.value(child));
    }
    if (range.isEmpty()) {
        if (type != nullptr && report(listForm, type->value, type))
            tell(joined({list.key, " has no values"}), "a host does not write the range then");
        return;
    }
    if (type == nullptr)
        return isExplained(*list.rangeType()) ? void() : checkMissing(body, {list.rangeType()});
    range.kind = std::max(list.rangeType()->valueOf(tree_.value(*type)), 0);
    const double ends[] = {range.minimum(), range.maximum()};
    if (range.kind != valueRange_t::discrete &&
        (range.count() != 2 || std::memcmp(ends, range.begin(), sizeof ends) != 0)) // NOLINT: bit for bit, as written
        if (report(listForm, node->value, node))
            tell("a continuous range is its minimum and its maximum, which is -1 at least",
                 "a host writes these two alone");
}

} // namespace vek::inspect
