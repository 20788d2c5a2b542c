#include "vek/text/wideStringField.hpp"

#include "vek/text/scalarFields.hpp"

#include <algorithm>

namespace vek {

void wideCharacter_t::toText(bodyWriter_t &out) const {
    if (isSet != 0)
        shortCodec_t::write(code, out);
}

void wideCharacter_t::fromText(std::string_view text) {
    shortCodec_t::read(text, code);
    isSet = 1;
}

void wideElements_t::describe(fieldDescription_t &description) const {
    description.kind = fieldKind_t::text16;
}

// Made as if it had been read: the elements are what is printed, the text what is shown, and both follow from the
// values, the terminating 0 among them.
wideStringField_t &wideStringField_t::operator=(std::u16string_view text) {
    const auto length = static_cast<std::int32_t>(text.size());
    growableList_t<char16_t> copy; // the text may be this field's own
    copy.reserve(length + 1);
    for (const char16_t character : text)
        copy.add(character);
    copy.add(u'\0');
    elements_.clear();
    elements_.allocate(length + 1);
    for (std::int32_t i = 0; i <= length; ++i)
        elements_.element(i, pass_t::print) = {static_cast<std::int16_t>(copy[i]), 1};
    found_ = length + 1;
    isSet = 1;
    rebuildText();
    return *this;
}

std::u16string_view wideStringField_t::text() const {
    auto length = static_cast<std::size_t>(text_.isEmpty() ? 0 : text_.count() - 1);
    if (length > 0 && text_[static_cast<std::int32_t>(length) - 1] == u'\0')
        --length; // the terminator that the values included
    return length == 0 ? std::u16string_view(u"") : std::u16string_view(text_.begin(), length);
}

void wideStringField_t::clear() {
    elements_.clear();
    text_.clear();
    found_ = 0;
    isSet = 0;
}

void wideStringField_t::fromText(std::string_view text) {
    fieldArray_t::fromText(text);
    rebuildText();
}

// Values may be more than elements (see fromText), and may lack the terminating 0 or hold several: the text is a copy
// with a terminator of its own, so that it ends in memory whatever came over the line.
void wideStringField_t::rebuildText() {
    const std::int32_t count = std::min(found_, elements_.allocated());
    text_.resize(count + 1);
    for (std::int32_t i = 0; i < count; ++i)
        text_[i] = static_cast<char16_t>(elements_.element(i, pass_t::print).code);
    text_[count] = u'\0';
}

// A field can't be moved, and hosts hold references to it while the list grows, so each is made on its own. It is made
// before the list has a place for it: no list ever shows a place without a text.
void wideStringElements_t::append() {
    auto made = std::make_unique<wideStringField_t>(std::string_view(key_, keyLength_), texts_.count());
    texts_.add() = std::move(made);
}

void wideStringElements_t::allocate(std::int32_t count) {
    while (texts_.count() < count)
        append();
}

void wideStringElements_t::describe(fieldDescription_t &description) const {
    description.kind = fieldKind_t::text16;
    description.list = listKind_t::growable;
}

void wideStringListField_t::clear() {
    elements_.clear();
    found_ = 0;
    isSet = 0;
}

wideStringField_t &wideStringListField_t::add(std::u16string_view text) {
    elements_.append();
    isSet = 1;
    return elements_.element(elements_.allocated() - 1, pass_t::parse) = text;
}

} // namespace vek
