// The leaves of a body: integers, reals, texts, booleans and enumerations.
//
// A codec tells what stands for one kind of value in a text, and reads it; readAt, where it has one, reads the usual
// form of it at a cursor, and tells whether it stood there; has tells whether another text says a value that the member
// can hold.
// boundField_t ties a codec to a member of a message structure; ownField_t keeps the value itself, for the records that
// are their own message structure.
#pragma once

#include "vek/text/numberText.hpp"
#include "vek/text/textField.hpp"
#include "vek/text/writtenGroup.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace vek {

/// Copies a text value, with the codes in it as the characters that they stand for. No terminator is written.
void readText(std::string_view text, char *to);

/// Numbers: 0 when their key is absent.
template <class Value, fieldKind_t Kind>
struct numberCodec_t {
    using value_t = Value;
    static constexpr fieldKind_t kind = Kind;
    static void clear(value_t &value) { value = 0; }
};

struct longCodec_t : numberCodec_t<std::int32_t, fieldKind_t::integer32> {
    static std::int32_t written(value_t value) { return value; }
    static void read(std::string_view text, value_t &value) { value = readInteger(text); }
    static bool readAt(canonicalCursor_t &at, value_t &value) { return at.integer(value); }
    static bool has(std::string_view text) { return isInteger32(text); }
};

struct doubleCodec_t : numberCodec_t<double, fieldKind_t::float64> {
    static double written(value_t value) { return value; }
    static void read(std::string_view text, value_t &value) { value = readReal(text); }
    static bool readAt(canonicalCursor_t &at, value_t &value) { return at.real(value); }
    static bool has(std::string_view text) { return isReal(text); }
};

/// Stands in the text as the numbers of another codec, `Text`, do; Narrowing::narrow makes the value of what that
/// reads.
template <class Narrowing, class Text, class Value, fieldKind_t Kind>
struct narrowedCodec_t : numberCodec_t<Value, Kind> {
    using wide_t = typename Text::value_t;

    static wide_t written(Value value) { return static_cast<wide_t>(value); }
    static void read(std::string_view text, Value &value) {
        wide_t wide = 0;
        Text::read(text, wide);
        value = Narrowing::narrow(wide);
    }
    static bool readAt(canonicalCursor_t &at, Value &value) {
        canonicalCursor_t behind = at; // what is not held stays for readOther
        wide_t wide = 0;
        const bool isRead = Text::readAt(behind, wide);
        value = Narrowing::narrow(wide);
        if (!isRead || !Narrowing::isHeld(wide, value))
            return false;
        at = behind;
        return true;
    }
    static bool has(std::string_view text) {
        wide_t wide = 0;
        Text::read(text, wide);
        return Text::has(text) && Narrowing::isHeld(wide, Narrowing::narrow(wide));
    }
    static bool isHeld(wide_t wide, Value narrow) { return static_cast<wide_t>(narrow) == wide; }
};

/// The low 16 bits.
struct shortCodec_t : narrowedCodec_t<shortCodec_t, longCodec_t, std::int16_t, fieldKind_t::integer16> {
    static value_t narrow(std::int32_t value) { return static_cast<value_t>(value); }
};

/// The nearest float.
struct floatCodec_t : narrowedCodec_t<floatCodec_t, doubleCodec_t, float, fieldKind_t::float32> {
    static value_t narrow(double real) { return static_cast<value_t>(real); }
    static bool isHeld(double, value_t narrow) { return std::isfinite(narrow); } // not every digit
};

/// A 32-bit pixel size that stands in the text as a real: truncated toward zero, 0 when that doesn't fit 32 bits.
struct pixelCodec_t : narrowedCodec_t<pixelCodec_t, doubleCodec_t, std::int32_t, fieldKind_t::pixels> {
    static value_t narrow(double real) {
        return real > -2147483649.0 && real < 2147483648.0 ? static_cast<value_t>(real) : 0;
    }
};

/// How many elements of an array of fixed room are in use: at most the room. A negative count stays.
template <std::int32_t Room>
struct countCodec_t : narrowedCodec_t<countCodec_t<Room>, longCodec_t, std::int32_t, fieldKind_t::integer32> {
    static std::int32_t narrow(std::int32_t value) { return std::min(value, Room); }
};

/// "TRUE" or "FALSE"; every text but "TRUE" reads as 0.
struct boolCodec_t : numberCodec_t<std::uint8_t, fieldKind_t::boolean> {
    static std::string_view written(value_t value) { return value != 0 ? "TRUE" : "FALSE"; }
    static void read(std::string_view text, value_t &value) { value = text == "TRUE" ? 1 : 0; }
    static bool readAt(canonicalCursor_t &at, value_t &value) {
        value = at.skip("TRUE") ? 1 : 0;
        return value != 0 || at.skip("FALSE");
    }
    static bool has(std::string_view) { return false; }
};

struct stringCodec_t {
    using value_t = string_t;
    static constexpr fieldKind_t kind = fieldKind_t::text;
    static void clear(value_t &value) { value = value_t(); }
    static writtenText_t written(const value_t &value) {
        return {value.c_str(), value.length(), value.capacity() + std::size_t{1}};
    }
    static void read(std::string_view text, value_t &value);
};

/// A text in a character array of fixed room: longer ones are cut, the rest of the array is zero.
template <std::size_t Room>
struct fixedTextCodec_t {
    using value_t = char[Room];
    static constexpr fieldKind_t kind = fieldKind_t::text;
    static constexpr std::int32_t room = Room;
    static bool has(std::string_view text) { return text.size() < Room; }
    // The array is zero behind its text: in a fresh structure, and after everything that is done here.
    static void clear(value_t &value) {
        if (value[0] != '\0')
            std::memset(value, 0, Room);
    }
    static writtenText_t written(const value_t &value) {
        const void *const end = std::memchr(value, '\0', Room);
        const std::size_t size =
            end != nullptr ? static_cast<std::size_t>(static_cast<const char *>(end) - value) : Room;
        return {value, size, Room};
    }
    static void read(std::string_view text, value_t &value) {
        const std::size_t length = text.size() < Room ? text.size() : Room - 1;
        if (value[length] != '\0') // of a longer text
            std::memset(value + length, 0, Room - length);
        readText(text.substr(0, length), value);
    }
};

/// A field with a codec's kind of value. `Holder` is a reference to the value or the value itself.
template <class Codec, class Holder>
class valueField_t : public textField_t {
public:
    using value_t = typename Codec::value_t;

    bodyWriter_t toText(bodyWriter_t out) const override {
        return isSet != 0 ? writeValue(Codec::written(value_), out) : out;
    }

    void fromText(std::string_view text) override {
        Codec::read(text, value_);
        isSet = 1;
    }

    canonicalCursor_t readAt(canonicalCursor_t at) override {
        if constexpr (requires { Codec::readAt(at, value_); }) {
            if (Codec::readAt(at, value_)) [[likely]] {
                isSet = 1;
                return at;
            }
            return readOther(at);
        } else if constexpr (requires { Codec::has({}); }) {
            const std::string_view value = at.value();
            if (value.empty() || !Codec::has(value))
                return {};
            valueField_t::fromText(value);
            return at;
        } else {
            return textField_t::readAt(at);
        }
    }

    void describe(fieldDescription_t &description) const override {
        description.kind = Codec::kind;
        description.bindTo(value_);
        if constexpr (requires { Codec::room; })
            description.details = arrayText_t{Codec::room, Codec::room};
        else if constexpr (std::is_pointer_v<value_t>)
            description.details = pointerText_t();
    }

protected:
    valueField_t(textGroup_t &group, std::string_view key, Holder value) : textField_t(group, key), value_(value) {}
    explicit valueField_t(Holder value) : value_(value) {}

    Holder value_;

private:
    // What is not in the usual form.
    [[gnu::noinline, gnu::cold]] canonicalCursor_t readOther(canonicalCursor_t at) {
        canonicalCursor_t behind = at;
        return Codec::has(behind.value()) ? textField_t::readAt(at) : canonicalCursor_t();
    }
};

/// A field bound to a member of a message structure.
template <class Codec>
struct boundField_t : valueField_t<Codec, typename Codec::value_t &> {
    using value_t = typename Codec::value_t;

    /// A member of `group`. The key's characters and the value must outlive the field.
    [[gnu::always_inline]] boundField_t(textGroup_t &group, std::string_view key, value_t &value)
        : valueField_t<Codec, value_t &>(group, key, value) {
        if (group.pass() == pass_t::parse) {
            Codec::clear(value);
            group.makeFor(pass_t::parse);
        } else if (group.pass() == pass_t::write)
            writtenGroup_t::of(group).append<Codec>(key, value);
    }

    /// Appends an element of a list.
    static bodyWriter_t writeElement(const value_t &value, bodyWriter_t out) {
        return vek::writeElement(Codec::written(value), out);
    }

    /// An element of a list.
    boundField_t(pass_t pass, value_t &value) : valueField_t<Codec, value_t &>(value) {
        if (pass == pass_t::parse)
            Codec::clear(value);
        else
            this->isSet = 1;
    }
};

/// A field that keeps its value and stands for it: it is assigned and read like one. Assigning a value sets the field.
template <class Codec>
struct ownField_t : valueField_t<Codec, typename Codec::value_t> {
    using value_t = typename Codec::value_t;

    ownField_t(textGroup_t &group, std::string_view key, value_t initial = {})
        : valueField_t<Codec, value_t>(group, key, initial) {}

    ownField_t &operator=(value_t value) {
        this->value_ = value;
        this->isSet = 1;
        return *this;
    }
    ownField_t &operator=(const ownField_t &other) { return *this = other.value(); }

    /// Takes over the value, and whether it is set.
    void copyFrom(const ownField_t &other) {
        this->value_ = other.value_;
        this->isSet = other.isSet;
    }

    value_t value() const { return this->value_; }
    operator value_t() const { return this->value_; }

    /// Puts the value to that of an absent key, and unsets the field.
    void clear() {
        Codec::clear(this->value_);
        this->isSet = 0;
    }

    /// The member is the field itself: hosts see no more of it than its value.
    void describe(fieldDescription_t &description) const override {
        valueField_t<Codec, value_t>::describe(description);
        description.standIn(*this);
        description.isSet = &this->isSet;
    }
};

using longField_t = boundField_t<longCodec_t>;
using shortField_t = boundField_t<shortCodec_t>;
using floatField_t = boundField_t<floatCodec_t>;
using doubleField_t = boundField_t<doubleCodec_t>;
using boolField_t = boundField_t<boolCodec_t>;
using stringField_t = boundField_t<stringCodec_t>;
using pixelField_t = boundField_t<pixelCodec_t>;
template <std::int32_t Room>
using countField_t = boundField_t<countCodec_t<Room>>;
template <std::size_t Room>
using fixedTextField_t = boundField_t<fixedTextCodec_t<Room>>;

} // namespace vek
