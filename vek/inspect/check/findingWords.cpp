// Words that several findings share.
#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/lookAlikes.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/characters.hpp"

namespace vek::inspect {

std::string shownValue(std::string_view value) {
    constexpr std::size_t most = 40;
    std::string text;
    appendQuoted(text, value.substr(0, most));
    return value.size() > most ? text + "..." : text;
}

std::string valueOfAbsent(const fieldSchema_t &field) {
    return field.isList()                           ? "an empty list"
           : field.kind == fieldKind_t::record      ? "zeros and empty texts"
           : isInteger(field.kind)                  ? "0"
           : isReal(field.kind)                     ? "0.000000"
           : field.kind == fieldKind_t::boolean     ? "FALSE"
           : field.kind == fieldKind_t::enumeration ? field.words().names.front()
                                                    : "an empty text";
}

std::string howToWrite(char separator) {
    return joined({"a \"", std::string_view(&separator, 1), "\" in a text is written as the character ",
                   std::to_string(static_cast<int>(escaped(separator)))});
}

findingWords_t wordsOfUnknown(const recordSchema_t *record, std::string_view key, bool hasSuggestion) {
    std::vector<std::string_view> keys;
    if (record != nullptr && hasSuggestion)
        for (const fieldSchema_t &field : record->fields)
            keys.push_back(field.key);
    return {joined({record != nullptr ? "unknown key " : "no element of the list has the key ", shownValue(key),
                    oddCharacterIn(key)}),
            "a host ignores it", std::string(nearest(withoutOddCharacters(key), keys))};
}

findingWords_t wordsOfDuplicate(std::string_view key) {
    return {joined({"the key ", key, " stands here again"}), "a host takes the first and ignores this one"};
}

} // namespace vek::inspect
