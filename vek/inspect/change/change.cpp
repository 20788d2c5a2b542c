#include "vek/inspect/change/change.hpp"

#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/forms/lineForm.hpp"
#include "vek/inspect/message/plain.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

const envelopeNumber_t *headerNumberAt(const envelopeParts_t &envelope, std::string_view path) {
    return path == "@id"       ? &envelope.id
           : path == "@length" ? &envelope.length
           : path == "@echo"   ? &envelope.echoTag
           : path == "@seq"    ? &envelope.sequenceNumber
                               : nullptr;
}

std::string valueOf(const tree_t &tree, const node_t &node) {
    if (!node.isBody)
        return scalarText(tree, node);
    return wideText(tree, node).value_or(std::string(tree.value(node)));
}

change_t refused(std::string why) {
    change_t change;
    change.error = std::move(why);
    return change;
}

std::string noSuchPath(const tree_t &tree, std::string_view path) {
    std::vector<std::string_view> keys;
    if (tree.record() != nullptr)
        for (const fieldSchema_t &field : tree.record()->fields)
            keys.push_back(field.key);
    const std::string_view meant = nearest(path, keys);
    return joined({"the message has no ", path, meant.empty() ? "" : "; ", didYouMean(meant)});
}

// Where the text is changed, and by what.
struct replacement_t {
    place_t place;
    std::string text;
};

// With the one stretch replaced and the length put right; nothing else changes.
change_t withReplacement(const tree_t &tree, const replacement_t &replacement) {
    const envelopeParts_t &envelope = tree.envelope();
    std::string text(tree.text());
    text.replace(replacement.place.start, replacement.place.size(), replacement.text);
    change_t change;
    change.oldLength = static_cast<std::size_t>(std::max(envelope.length.value, 0));
    // The length keeps its five places, so it does not change the length itself.
    constexpr std::size_t places = 5;
    const bool isInFront = replacement.place.end < envelope.length.place.start;
    const std::size_t shift = isInFront ? replacement.text.size() - replacement.place.size() : 0;
    const std::size_t end = envelope.length.place.end + shift;
    const std::size_t start = std::max(envelope.id.place.end + 1 + shift, end - std::min(end, places));
    const std::size_t room = end - start;
    std::size_t length = text.size() + 1;
    std::string digits = std::to_string(length);
    if (digits.size() > room) {
        length += digits.size() - room;
        digits = std::to_string(length);
    }
    digits.insert(0, room > digits.size() ? room - digits.size() : 0, ' ');
    text.replace(start, room, digits);
    change.newLength = length;
    change.text = std::move(text);
    return change;
}

// The pair of a key that the message lacks goes in front of the first that the record has behind it.
std::optional<replacement_t> addition(const tree_t &tree, std::string_view path, const fieldSchema_t *&field) {
    const std::size_t point = path.rfind('.');
    const std::string_view key = point == std::string_view::npos ? path : path.substr(point + 1);
    const node_t *parent = point == std::string_view::npos ? &tree.body() : tree.find(path.substr(0, point));
    const recordSchema_t *record = parent != nullptr ? tree.recordOf(*parent) : nullptr;
    field = record != nullptr ? record->find(key) : nullptr;
    if (field == nullptr || (parent->childCount > 0 && !parent->isKeyed))
        return {};
    std::uint32_t at = parent->value.end - (tree.value(*parent).ends_with('}') ? 1 : 0);
    const std::span<const node_t> children = tree.children(*parent);
    for (auto child = children.rbegin(); child != children.rend(); ++child)
        if (child->field != nullptr && child->field->position > field->position)
            at = child->whole.start;
    return replacement_t{{at, at}, joined({key, "="})};
}

change_t changedNumber(const tree_t &tree, std::string_view path, const envelopeNumber_t &number,
                       std::string_view value) {
    std::string error;
    fieldSchema_t integer;
    integer.kind = fieldKind_t::integer32;
    const std::optional<std::string> text = spelt(integer, value, false, error);
    if (!text)
        return refused(std::move(error));
    if (path == "@length")
        return refused("the length follows from the text and is put right with every change");
    if (!number.isThere || !tree.envelope().length.isThere)
        return refused("this number is missing in the message: seal it first");
    change_t change = withReplacement(tree, {number.place, *text});
    change.oldValue = number.place.in(tree.text());
    change.newValue = *text;
    return change;
}

} // namespace

std::optional<std::string> valueAt(const tree_t &tree, std::string_view path) {
    if (const envelopeNumber_t *number = headerNumberAt(tree.envelope(), path))
        return number->isThere ? std::optional(std::to_string(number->value)) : std::nullopt;
    const node_t *node = tree.find(path);
    return node != nullptr && node->hasValue ? std::optional(valueOf(tree, *node)) : std::nullopt;
}

std::optional<std::string> spelt(const fieldSchema_t &field, std::string_view value, bool isElement,
                                 std::string &error) {
    const bool isGroup = !isElement && field.isGroup();
    if (field.kind == fieldKind_t::text16 && (isElement || !field.isList()) && !value.starts_with('{')) {
        std::optional<std::string> codes = wideCodes(value);
        error = codes ? "" : "the text is no UTF-8";
        return codes;
    }
    if (isGroup || (isElement && field.record != nullptr)) {
        const bool isBraced = value.size() >= 2 && value.front() == '{' && value.back() == '}';
        error = isBraced ? "" : "a group stands in braces, as in a message: {1,2,}";
        return isBraced ? std::optional(std::string(value)) : std::nullopt;
    }
    std::string text = field.kind == fieldKind_t::text ? escapedText(value) : std::string(value);
    if (text.starts_with('"')) {
        error = "a text can't begin with a double quote: a host would take it for a quoted one";
        return {};
    }
    if (text.empty()) {
        error = "a value can't be empty in a message: a host would take the next key for it";
        return {};
    }
    const valueFinding_t finding = judgeValue(field, text, isElement);
    error = valueProblem(field, text, isElement);
    if (!error.empty())
        return {};
    if (finding.isThere && finding.code == findingCode_t::numberSpelling)
        return finding.words.suggestion;
    return text;
}

change_t changed(const tree_t &tree, std::string_view path, std::string_view value) {
    const envelopeParts_t &envelope = tree.envelope();
    if (const envelopeNumber_t *number = headerNumberAt(envelope, path))
        return changedNumber(tree, path, *number, value);
    if (!envelope.length.isThere || envelope.endMarker.isEmpty() || !envelope.behind.isEmpty())
        return refused("the message is damaged: seal it first");
    const node_t *node = tree.find(path);
    const fieldSchema_t *field = node != nullptr ? node->field : nullptr;
    std::optional<replacement_t> place;
    if (node != nullptr && node->use == pairUse_t::assigned)
        place = replacement_t{{node->value.start - (node->isQuoted ? 1 : 0),
                               node->value.end + (node->isQuoted && !node->isQuoteOpen ? 1 : 0)},
                              {}};
    else if (node == nullptr)
        place = addition(tree, path, field);
    if (!place || field == nullptr)
        return refused(noSuchPath(tree, path));
    std::string error;
    const std::optional<std::string> text = spelt(*field, value, node != nullptr && node->isElement, error);
    if (!text)
        return refused(joined({path, ": ", error}));
    place->text += *text;
    place->text += node == nullptr ? ";" : "";
    if (envelope.body.isEmpty())
        place->text = joined({"{", place->text, "}"});
    change_t change = withReplacement(tree, *place);
    change.oldValue = node != nullptr ? valueOf(tree, *node) : std::string();
    const tree_t after(change.text);
    change.newValue = valueAt(after, path).value_or(*text);
    return change;
}

} // namespace vek::inspect
