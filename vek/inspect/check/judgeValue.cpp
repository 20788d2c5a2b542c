// A value is right when the library, having read it, would write the same again. Else it is told apart by what a person
// may have meant: no number, too large, an unusual spelling.
#include "vek/inspect/check/private/judging.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/lookAlikes.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/text/characters.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <algorithm>
#include <array>

namespace vek::inspect {

namespace {

valueFinding_t judgeBoolean(std::string_view value) {
    using enum findingCode_t;
    if (value == "TRUE" || value == "FALSE")
        return {};
    constexpr std::array<std::string_view, 2> both{"TRUE", "FALSE"};
    constexpr std::array<std::string_view, 6> others{"1", "yes", "on", "0", "no", "off"};
    std::string_view meant = nearest(value, both);
    for (std::size_t i = 0; i < others.size(); ++i)
        if (std::equal(value.begin(), value.end(), others[i].begin(), others[i].end(),
                       [](char one, char other) { return asciiToLower(one) == other; }))
            meant = both[i / 3];
    valueFinding_t finding =
        found(noBoolean, joined({shownValue(value), " is neither TRUE nor FALSE", oddCharacterIn(value)}),
              reads("FALSE"), std::string(meant));
    finding.isPlain = !meant.empty() && (nearest(value, both).empty() || isPlainly(inAscii(value), meant, both));
    return finding;
}

valueFinding_t judgeName(const fieldSchema_t &field, std::string_view value) {
    using enum findingCode_t;
    if (field.valueOf(value) >= 0)
        return {};
    const std::vector<std::string_view> names(field.words().names.begin(), field.words().names.end());
    std::string meant(nearest(withoutOddCharacters(value), names));
    constexpr std::size_t most = 20;
    std::string valid;
    for (std::size_t i = 0; meant.empty() && i < names.size() && i < most; ++i)
        valid += joined({i == 0 ? "; there are " : i + 1 == names.size() ? " and " : ", ", names[i]});
    valueFinding_t finding =
        found(unknownName,
              joined({"no ", field.words().title, " is called ", shownValue(value), oddCharacterIn(value), valid}),
              reads(names.front()), meant);
    finding.isPlain = isPlainly(withoutOddCharacters(inAscii(value)), meant, names);
    return finding;
}

valueFinding_t judgeText(std::string_view value, std::optional<std::int32_t> room) {
    using enum findingCode_t;
    if (room && value.size() >= static_cast<std::size_t>(*room)) {
        const std::string most = std::to_string(*room - 1);
        return found(beyondRoom,
                     joined({"a text of ", std::to_string(value.size()), " characters, there is room for ", most}),
                     "a host does not keep what is beyond");
    }
    const auto isSpecial = [](char c) {
        return (static_cast<unsigned char>(c) < 0x20 && c != '\0') || c == 0x7F ||
               escapedCharacters.find(c) != std::string_view::npos;
    };
    const auto *const at =
        std::find_if(value.begin(), value.end(), [&](char c) { return isSpecial(c) && !isEscapeCode(c); });
    if (at == value.end() && value.starts_with(' '))
        return warned(lineBreak, joined({"the text ", shownValue(value), " begins with a blank"}),
                      "a host keeps it as part of the text",
                      std::string(value.substr(std::min(value.find_first_not_of(' '), value.size()))));
    if (const std::string_view inner = withinOtherQuotes(value); at == value.end() && inner.size() < value.size())
        return warned(otherQuotes, joined({"the text ", shownValue(value), " stands in quotes", oddCharacterIn(value)}),
                      "a host keeps them as part of the text", std::string(inner));
    if (at == value.end())
        return {};
    if (*at == '\n' || *at == '\r')
        return warned(lineBreak, "a line break in a text", "a host keeps it as part of the text");
    if (escapedCharacters.find(*at) != std::string_view::npos)
        return warned(*at == openBrace || *at == closeBrace ? unbalancedBrace : separators,
                      joined({shownValue({at, 1}), " stands in a text as it is"}),
                      "a host reads it, and writes a code for it");
    return found(controlCharacter, joined({"the control character ", shownValue({at, 1}), " in a text"}),
                 "a host keeps it as part of the text");
}

} // namespace

valueFinding_t judgeAsItStands(const fieldSchema_t &field, std::string_view value) {
    switch (field.kind) {
    case fieldKind_t::integer32:
        return judgeInteger(value, false);
    case fieldKind_t::integer16:
    case fieldKind_t::text16:
        return judgeInteger(value, true);
    case fieldKind_t::float64:
    case fieldKind_t::float32:
    case fieldKind_t::pixels:
        return judgeReal(value, field.kind);
    case fieldKind_t::boolean:
        return judgeBoolean(value);
    case fieldKind_t::enumeration:
        return judgeName(field, value);
    case fieldKind_t::text:
        return judgeText(value, field.textRoom());
    case fieldKind_t::record:
        break;
    }
    return {};
}

valueFinding_t judgeValue(const fieldSchema_t &field, std::string_view value) {
    valueFinding_t finding = judgeAsItStands(field, value);
    if (finding.severity == severity_t::error && finding.isThere && isNumber(field.kind))
        judgeMeantNumber(field, value, finding);
    return finding;
}

} // namespace vek::inspect
