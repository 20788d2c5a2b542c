#include "vek/text/wideStringField.hpp"

#include "vek/text/scalarFields.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

namespace vek {

bodyWriter_t wideCharacter_t::writeElement(bodyWriter_t out) const {
    return isSet != 0 ? vek::writeElement(shortCodec_t::written(code), out) : out;
}

void wideCharacter_t::fromText(std::string_view text) {
    shortCodec_t::read(text, code);
    isSet = 1;
}

canonicalCursor_t wideCharacter_t::readAt(canonicalCursor_t at) {
    std::int32_t number = 0;
    if (!at.integer(number))
        return {};
    *this = {static_cast<std::int16_t>(number), 1};
    return code == number ? at : canonicalCursor_t();
}

bodyWriter_t wideStringElements_t::write(std::int32_t index, bodyWriter_t out) const {
    const std::size_t start = out.size();
    out = texts_[index]->toText(out);
    if (out.size() != start)
        out.put(comma);
    return out;
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
    text_.clear();
    return *this;
}

// Who makes the characters while another one does takes the other's, which are the same.
const char16_t *joinedCharacters_t::make(const wideElements_t &elements, std::int32_t count) const {
    auto *const made = static_cast<char16_t *>(std::calloc(static_cast<std::size_t>(count) + 1, sizeof(char16_t)));
    if (made == nullptr)
        throw std::bad_alloc();
    std::transform(elements.begin(), elements.begin() + count, made,
                   [](const wideCharacter_t &character) { return static_cast<char16_t>(character.code); });
    char16_t *others = nullptr;
    if (made_.compare_exchange_strong(others, made, std::memory_order_acq_rel, std::memory_order_acquire))
        return made;
    std::free(made);
    return others;
}

void wideStringField_t::copyFrom(const wideStringField_t &other) {
    elements_ = other.elements_;
    if (this != &other)
        text_.clear();
    found_ = other.found_;
    isSet = other.isSet;
}

// The text is made from the characters when it is first asked for, which most readers of a message never do. Values may
// be more than elements (see fromText), and may lack the terminating 0 or hold several: the text is a copy with a
// terminator of its own, so that it ends in memory whatever came over the line.
std::u16string_view wideStringField_t::text() const {
    const std::int32_t count = std::min(found_, elements_.allocated());
    if (count == 0)
        return u"";
    const char16_t *const text = text_.of(elements_, count);
    const bool isTerminated = text[count - 1] == u'\0'; // by the values themselves
    return {text, static_cast<std::size_t>(isTerminated ? count - 1 : count)};
}

bool wideStringField_t::isWhole() const {
    for (std::int32_t i = 0; i < elements_.printed(); ++i)
        if (elements_.element(i, pass_t::print).isSet == 0)
            return false;
    return true;
}

void wideStringField_t::clear() {
    elements_.clear();
    text_.clear();
    found_ = 0;
    isSet = 0;
}

void wideStringField_t::fromText(std::string_view text) {
    text_.clear();
    fieldArray_t::fromText(text);
}

canonicalCursor_t wideStringField_t::readAt(canonicalCursor_t at) {
    if (!at.enter())
        return {};
    found_ = at.countCommas();
    elements_.allocate(found_);
    for (wideCharacter_t *character = elements_.begin(); !at.skip(closeBrace); ++character) {
        if (std::int32_t code = 0; at.shortElement(code)) {
            *character = {static_cast<std::int16_t>(code), 1};
            continue;
        }
        wideCharacter_t read; // there is no room for one without a comma
        at = read.readAt(at);
        if (at.isNowhere() || !at.skip(comma))
            return {};
        *character = read;
    }
    isSet = 1;
    return at;
}

namespace {

// The lower codes as elements, "72,". Four characters each, of which those behind its size count for nothing.
struct element_t {
    char text[4];
    std::uint32_t size;
};
constexpr auto lowElements = [] {
    std::array<element_t, 256> elements{};
    for (std::uint32_t code = 0; code < elements.size(); ++code) {
        element_t &element = elements[code];
        for (std::uint32_t unit = 100; unit > 0; unit /= 10)
            if (code >= unit || unit == 1)
                element.text[element.size++] = static_cast<char>('0' + code / unit % 10);
        element.text[element.size++] = comma;
    }
    return elements;
}();

char *writeElement(std::int16_t code, char *to) {
    if (code < 0 || static_cast<std::size_t>(code) >= lowElements.size()) {
        to = writeInteger(code, to);
        *to = comma;
        return to + 1;
    }
    const element_t &element = lowElements[static_cast<std::size_t>(code)];
    std::memcpy(to, element.text, sizeof element.text);
    return to + element.size;
}

} // namespace

bodyWriter_t wideStringField_t::collectPairs(bodyWriter_t out) const {
    constexpr std::size_t longest = integerRoom + 1; // a number and the comma behind it
    const std::int32_t printed = elements_.printed();
    char *to = out.room(longest * static_cast<std::size_t>(printed));
    for (const wideCharacter_t *character = elements_.begin(); character != elements_.begin() + printed; ++character)
        if (character->isSet != 0)
            to = writeElement(character->code, to);
    out.advance(to);
    return out;
}

// A field can't be moved, and hosts hold references to it while the list grows, so each is made on its own. It is made
// before the list has a place for it: no list ever shows a place without a text.
void wideStringElements_t::append() {
    auto made = std::make_unique<wideStringField_t>(std::string_view(key_, keyLength_), texts_.count());
    texts_.add() = std::move(made);
}

void wideStringElements_t::describe(fieldDescription_t &description) const {
    description.kind = fieldKind_t::text16;
    const auto elements = [](const void *list) -> elementRun_t {
        const auto &texts = *static_cast<const wideStringListField_t *>(list);
        return {texts.begin().at, texts.count()};
    };
    description.list = {.elements = elements};
}

void wideStringListField_t::clear() {
    elements_.clear();
    isSet = 0;
}

void wideStringListField_t::copyFrom(const wideStringListField_t &other) {
    if (this == &other)
        return;
    clear();
    for (const wideStringField_t &text : other) {
        elements_.append();
        at(count() - 1).copyFrom(text);
    }
    found_ = other.found_;
    isSet = other.isSet;
}

wideStringField_t &wideStringListField_t::add(std::u16string_view text) {
    elements_.append();
    isSet = 1;
    return elements_.element(elements_.allocated() - 1, pass_t::parse) = text;
}

} // namespace vek
