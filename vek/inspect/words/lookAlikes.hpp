// Characters beyond ASCII that look like those of a message, or like a blank, and are none of them.
#pragma once

#include <string>
#include <string_view>

namespace vek::inspect {

/// With ASCII characters for those that look like them, and no blanks at the ends.
std::string inAscii(std::string_view value);
/// The first character that looks like another one or like a blank, named with its code point: " with U+00A0 in it, a
/// no-break space"; empty when there is none.
std::string oddCharacterIn(std::string_view text);
/// The same, each as one "?", so that it counts as one letter that differs.
std::string withoutOddCharacters(std::string_view word);
/// The bytes of the single or typographic quote that a text begins with; 0 when it begins with none.
std::size_t otherQuoteSize(std::string_view text);
/// What stands in single or typographic quotes; the text itself when it does not begin and end with one.
std::string_view withinOtherQuotes(std::string_view text);
/// Whether nothing stands there but blanks, also those that are none for a host, line ends, and ">" behind one.
bool isBlankOfAnyKind(std::string_view text);
/// A text without such blanks at its end, and without some other characters there.
std::string_view withoutBlankAtEnd(std::string_view text, std::string_view others);

} // namespace vek::inspect
