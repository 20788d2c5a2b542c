// A value is right when the library, having read it, would write the same again. Else it is told apart by what a person
// may have meant: no number, too large, an unusual spelling.
#include "vek/inspect/check/private/checker.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace vek::inspect {

namespace {

// Characters that look like those of a message, and none of them is.
struct lookAlike_t {
    std::uint32_t first, last;
    std::string_view name;
    char meant = 0; // of the first one; 0 when it may be several
};
constexpr lookAlike_t lookAlikes[] = {
    {0xA0, 0xA0, "a no-break space", ' '},     {0xAD, 0xAD, "a soft hyphen"},
    {0x370, 0x3FF, "a Greek letter"},          {0x400, 0x4FF, "a Cyrillic letter"},
    {0x2000, 0x200A, "a wide blank", ' '},     {0x200B, 0x200F, "an invisible character", ' '},
    {0x2010, 0x2015, "a dash", '-'},           {0x2018, 0x201F, "a typographic quote"},
    {0x202F, 0x202F, "a narrow blank", ' '},   {0x2212, 0x2212, "a minus sign", '-'},
    {0x3000, 0x3000, "a wide blank", ' '},     {0xFEFF, 0xFEFF, "a byte order mark", ' '},
    {0xFF01, 0xFF5E, "a wide character", '!'},
};

const lookAlike_t *lookAlike(std::uint32_t code) {
    const auto *const kind = std::find_if(std::begin(lookAlikes), std::end(lookAlikes),
                                          [code](const auto &one) { return code >= one.first && code <= one.last; });
    return kind != std::end(lookAlikes) ? kind : nullptr;
}

// The ASCII character that one looks like, which is none; 0 when nobody knows.
char meantBy(std::uint32_t code) {
    const lookAlike_t *kind = lookAlike(code);
    return kind == nullptr      ? '\0'
           : kind->meant == '!' ? static_cast<char>('!' + (code - kind->first)) // each of its own
                                : kind->meant;
}

// With ASCII characters for those that look like them, and no blanks at the ends.
std::string inAscii(std::string_view value) {
    std::string text;
    for (value = value.substr(0, 200); !value.empty();) {
        const std::size_t size = std::max<std::size_t>(utf8Size(value), 1);
        const char meant = size > 1 ? meantBy(utf8Character(value.substr(0, size))) : '\0';
        if (meant != '\0')
            text += meant;
        else
            text += value.substr(0, size);
        value.remove_prefix(size);
    }
    return std::string(trimmed(text));
}

valueFinding_t found(findingCode_t code, std::string message, std::string consequence, std::string suggestion = {}) {
    return {
        code, findingKind(code).severity, {std::move(message), std::move(consequence), std::move(suggestion)}, true};
}

// A finding that is no error here.
valueFinding_t warned(findingCode_t code, std::string message, std::string consequence, std::string suggestion = {}) {
    valueFinding_t finding = found(code, std::move(message), std::move(consequence), std::move(suggestion));
    finding.severity = severity_t::warning;
    return finding;
}

// Its suggestion has one meaning.
valueFinding_t plainly(valueFinding_t finding) {
    finding.isPlain = true;
    return finding;
}

std::string reads(std::string_view value) {
    return joined({"a host reads ", value});
}

// What stands there is no number, or goes on behind one.
valueFinding_t judgeNumber(std::string_view value, bool isReal, std::string_view read) {
    using enum findingCode_t;
    std::size_t digits = 0;
    const std::size_t end = numberEnd(value, isReal, digits);
    if (digits == 0)
        return found(noNumber, joined({shownValue(value), " is no number", oddCharacterIn(value)}), reads(read));
    if (end < value.size() && trimmed(value.substr(end)).empty())
        return plainly(warned(trailingCharacters,
                              joined({"white space stands behind the number ", value.substr(0, end)}),
                              joined({"a host reads ", read}), std::string(read)));
    if (end < value.size())
        return found(trailingCharacters,
                     joined({shownValue(value.substr(end)), " stands behind the number ", value.substr(0, end),
                             oddCharacterIn(value.substr(end))}),
                     reads(read));
    return {};
}

// What gets lost of a number is told rather than blanks behind it.
bool isTold(const valueFinding_t &ofCharacters, bool isNumberKept) {
    return ofCharacters.isThere && (isNumberKept || !ofCharacters.isPlain);
}

valueFinding_t unusualNumber(std::string_view value, const std::string &text) {
    valueFinding_t finding =
        found(findingCode_t::numberSpelling, joined({shownValue(value), " is an unusual way to write ", text}),
              joined({"a host reads it, and writes ", text}), text);
    finding.isPlain = trimmed(value) == text; // else hosts have nothing against it
    return finding;
}

valueFinding_t judgeInteger(std::string_view value, bool isShort) {
    using enum findingCode_t;
    const std::int32_t wide = readInteger(value);
    const std::int32_t read = isShort ? static_cast<std::int16_t>(wide) : wide;
    const std::string text = std::to_string(read);
    if (value == text)
        return {};
    const double real = readReal(value);
    const double lowest = isShort ? -32768.0 : -2147483648.0, highest = isShort ? 32767.0 : 2147483647.0;
    const bool isFitting = real >= lowest && real <= highest;
    if (valueFinding_t finding = judgeNumber(value, false, text); isTold(finding, isFitting))
        return finding;
    if (!isFitting)
        return found(numberRange,
                     joined({trimmed(value.substr(0, 40)), " does not fit ", isShort ? "16" : "32", " bits"}),
                     reads(text));
    return unusualNumber(value, text);
}

double readAs(fieldKind_t kind, double value) {
    if (kind == fieldKind_t::pixels)
        return value > -2147483649.0 && value < 2147483648.0 ? static_cast<double>(static_cast<std::int32_t>(value))
                                                             : 0.0;
    const auto largest = static_cast<double>(std::numeric_limits<float>::max());
    if (kind == fieldKind_t::float32)
        return std::abs(value) > largest * (1.0 + 1e-7) ? std::copysign(std::numeric_limits<double>::infinity(), value)
                                                        : static_cast<double>(static_cast<float>(value));
    return value;
}

// The shortest digits of a number, of which those behind the six decimals of a message are lost when it is written.
std::string allDigits(double value) {
    return nlohmann::json(value).dump(); // not every standard library writes reals
}

valueFinding_t judgeReal(std::string_view value, fieldKind_t kind) {
    using enum findingCode_t;
    if (kind == fieldKind_t::float64 && isUsualReal(value))
        return {};
    const double exact = readReal(value);
    const double read = readAs(kind, exact);
    const std::string text = realText(read);
    if (text == value && std::isfinite(read))
        return {};
    const bool isKept = !std::isfinite(read) || readAs(kind, readReal(text)) == read;
    const std::string digits = isKept ? text : allDigits(read);
    const bool isWhole = isKept && std::isfinite(read) && (kind != fieldKind_t::pixels || read == exact);
    if (valueFinding_t finding = judgeNumber(value, true, digits); isTold(finding, isWhole))
        return finding;
    if (!std::isfinite(read) || (kind == fieldKind_t::pixels && read == 0.0 && std::abs(exact) >= 1.0))
        return found(numberRange, joined({value.substr(0, 40), " is beyond the range of the number"}), reads(text));
    if (kind == fieldKind_t::pixels && read != exact)
        return warned(numberRange, joined({value.substr(0, 40), " has a fraction, pixels are whole"}), reads(text),
                      text);
    if (!isKept)
        return found(numberSpelling, joined({shownValue(value), " has digits behind the six decimals of a message"}),
                     joined({"a host reads ", digits, ", and writes ", text}));
    return unusualNumber(value, text);
}

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

std::string shownValue(std::string_view value) {
    constexpr std::size_t most = 40;
    std::string text;
    appendQuoted(text, value.substr(0, most));
    return value.size() > most ? text + "..." : text;
}

namespace {

// Blanks between groups of three digits, with a point behind them so that they are no list, are taken out.
std::string withoutThousands(std::string number) {
    const std::size_t point = std::min(number.find('.'), number.size());
    std::string digits;
    for (std::size_t i = 0; i < number.size(); ++i)
        if (number[i] != ' ' || i == 0 || i > point || (point - i) % 4 != 0)
            digits += number[i];
    return point < number.size() && digits.find(' ') == std::string::npos ? digits : number;
}

// Of an integer: without decimals that are 0, unless they are three, which may be thousands; and a hexadecimal one as
// it is written here.
std::string asInteger(std::string number) {
    const std::size_t point = number.find('.');
    constexpr std::size_t thousand = 3;
    if (point != std::string::npos && number.size() - point - 1 != thousand &&
        number.find_first_not_of('0', point + 1) == std::string::npos)
        number.resize(point);
    std::uint32_t value = 0;
    if (number.starts_with("0x") || number.starts_with("0X"))
        if (const auto read = std::from_chars(number.data() + 2, number.data() + number.size(), value, 16);
            read.ec == std::errc() && read.ptr == number.data() + number.size() && value <= INT32_MAX)
            return std::to_string(value);
    return number;
}

// The letter O among digits is a 0.
std::string withZeros(std::string number) {
    if (number.find_first_not_of("0123456789O.-") == std::string::npos &&
        std::any_of(number.begin(), number.end(), &isDigit))
        std::replace(number.begin(), number.end(), 'O', '0');
    return number;
}

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

// Whether the commas of a number stand between thousands.
bool isOfThousands(std::string_view number) {
    const std::size_t point = std::min(number.find('.'), number.size()), first = number.find(',');
    constexpr std::size_t thousand = 3;
    for (std::size_t comma = first, next; comma < point; comma = next)
        if (next = std::min(number.find(',', comma + 1), point); next != comma + 1 + thousand)
            return false;
    return number.find(',', point) == std::string_view::npos && first <= thousand + 1 && first > 0 &&
           !number.starts_with('0') && !number.starts_with("-0");
}

// A number with commas, which end a value where a text has them. One may be the point; in front of three digits it may
// be of thousands, too.
void judgeCommas(const fieldSchema_t &field, std::string_view value, valueFinding_t &finding) {
    const std::size_t comma = value.find(',');
    if (comma == std::string_view::npos || value.find_first_not_of("-.,0123456789") != std::string_view::npos)
        return;
    std::string withPoint(value), plain(value);
    withPoint[comma] = '.';
    std::erase(plain, ',');
    const auto isRight = [&field](const std::string &number) {
        const valueFinding_t other = judgeAsItStands(field, number);
        return !other.isThere || other.code == findingCode_t::numberSpelling;
    };
    const bool mayBePoint =
        !isInteger(field.kind) && comma + 1 < value.size() && isDigit(value[comma + 1]) && isRight(withPoint);
    const bool mayBeThousands = isOfThousands(value) && isRight(plain);
    if (!mayBePoint && !mayBeThousands)
        return;
    finding.code = findingCode_t::decimalComma;
    finding.isPlain = !mayBePoint || !mayBeThousands;
    finding.words.message =
        joined({shownValue(value), mayBeThousands ? " has a comma in it" : " has a comma for its point"});
    if (finding.isPlain)
        finding.words.suggestion = mayBePoint ? withPoint : plain;
    else
        finding.words.message += joined({"; write ", withPoint, " or ", plain});
}

} // namespace

valueFinding_t judgeValue(const fieldSchema_t &field, std::string_view value) {
    valueFinding_t finding = judgeAsItStands(field, value);
    if (finding.severity != severity_t::error || !finding.isThere || !isNumber(field.kind))
        return finding;
    // A minus sign that is none, wide digits, letters that look like them,
    // "=>" and ":=" for "="; thousands apart
    std::string meant =
        withZeros(withoutThousands(inAscii(value.substr(value.starts_with('>') || value.starts_with(':') ? 1 : 0))));
    if (isInteger(field.kind))
        meant = asInteger(std::move(meant));
    const valueFinding_t other = judgeAsItStands(field, meant);
    if (meant != value && (!other.isThere || other.code == findingCode_t::numberSpelling)) {
        finding.words.suggestion = std::move(meant);
        finding.isPlain = true;
    } else if (finding.code == findingCode_t::trailingCharacters) {
        judgeCommas(field, value, finding);
    }
    return finding;
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

std::string oddCharacterIn(std::string_view text) {
    for (std::size_t at = 0; at < text.size() && at < 1000; ++at) {
        const std::size_t size = utf8Size(text.substr(at));
        if (size < 2)
            continue;
        const std::uint32_t code = utf8Character(text.substr(at, size));
        char digits[8];
        std::string hex(digits, std::to_chars(digits, digits + sizeof digits, code, 16).ptr);
        std::transform(hex.begin(), hex.end(), hex.begin(),
                       [](char c) { return c >= 'a' ? static_cast<char>(c - 32) : c; });
        hex.insert(0, hex.size() < 4 ? 4 - hex.size() : 0, '0');
        const lookAlike_t *kind = lookAlike(code);
        return joined({", with U+", hex, " in it", kind != nullptr ? ", " : "", kind != nullptr ? kind->name : ""});
    }
    return {};
}

// Each character beyond ASCII as one, so that it counts as one that differs.
std::string withoutOddCharacters(std::string_view word) {
    std::string text;
    for (const char c : word.substr(0, 200))
        if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U)
            text += static_cast<unsigned char>(c) < 0x80 ? c : '?';
    return text;
}

bool isBlankOfAnyKind(std::string_view text) {
    while (!text.empty()) {
        const std::size_t size = utf8Size(text);
        const bool isMark = text.front() == '>' && size == 1;
        if (size == 0 || (!isSpace(text.front()) && !isMark && meantBy(utf8Character(text.substr(0, size))) != ' '))
            return false;
        text.remove_prefix(size);
    }
    return true;
}

std::string_view withoutBlankAtEnd(std::string_view text, std::string_view others) {
    for (std::size_t size = 1; size <= std::min<std::size_t>(text.size(), 4); ++size) {
        const std::string_view last = text.substr(text.size() - size);
        const bool isOne = utf8Size(last) == size;
        if (isOne && (isBlankOfAnyKind(last) || others.find(last) != std::string_view::npos ||
                      meantBy(utf8Character(last)) == semicolon))
            return withoutBlankAtEnd(text.substr(0, text.size() - size), others);
    }
    return text;
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
