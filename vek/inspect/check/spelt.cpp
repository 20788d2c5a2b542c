// A value as people write it, as the library would write it in a body, or why not.
#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/characters.hpp"

#include <algorithm>

namespace vek::inspect {

namespace {

std::optional<std::string> speltGroup(std::string_view value, std::string &error) {
    if (value.size() >= 2 && value.front() == openBrace && value.back() == closeBrace)
        return std::string(value);
    error = "a group stands in braces, as in a message: {1,2,}";
    return {};
}

} // namespace

std::optional<std::string> speltWide(std::string_view text, std::string &error) {
    if (text.find('\0') != std::string_view::npos) {
        error = "a NUL can't stand in a text: a host's text ends there";
        return {};
    }
    std::optional<std::string> codes = wideCodes(text);
    error = codes ? "" : "the text is no UTF-8";
    return codes;
}

std::optional<std::string> spelt(const fieldSchema_t &field, std::string_view value, part_t part, std::string &error) {
    const bool isScalar = part == part_t::code || (part == part_t::element ? !field.record() : !field.isList());
    if (!isScalar || (field.kind == fieldKind_t::record))
        return speltGroup(value, error);
    if (field.kind == fieldKind_t::text16 && part != part_t::code && !value.starts_with(openBrace))
        return speltWide(value, error);
    if (field.kind == fieldKind_t::text16 && part != part_t::code)
        return speltGroup(value, error);
    const bool isText = field.kind == fieldKind_t::text;
    if (value.empty()) {
        error = "a value can't be empty in a message: a host would take the next key for it";
        return {};
    }
    if (isText && value.front() == '"') {
        error = "a text can't begin with a double quote: a host would take it for a quoted one";
        return {};
    }
    const auto *const code =
        std::find_if(value.begin(), value.end(), [](char c) { return c == '\0' || isEscapeCode(c); });
    if (isText && code != value.end()) {
        error = joined(
            {"the control character ", shownValue({code, 1}), " can't stand in a text: a host",
             *code == '\0' ? "'s text ends there" : joined({" reads ", shownValue(std::string(1, unescaped(*code)))})});
        return {};
    }
    std::string text = isText ? escapedText(value) : std::string(value);
    const valueFinding_t finding = judgeValue(field, text);
    if (!finding.isThere)
        return text;
    if (finding.severity == severity_t::error || finding.code == findingCode_t::numberRange) {
        error = finding.words.inShort();
        return {};
    }
    if (finding.code != findingCode_t::numberSpelling)
        return text;
    if (!finding.words.suggestion.empty())
        return finding.words.suggestion;
    error = finding.words.message;
    return {};
}

} // namespace vek::inspect
