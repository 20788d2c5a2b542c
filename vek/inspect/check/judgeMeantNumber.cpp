// What people write for a number: a minus sign that is none, wide digits, thousands apart, a comma for the point.
#include "vek/inspect/check/private/judging.hpp"
#include "vek/inspect/words/lookAlikes.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <algorithm>
#include <charconv>

namespace vek::inspect {

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
    const std::string withPoint =
        joined({withoutPointsOfThousands(value.substr(0, comma)), ".", value.substr(comma + 1)});
    std::string plain(value);
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

std::string withoutPointsOfThousands(std::string_view number) {
    constexpr std::size_t group = 4;
    const std::size_t sign = number.starts_with('-') ? 1 : 0, first = std::min(number.find('.'), number.size());
    bool isOfThousands =
        first > sign && first < sign + group && number[sign] != '0' && (number.size() - first) % group == 0;
    for (std::size_t i = first; isOfThousands && i < number.size(); ++i)
        isOfThousands = (i - first) % group == 0 ? number[i] == '.' : isDigit(number[i]);
    std::string plain(number);
    if (isOfThousands)
        std::erase(plain, '.');
    return plain;
}

void judgeMeantNumber(const fieldSchema_t &field, std::string_view value, valueFinding_t &finding) {
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
}

} // namespace vek::inspect
