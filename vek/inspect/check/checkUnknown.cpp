// A key that a record has not: what was meant, or where it belongs.
#include "vek/inspect/check/private/checker.hpp"
#include "vek/inspect/words/lookAlikes.hpp"
#include "vek/inspect/words/trimming.hpp"

#include <algorithm>
#include <iterator>

namespace vek::inspect {

namespace {

std::string_view wordIn(std::string_view key) {
    const auto first = std::find_if(key.begin(), key.end(), &isWordCharacter);
    const auto last = std::find_if(key.rbegin(), std::make_reverse_iterator(first), &isWordCharacter).base();
    return key.substr(static_cast<std::size_t>(first - key.begin()), static_cast<std::size_t>(last - first));
}

// Whether around a word of a key nothing stands but blanks, of any kind, and what mail puts in front of a line.
bool isAllBlank(std::string_view key, std::string_view word) {
    const std::size_t at = key.rfind(word);
    if (at != std::string_view::npos && trimmed(key).starts_with('#')) // a comment on a line of its own
        if (const std::size_t end = key.find('\n', key.find('#')); end < at)
            return isAllBlank(key.substr(end), word);
    return at != std::string_view::npos && isBlankOfAnyKind(key.substr(0, at)) &&
           isBlankOfAnyKind(key.substr(at + word.size()));
}

// What is part of a key, and no part of its name.
std::string_view besideWord(std::string_view key, std::string_view word) {
    if (trimmed(key) != word)
        return "other characters are";
    return key.find_first_of("\r\n") != std::string_view::npos ? "a line break is" : "a blank is";
}

// Where a key stands in a message's groups; empty when it does not.
std::string placeOfKey(const recordSchema_t &record, std::string_view key) {
    for (const fieldSchema_t &field : record.fields) {
        if (field.record() == nullptr)
            continue;
        if (field.record()->find(key) != nullptr)
            return std::string(field.key);
        if (const std::string inner = placeOfKey(*field.record(), key); !inner.empty())
            return joined({field.key, ".", inner});
    }
    return {};
}

} // namespace

const fieldSchema_t *checker_t::keyAt(const recordSchema_t *record, std::string_view text, bool isFront) {
    const fieldSchema_t *longest = nullptr;
    if (record != nullptr)
        for (const fieldSchema_t &field : record->fields)
            if ((isFront ? text.starts_with(field.key) : text.ends_with(field.key)) &&
                (longest == nullptr || field.key.size() > longest->key.size()))
                longest = &field;
    return longest;
}

void checker_t::checkUnknown(const node_t &parent, const node_t &node) {
    const recordSchema_t *record = tree_.recordOf(parent);
    const std::string_view key = tree_.key(node);
    const fieldSchema_t *field = record != nullptr ? record->find(wordIn(key)) : nullptr;
    if (field == nullptr) {
        field = keyAt(record, key, false);
        if (field != nullptr && isWordCharacter(key[key.size() - field->key.size() - 1]))
            field = nullptr;
    }
    if (field != nullptr) {
        const bool isThere = isExplained(*field) || !isMissing(*field);
        explain(field);
        if (report(lineBreak, node.key, &node)) {
            const std::string odd = oddCharacterIn(key);
            tell(odd.empty() ? joined({besideWord(key, field->key), " part of the key ", shownValue(key)})
                             : joined({"the key ", shownValue(key), odd}),
                 joined({"a host ignores it",
                         isThere ? "" : joined({"; ", field->key, " becomes ", valueOfAbsent(*field)})}),
                 wordIn(key) == field->key ? std::string(field->key) : std::string());
            // Who writes a blank in front of "=" writes one behind it.
            const bool isApart = key.ends_with(' ') && tree_.value(node).starts_with(' ') && !node.isQuoted &&
                                 node.value.start == node.key.end + 1;
            const std::size_t blanks = std::min(tree_.value(node).find_first_not_of(' '), node.value.size());
            if (!node.isKeyQuoted)
                mend({node.key.start, isApart ? node.value.start + static_cast<std::uint32_t>(blanks) : node.key.end},
                     joined({field->key, isApart ? "=" : ""}), !isThere && isAllBlank(key, field->key));
        }
        return;
    }
    constexpr std::size_t mostSuggestions = 50;
    const bool hasSuggestion = suggestions_++ < mostSuggestions;
    findingWords_t words = wordsOfUnknown(record, key, hasSuggestion);
    if (record == nullptr && parent.field != nullptr)
        words.message += joined({"; write none, or ", parent.field->key, "0 and so on"});
    const fieldSchema_t *meant = record != nullptr ? record->find(words.suggestion) : nullptr;
    bool wasExplained = false;
    if (meant != nullptr && !isMissing(*meant)) {
        words.message += joined({"; ", meant->key, " stands here too"});
        words.suggestion.clear();
    } else if (meant != nullptr) {
        wasExplained = isExplained(*meant);
        explain(meant);
        words.consequence += joined({"; ", meant->key, " becomes ", valueOfAbsent(*meant)});
    } else if (record != nullptr && hasSuggestion) {
        const std::string place = placeOfKey(*tree_.record(), key);
        if (tree_.record()->find(key) != nullptr)
            words.message += ", which belongs outside of this group: a brace may be missing in front of it";
        else if (!place.empty())
            words.message += joined({", which belongs to ", place});
    }
    const bool isMeant = meant != nullptr && !words.suggestion.empty();
    if (report(unknownKey, node.key, &node)) {
        tell(std::move(words));
        if (isMeant)
            mend({node.key.start - (node.isKeyQuoted ? 1 : 0), node.key.end + (node.isKeyQuoted ? 1 : 0)},
                 std::string(meant->key), !wasExplained && isPlainly(parent, node, *meant));
    }
}

// Whether nothing in the body in hand may be meant for a field.
bool checker_t::isMissing(const fieldSchema_t &field) const {
    return nodes_[static_cast<std::size_t>(field.position)] == nullptr;
}

// Whether a key that is not known can only be that of a field: it is near, no other one that is missing is, and no
// other key that is not known is near the field.
bool checker_t::isPlainly(const node_t &parent, const node_t &node, const fieldSchema_t &meant) const {
    const recordSchema_t &record = *tree_.recordOf(parent);
    const std::string_view key = tree_.key(node);
    const std::string word = withoutOddCharacters(key);
    for (const node_t &other : tree_.children(parent))
        if (&other != &node && other.use == pairUse_t::unknown && !nearest(tree_.key(other), {&meant.key, 1}).empty())
            return false;
    std::vector<std::string_view> missing;
    for (const fieldSchema_t &field : record.fields)
        if (isMissing(field))
            missing.push_back(field.key);
    return isMissing(meant) && tree_.record()->find(key) == nullptr && placeOfKey(*tree_.record(), key).empty() &&
           inspect::isPlainly(word, meant.key, missing);
}

} // namespace vek::inspect
