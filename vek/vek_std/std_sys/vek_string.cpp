#include "vek/vek_std/std_sys/vek_string.hpp"

#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <algorithm>
#include <functional>
#include <limits>
#include <string_view>

namespace vek {

namespace {

// The lines that reports name. They are fixed: a report stays the same when the code around it moves.
constexpr std::uint32_t stringIndexLine = 743;
constexpr std::uint32_t viewIndexLine = 753;

// What operator[] refers to when there is no character: the text's own terminator must stay a NUL, whatever a caller
// assigns. Set anew each time, so that nobody reads what another wrote.
char &noCharacter() {
    static thread_local char spare;
    spare = '\0';
    return spare;
}

std::string_view textOf(const string_t &text) {
    return {text.c_str(), text.length()};
}
std::string_view textOf(const char *text) {
    return text != nullptr ? text : "";
}

// i when it is below the limit or unchecked, else 0 after a report.
std::int32_t checkedIndex(std::int32_t i, std::size_t limit, std::uint32_t line) {
    if (stringSettings.skipIndexCheck != 0 || (i >= 0 && static_cast<std::size_t>(i) < limit))
        return i;
    stringRep_t::signal(line, stringBadIndexHook);
    return 0;
}

unsigned char upperByte(char c) {
    return static_cast<unsigned char>(asciiToUpper(c));
}

// Without case by upper case, so that the characters between the two cases ("_" and others) come behind the letters.
// Bytes are unsigned either way, as memcmp compares them.
int compareTexts(std::string_view a, std::string_view b) {
    if (stringSettings.caseSensitive != 0) {
        const int order = a.compare(b);
        return (order > 0) - (order < 0);
    }
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(),
                                          [](char x, char y) { return upperByte(x) == upperByte(y); });
    const int upperA = inA != a.end() ? upperByte(*inA) : -1;
    const int upperB = inB != b.end() ? upperByte(*inB) : -1;
    return (upperA > upperB) - (upperA < upperB);
}

// Searches for both cases of a letter when case does not count, which needs no upper-case copy of the text; `search` is
// called with one character at a time.
template <class Search, class Better>
std::size_t searchCharacter(char c, Search search, Better better) {
    if (stringSettings.caseSensitive)
        return search(c);
    return better(search(asciiToLower(c)), search(asciiToUpper(c)));
}

} // namespace

string_t::string_t(std::size_t n, char c) : body(makeBody(n)) {
    if (body != nullptr && n > 0)
        std::memset(body->data, c, n);
}

string_t::string_t(const char *text) : body(makeBody(text, text != nullptr ? std::strlen(text) : 0)) {}

string_t::string_t(const char *text, std::size_t n) {
    if (text != nullptr) { // not strlen: the n characters need not have a terminator
        const void *end = std::memchr(text, '\0', n);
        n = end != nullptr ? static_cast<std::size_t>(static_cast<const char *>(end) - text) : n;
    }
    body = makeBody(text, text != nullptr ? n : 0);
}

string_t::string_t(const subString_t &view) : body(makeBody(view.begin(), view.present())) {}

// Before every change. The constant body is never private, so it is copied too, and never written to. The shared body
// is let go last, since the copy reads from it; when there is no memory the string has a null body and reads as "",
// rather than change a text that other strings show.
bool string_t::makePrivate() {
    if (body != nullptr && body->isPrivate())
        return true;
    stringRep_t *copy = stringRep_t::make(c_str(), length());
    stringRep_t::release(body);
    body = copy;
    return body != nullptr;
}

// A change that failed leaves a body whose text is of no use. Without it the string is in the one state that all
// operations know to mean "no memory", and in which each tries again.
void string_t::keepIf(bool changed) {
    if (!changed)
        stringRep_t::release(std::exchange(body, nullptr));
}

// The order of unrelated addresses is defined for std::less_equal only.
bool string_t::isOwnText(const char *text) const {
    return std::less_equal<>()(c_str(), text) && std::less_equal<>()(text, c_str() + length());
}

string_t &string_t::replace(std::size_t position, std::size_t removed, const char *source, std::size_t inserted) {
    // Nothing to erase and nothing to put in: a copy of the shared empty body would be a block for nothing.
    if (inserted == 0 && (body == nullptr || body->isConstant()))
        return *this;
    // A source inside this text stays readable in the shared body that this string then copies itself from.
    const string_t kept = isOwnText(source) ? *this : string_t(ownBody_t(), static_cast<stringRep_t *>(nullptr));
    if (makePrivate()) {
        position = std::min(position, length());
        removed = std::min(removed, length() - position);
        keepIf(body->replace(position, removed, source, inserted));
    }
    return *this;
}

// A text that grows by short pieces comes here once a step, so its way to a larger buffer is short too. With the
// default sizes, the rounded capacity is the length with its low bits set.
string_t &string_t::appendGrowing(const char *text, std::size_t n) {
    static_assert(stringSettings_t::defaultCapacity == 63 && stringSettings_t::defaultStep == 64);
    if (body == nullptr || !body->isPrivate() || text == nullptr || isOwnText(text) || stringSettings.sizesChanged ||
        n > std::numeric_limits<std::uint32_t>::max())
        return replace(length(), 0, text, n);
    const std::uint64_t newLength = body->length + std::uint64_t{n};
    if (const std::uint64_t wanted = newLength | 63; wanted > body->capacity && !body->setCapacity(wanted)) {
        keepIf(false);
        return *this;
    }
    std::memcpy(body->data + body->length, text, n);
    body->length = static_cast<std::uint32_t>(newLength);
    body->data[newLength] = '\0';
    return *this;
}

// Made in one block of the final length. Appending to a copy would copy the head twice.
string_t concatenated(const char *head, std::size_t headLength, const char *tail, std::size_t tailLength) {
    const std::size_t length = headLength + tailLength;
    string_t sum(string_t::ownBody_t(), string_t::makeBody(length));
    if (sum.body != nullptr && length > 0) {
        std::memcpy(sum.body->data, head, headLength);
        std::memcpy(sum.body->data + headLength, tail, tailLength);
    }
    return sum;
}

string_t operator+(const string_t &head, const char *tail) {
    const std::string_view text = textOf(tail);
    return concatenated(head.c_str(), head.length(), text.data(), text.size());
}

string_t operator+(const char *head, const string_t &tail) {
    const std::string_view text = textOf(head);
    return concatenated(text.data(), text.size(), tail.c_str(), tail.length());
}

string_t operator+(const string_t &head, const string_t &tail) {
    return concatenated(head.c_str(), head.length(), tail.c_str(), tail.length());
}

void string_t::mapCharacters(std::size_t position, std::size_t count, char (*map)(char)) {
    if (count > 0 && makePrivate())
        std::transform(body->data + position, body->data + position + count, body->data + position, map);
}

void string_t::toLower() {
    mapCharacters(0, length(), asciiToLower);
}
void string_t::toUpper() {
    mapCharacters(0, length(), asciiToUpper);
}

string_t toLower(const string_t &text) {
    string_t lower = text;
    lower.toLower();
    return lower;
}

string_t toUpper(const string_t &text) {
    string_t upper = text;
    upper.toUpper();
    return upper;
}

bool string_t::isUpper() const {
    const std::string_view text = textOf(*this);
    return std::none_of(text.begin(), text.end(), isAsciiLower);
}

bool string_t::isLower() const {
    const std::string_view text = textOf(*this);
    return std::none_of(text.begin(), text.end(), isAsciiUpper);
}

char &string_t::characterAt(std::size_t position) {
    return position < length() && makePrivate() ? body->data[position] : noCharacter();
}

char &string_t::operator[](std::int32_t i) {
    return characterAt(static_cast<std::size_t>(checkedIndex(i, length(), stringIndexLine)));
}

int string_t::compareTo(const string_t &other) const {
    return compareTexts(c_str(), other.c_str()); // up to the terminators
}

int string_t::compareWhole(const char *text, std::size_t length) const {
    return compareTexts(textOf(*this), {text, length});
}

bool string_t::operator==(const char *text) const {
    return text != nullptr ? compareTexts(c_str(), text) == 0 : length() == 0;
}

bool string_t::operator<(const char *text) const {
    return compareTexts(c_str(), textOf(text)) < 0;
}

std::weak_ordering string_t::operator<=>(const char *text) const {
    return compareTexts(c_str(), textOf(text)) <=> 0;
}

// The length and the exclusive or of the text's words. Texts that compare equal must hash equal, so it follows the same
// setting as the comparison.
std::uint32_t string_t::hash() const {
    auto sum = static_cast<std::uint32_t>(length());
    unsigned shift = 0;
    for (const char c : textOf(*this)) { // little-endian words, whatever the target's order and alignment
        const unsigned char byte = stringSettings.caseSensitive != 0 ? static_cast<unsigned char>(c) : upperByte(c);
        sum ^= std::uint32_t{byte} << shift;
        shift = (shift + 8) % 32;
    }
    return sum;
}

// Compares in place: copies in upper case would need memory, and two that get none are both empty.
std::size_t string_t::index(const char *pattern, std::size_t start, std::size_t &patternLength) const {
    const std::string_view text = textOf(*this), wanted = textOf(pattern);
    patternLength = wanted.size();
    if (stringSettings.caseSensitive != 0 || wanted.empty() || start > text.size())
        return text.find(wanted, start);
    using place_t = std::string_view::const_iterator;
    const place_t found = std::search(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(), wanted.begin(),
                                      wanted.end(), [](char a, char b) { return upperByte(a) == upperByte(b); });
    return found != text.end() ? static_cast<std::size_t>(found - text.begin()) : notFound;
}

std::size_t string_t::index(const char *pattern, std::size_t start) const {
    std::size_t patternLength = 0;
    return index(pattern, start, patternLength);
}

std::size_t string_t::first(char c, std::size_t start) const {
    const auto search = [&](char wanted) { return textOf(*this).find(wanted, start); };
    return searchCharacter(c, search, [](std::size_t a, std::size_t b) { return std::min(a, b); });
}

std::size_t string_t::first(const char *set, std::size_t start) const {
    return textOf(*this).find_first_of(textOf(set), start);
}

std::size_t string_t::last(char c) const {
    const auto search = [&](char wanted) { return textOf(*this).rfind(wanted); };
    // One more than a position orders "not found" before all others.
    return searchCharacter(c, search, [](std::size_t a, std::size_t b) { return std::max(a + 1, b + 1) - 1; });
}

// Also takes the "not found" of a search, which is -1 as a signed number: it gives the null view.
subString_t string_t::operator()(std::ptrdiff_t start, std::size_t extent) {
    const bool fits = start >= 0 && start <= std::numeric_limits<std::int32_t>::max() &&
                      static_cast<std::size_t>(start) <= length() &&
                      extent <= length() - static_cast<std::size_t>(start);
    return fits ? subString_t(this, static_cast<std::int32_t>(start), static_cast<std::uint32_t>(extent))
                : subString_t(this, -1, 0);
}

subString_t string_t::subString(const char *pattern, std::size_t start) {
    std::size_t patternLength = 0;
    const std::size_t position = index(pattern, start, patternLength);
    return (*this)(static_cast<std::ptrdiff_t>(position), patternLength);
}

subString_t string_t::strip(std::int32_t mode, char c) {
    const std::string_view text = textOf(*this);
    std::size_t begin = text.find_first_not_of(c);
    if (begin == notFound)
        return (*this)(-1, 0);
    std::size_t end = text.find_last_not_of(c) + 1;
    if (mode == trailing_e)
        begin = 0;
    if (mode == leading_e)
        end = text.size();
    return (*this)(static_cast<std::ptrdiff_t>(begin), end - begin);
}

// The owner may have become shorter since the view was made: what it no longer has is left out, here and in present().
const char *subString_t::begin() const {
    const std::size_t length = owner_->length();
    return isNull() ? "" : owner_->c_str() + std::min(static_cast<std::size_t>(startPosition_), length);
}

std::size_t subString_t::present() const {
    const std::size_t length = owner_->length();
    const auto first = static_cast<std::size_t>(startPosition_); // of the null view: behind every text
    return first < length ? std::min<std::size_t>(characters_, length - first) : 0;
}

subString_t &subString_t::assign(const char *text, std::size_t length) {
    if (!isNull()) {
        owner_->replace(static_cast<std::size_t>(startPosition_), characters_, text, length);
        characters_ = static_cast<std::uint32_t>(length);
    }
    return *this;
}

// No copy is needed: replace takes care of a source in the same text.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
subString_t &subString_t::operator=(const subString_t &text) && {
    return assign(text.begin(), text.present());
}
subString_t &subString_t::operator=(const string_t &text) {
    return assign(text.c_str(), text.length());
}
subString_t &subString_t::operator=(const char *text) {
    return assign(text, text != nullptr ? std::strlen(text) : 0);
}

// The present characters limit the comparison only without case: callers rely on the difference.
bool subString_t::operator==(const char *text) const {
    if (text == nullptr)
        return characters_ == 0;
    const std::size_t limit = stringSettings.caseSensitive != 0 ? string_t::notFound : present();
    return compareTexts(std::string_view(begin()).substr(0, limit), std::string_view(text).substr(0, limit)) == 0;
}

void subString_t::toLower() {
    owner_->mapCharacters(static_cast<std::size_t>(startPosition_), present(), asciiToLower);
}
void subString_t::toUpper() {
    owner_->mapCharacters(static_cast<std::size_t>(startPosition_), present(), asciiToUpper);
}

char &subString_t::operator[](std::int32_t i) {
    const std::int32_t checked = checkedIndex(i, present(), viewIndexLine);
    return owner_->characterAt(static_cast<std::size_t>(startPosition_) + static_cast<std::size_t>(checked));
}

} // namespace vek
