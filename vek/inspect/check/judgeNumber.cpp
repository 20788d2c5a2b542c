// A number is right when the library, having read it, would write the same again. Else it is told apart: no number, too
// large, digits that get lost, an unusual spelling.
#include "vek/inspect/check/private/judging.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/lookAlikes.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/text/numberText.hpp"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace vek::inspect {

namespace {

// Its suggestion has one meaning.
valueFinding_t plainly(valueFinding_t finding) {
    finding.isPlain = true;
    return finding;
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

} // namespace

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

} // namespace vek::inspect
