#include "vek/inspect/check/private/checker.hpp"
#include "vek/text/numberText.hpp"
#include "vek/text/valueRange.hpp"

#include <algorithm>
#include <cstring>

namespace vek::inspect {

namespace {

// Whether a host writes the field although its key was not there: texts and lists are empty then, and left out.
bool isAlwaysWritten(const fieldSchema_t &field) {
    if (field.list == listKind_t::array)
        return field.countField == nullptr;
    if (field.isList())
        return false;
    if (field.kind == fieldKind_t::record)
        return std::any_of(field.record->fields.begin(), field.record->fields.end(), &isAlwaysWritten);
    return field.kind != fieldKind_t::text && field.kind != fieldKind_t::text16;
}

bool isRangeType(const recordSchema_t &record, const fieldSchema_t &field) {
    return std::any_of(record.fields.begin(), record.fields.end(),
                       [&](const fieldSchema_t &other) { return other.rangeType == &field; });
}

std::size_t position(const fieldSchema_t &field) {
    return static_cast<std::size_t>(field.position);
}

} // namespace

void checker_t::checkRecord(const node_t &body, const recordSchema_t &record) {
    std::vector<const node_t *> &nodes = nodes_;
    nodes.assign(record.fields.size(), nullptr);
    std::int32_t last = -1;
    if (!body.isKeyed && body.childCount > 0)
        report(positionalBody, body.value, &body, [] {
            return findingWords_t{"no \"=\" stands in the body", "a host tells the values apart by their order", {}};
        });
    for (const node_t &child : tree_.children(body)) {
        if (child.use != pairUse_t::assigned || child.field == nullptr)
            continue;
        nodes[position(*child.field)] = &child;
        if (child.field->position < last)
            report(keyOrder, child.hasKey ? child.key : child.value, &child, [&] {
                return findingWords_t{
                    joined({child.field->key, " stands behind ", record.fields[static_cast<std::size_t>(last)].key}),
                    "a host reads it, and writes it in front",
                    {}};
            });
        last = std::max(last, child.field->position);
    }
    bool isEverEmpty = true;
    if (record.kind != structureKind_t::ownRecord)
        for (const fieldSchema_t &field : record.fields)
            if (isAlwaysWritten(field) && !isRangeType(record, field)) {
                isEverEmpty = false;
                if (nodes[position(field)] == nullptr)
                    checkMissing(body, field);
            }
    if (isEverEmpty && body.parent == node_t::none && tree_.value(body) == "{}")
        report(emptyValue, body.value, &body, [] {
            return findingWords_t{"an empty body in braces", "a host reads it, and writes it without them", {}};
        });
    for (const fieldSchema_t &field : record.fields) {
        if (field.list == listKind_t::range)
            checkRange(body, field, nodes);
        else if (field.countField != nullptr || (field.list == listKind_t::array && nodes[position(field)] != nullptr))
            checkCount(field, nodes);
    }
}

void checker_t::checkMissing(const node_t &body, const fieldSchema_t &field) {
    if (isCutOff())
        return;
    const place_t end{std::max(body.value.start, body.value.end - (body.value.isEmpty() ? 0 : 1)), body.value.end};
    report(missingKey, end, &body, [&] {
        return findingWords_t{
            joined({"the key ", field.key, " is missing"}), joined({"a host gets ", valueOfAbsent(field)}), {}};
    });
    if (findings_.empty() || stops_)
        return;
    std::string &path = findings_.back().path;
    path = joined({path, path.empty() ? "" : ".", field.key});
}

// How many elements a list has, and how many its count says; of an array that is written whole, its room.
void checker_t::checkCount(const fieldSchema_t &list, const std::vector<const node_t *> &nodes) {
    const node_t *node = nodes[position(list)];
    const node_t *counter = list.countField != nullptr ? nodes[position(*list.countField)] : nullptr;
    std::int32_t count = 0;
    if (node != nullptr)
        for (const node_t &child : tree_.children(*node))
            count += child.hasKey || child.hasValue ? 1 : 0;
    if (list.countField == nullptr) {
        if (node != nullptr && count != list.room)
            report(countMismatch, count > list.room ? error : warning, node->value, node, [&] {
                return findingWords_t{
                    joined({std::to_string(count), " elements, the array has ", std::to_string(list.room)}),
                    count > list.room ? "a host drops the surplus" : "a host fills it up with zeros",
                    {}};
            });
        return;
    }
    const std::int32_t said = counter != nullptr && !counter->isBody ? readInteger(tree_.value(*counter)) : 0;
    if (said == count)
        return;
    const node_t *shown = counter != nullptr ? counter : node;
    report(countMismatch, said < count ? error : warning, shown->value, shown, [&] {
        return findingWords_t{joined({list.countField->key, " says ", std::to_string(said), ", ", list.key, " has ",
                                      std::to_string(count), count == 1 ? " element" : " elements"}),
                              said < count ? joined({"a host sees ", std::to_string(std::max(said, 0)), " of them"})
                                           : std::string("a host takes the rest for empty, or not at all"),
                              std::to_string(count)};
    });
}

// A continuous range is its minimum and its maximum; a range without values has no type.
void checker_t::checkRange(const node_t &body, const fieldSchema_t &list, const std::vector<const node_t *> &nodes) {
    const node_t *node = nodes[position(list)];
    const node_t *type = nodes[position(*list.rangeType)];
    valueRange_t range;
    if (node != nullptr) {
        for (const node_t &child : tree_.children(*node))
            if (child.hasKey || child.hasValue)
                range.values().add();
        for (const node_t &child : tree_.children(*node))
            if (child.use == pairUse_t::assigned)
                range.values().at(child.index) = readReal(tree_.value(child));
    }
    if (node == nullptr || range.isEmpty()) {
        if (type != nullptr)
            report(countMismatch, warning, type->value, type, [&] {
                return findingWords_t{joined({list.key, " has no values"}), "a host does not write the range then", {}};
            });
        return;
    }
    if (type == nullptr)
        return checkMissing(body, *list.rangeType);
    range.kind = std::max(list.rangeType->valueOf(tree_.value(*type)), 0);
    const double ends[] = {range.minimum(), range.maximum()};
    if (range.kind != valueRange_t::discrete &&
        (range.count() != 2 || std::memcmp(ends, range.begin(), sizeof ends) != 0)) // NOLINT: bit for bit, as written
        report(countMismatch, warning, node->value, node, [] {
            return findingWords_t{"a continuous range is its minimum and its maximum, which is -1 at least",
                                  "a host writes these two alone",
                                  {}};
        });
}

} // namespace vek::inspect
