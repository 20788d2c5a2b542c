// A comparison that no message can pass is a mistake of who wrote it: telling it beats finding nothing in silence.
#include "vek/inspect/filter/private/possible.hpp"

#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

using condition_t = expression_t::condition_t;
using comparison_t = expression_t::comparison_t;

// What a path leads to in a record.
struct target_t {
    const fieldSchema_t *field = nullptr;
    bool isElement = false;

    bool isGroup() const { return isElement ? field->record() != nullptr : field->isGroup(); }
};

std::optional<target_t> targetIn(const recordSchema_t &record, std::span<const expression_t::step_t> steps) {
    const recordSchema_t *at = &record;
    target_t target;
    for (const expression_t::step_t &step : steps) {
        if (step.name.empty()) {
            if (target.isElement || !(target.field->isList() || target.field->kind == fieldKind_t::text16))
                return std::nullopt;
            target.isElement = true;
            continue;
        }
        const bool isRecord = target.field == nullptr || target.isElement == target.field->isList();
        target = {at != nullptr && isRecord ? at->find(step.name) : nullptr, false};
        if (target.field == nullptr)
            return std::nullopt;
        at = target.field->record();
    }
    return target;
}

bool isOrdered(comparison_t comparison) {
    return comparison >= comparison_t::less && comparison <= comparison_t::atLeast;
}

// Why a field never compares so with the value; empty when it may.
std::string whyNever(const condition_t &condition, const target_t &target) {
    const bool isText = target.field->kind == fieldKind_t::text || target.field->kind == fieldKind_t::text16;
    if (target.isGroup() && target.field->kind != fieldKind_t::text16) {
        const bool isList = target.field->isList() && !target.isElement;
        if (isOrdered(condition.comparison) || !condition.value.starts_with('{'))
            return joined({condition.path, isList ? " is a list: write " : " is a group: write ", condition.path,
                           isList ? "[*] for any of its elements" : ".KEY for one of its values"});
        return {};
    }
    if (isText)
        return {};
    const valueFinding_t finding = judgeValue(*target.field, condition.value);
    using enum findingCode_t;
    if (finding.isThere && (finding.code == noNumber || finding.code == trailingCharacters ||
                            finding.code == decimalComma || finding.code == noBoolean || finding.code == unknownName))
        return withSuggestion(finding.words.message, finding.words.suggestion);
    if (isOrdered(condition.comparison) &&
        (target.field->kind == fieldKind_t::enumeration || target.field->kind == fieldKind_t::boolean))
        return joined({condition.path, " has no order: compare it with = or !="});
    return {};
}

std::string unknownPath(const condition_t &condition, std::span<const std::int32_t> ids) {
    std::vector<std::string_view> keys = schema().keys();
    const std::string &last = std::find_if(condition.steps.rbegin(), condition.steps.rend(), [](const auto &step) {
                                  return !step.name.empty();
                              })->name;
    const std::vector<keyUse_t> uses = schema().usesOf(last);
    const std::string words =
        joined({ids.empty() ? "no message has " : "no message of the chosen ids has ", condition.path});
    if (uses.empty())
        return joined({words, "; ", didYouMean(last, keys, "vekmsg describe shows the keys of a message")});
    const keyUse_t *use = &uses.front();
    for (const keyUse_t &other : uses)
        if (std::find(ids.begin(), ids.end(), other.message->id) != ids.end())
            use = &other;
    std::string path = use->path;
    for (std::size_t at = 0; (at = path.find("[]", at)) != std::string::npos; at += 3)
        path.insert(at + 1, "*");
    return joined({words, "; ", use->message->record->name, " has ", path});
}

expressionError_t errorAt(place_t place, std::string words) {
    return {std::move(words), place};
}

} // namespace

std::optional<expressionError_t> whyImpossible(const condition_t &condition, std::span<const std::int32_t> ids) {
    const bool isCompared = condition.comparison != comparison_t::isThere &&
                            condition.comparison != comparison_t::contains &&
                            condition.comparison != comparison_t::matches;
    if (condition.steps.empty()) {
        if (isCompared && !condition.number)
            return errorAt(condition.valuePlace,
                           joined({condition.path, " is a number, which ", shownValue(condition.value), " is not"}));
        return std::nullopt;
    }
    // What is no key of a record but stands in a message has a number; and nothing is known of an id without a record.
    if (std::any_of(condition.steps.begin(), condition.steps.end(),
                    [](const auto &step) { return step.name.find_first_of("#\"") != std::string::npos; }))
        return std::nullopt;
    std::string why;
    bool isAnywhere = false, isValuesOwn = false; // the reason is the value's, not that it stands in a group
    for (const messageSchema_t &message : schema().messages()) {
        if (message.record == nullptr || (!ids.empty() && std::find(ids.begin(), ids.end(), message.id) == ids.end()))
            continue;
        const std::optional<target_t> target = targetIn(*message.record, condition.steps);
        if (!target)
            continue;
        isAnywhere = true;
        std::string whyHere = isCompared ? whyNever(condition, *target) : std::string();
        if (whyHere.empty())
            return std::nullopt;
        if (!isValuesOwn)
            why = std::move(whyHere);
        isValuesOwn |= !target->isGroup();
    }
    const auto hasNoRecord = [](std::int32_t id) {
        const messageSchema_t *message = schema().find(id);
        return message == nullptr || message->record == nullptr;
    };
    if (std::any_of(ids.begin(), ids.end(), hasNoRecord))
        return std::nullopt;
    return isAnywhere ? errorAt(condition.valuePlace, why) : errorAt(condition.pathPlace, unknownPath(condition, ids));
}

} // namespace vek::inspect
