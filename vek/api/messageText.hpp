// messageText_t: a text message that the library wrote, in the library's own memory, which is not copied.
//
// It is read like a std::string_view and converts to one and to a std::string. Whoever has it owns it, and it releases
// itself. One thread at a time.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/api/vekParams2ASCII.h"
#include "vek/vek_std/std_sys/vek_lifetime.hpp"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

namespace vek {

class messageText_t {
public:
    static constexpr std::size_t npos = std::string_view::npos;

    /// "", which is no message.
    messageText_t() = default;

    /// Takes over a message that vekValToStr handed out, with an id of four digits.
    explicit messageText_t(char *text) : text_(text) {}

    /// The characters, followed by a NUL. Valid until this text is assigned to or destroyed.
    const char *c_str() const VEK_LIFETIMEBOUND { return text_ != nullptr ? text_.get() : ""; }
    const char *data() const VEK_LIFETIMEBOUND { return c_str(); }
    std::size_t size() const { return empty() ? 0 : length() - 1; } ///< without the NUL
    bool empty() const { return text_ == nullptr; }
    std::string_view view() const VEK_LIFETIMEBOUND { return {c_str(), size()}; }
    operator std::string_view() const VEK_LIFETIMEBOUND { return view(); }
    /// As of the std::string_view.
    std::string_view substr(std::size_t from, std::size_t count = npos) const VEK_LIFETIMEBOUND {
        return view().substr(from, count);
    }
    bool starts_with(auto with) const { return view().starts_with(with); }
    bool ends_with(auto with) const { return view().ends_with(with); }
    std::size_t find(auto what, std::size_t from = 0) const { return view().find(what, from); }
    std::size_t rfind(auto what, std::size_t from = npos) const { return view().rfind(what, from); }
    std::size_t find_first_of(auto set, std::size_t from = 0) const { return view().find_first_of(set, from); }
    std::size_t find_last_of(auto set, std::size_t from = npos) const { return view().find_last_of(set, from); }
    std::size_t find_first_not_of(auto set, std::size_t from = 0) const { return view().find_first_not_of(set, from); }
    std::size_t find_last_not_of(auto set, std::size_t from = npos) const { return view().find_last_not_of(set, from); }
    char operator[](std::size_t i) const { return c_str()[i]; }
    const char *begin() const VEK_LIFETIMEBOUND { return c_str(); }
    const char *end() const VEK_LIFETIMEBOUND { return c_str() + size(); }

    std::string str() const { return std::string(view()); }
    operator std::string() const { return str(); }

    /// Whether the length, the NUL included, is what the message says of it: at most 99,999.
    bool isLengthRight() const { return lengthField()[0] == ' ' || text_.get()[length() - 1] == '\0'; }

    /// Puts another echo tag into a message that vekValToStr wrote for a structure: its text has the room for that.
    void setEchoTag(std::int32_t echoTag) { renumber(echoTag, nullptr); }
    /// Puts both other numbers in.
    void setNumbers(std::int32_t echoTag, std::int32_t sequenceNumber) { renumber(echoTag, &sequenceNumber); }

    friend bool operator==(const messageText_t &text, std::string_view other) { return text.view() == other; }
    friend std::string operator+(const messageText_t &text, std::string_view more) { return text.str().append(more); }
    friend std::string operator+(std::string_view start, const messageText_t &text) {
        return std::string(start).append(text.view());
    }
    template <class Traits>
    friend std::basic_ostream<char, Traits> &operator<<(std::basic_ostream<char, Traits> &out,
                                                        const messageText_t &text) {
        return out << text.view();
    }

private:
    void renumber(std::int32_t echoTag, const std::int32_t *sequenceNumber) {
        char *const old = lengthField() + lengthDigits + 1;
        char *rest = std::strchr(old, ' ');
        constexpr std::size_t mostDigits = 11; // of a 32-bit number, with its sign
        char numbers[2 * mostDigits + 1];
        char *end = std::to_chars(numbers, numbers + mostDigits, echoTag).ptr;
        if (sequenceNumber != nullptr) {
            rest = std::strchr(rest + 1, ' ');
            *end++ = ' ';
            end = std::to_chars(end, end + mostDigits, *sequenceNumber).ptr;
        }
        const auto size = static_cast<std::size_t>(end - numbers);
        const std::size_t restSize = std::strlen(rest) + 1;
        std::memmove(old + size, rest, restSize);
        std::memcpy(old, numbers, size);
        std::size_t left = static_cast<std::size_t>(old - text_.get()) + size + restSize;
        for (; left > longestReadableMessage; left /= 10) {
        }
        for (char *digit = lengthField() + lengthDigits; digit != lengthField(); left /= 10)
            *--digit = left != 0 ? static_cast<char>('0' + left % 10) : ' ';
    }

    struct releaser_t {
        void operator()(char *text) const { vekParamsDelete(text); }
    };

    /// Behind "@@", an id of four digits and a blank.
    char *lengthField() const { return text_.get() + 7; }

    /// As the message says, blanks in front: without looking for the NUL.
    std::size_t length() const {
        std::size_t said = 0;
        for (std::size_t i = 0; i < lengthDigits; ++i) {
            static_assert((' ' & 0xF) == 0 && ('9' & 0xF) == 9);
            said = said * 10 + static_cast<std::size_t>(lengthField()[i] & 0xF);
        }
        return said;
    }

    std::unique_ptr<char, releaser_t> text_;
};

} // namespace vek
