// utf16_t: UTF-16 made UTF-8, block by block: what editors and shells of Windows save.
//
// One thread at a time.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vek::inspect {

constexpr bool isHighSurrogate(std::uint32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool isLowSurrogate(std::uint32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}
/// The character that the two halves of a pair make.
constexpr std::uint32_t joinedSurrogates(std::uint32_t high, std::uint32_t low) {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

class utf16_t {
public:
    enum class order_t : std::uint8_t { none, littleEndian, bigEndian };

    /// Of a text with this beginning: told by its byte order mark, or by the zeros of ASCII characters; none when it is
    /// no UTF-16.
    static order_t orderOf(std::string_view beginning);

    explicit utf16_t(order_t order) : isBig_(order == order_t::bigEndian) {}

    /// Appends the next block as UTF-8, without a byte order mark in front. A surrogate alone stays one.
    void feed(std::string_view block, std::string &out);
    /// Whether all characters were whole.
    bool isComplete() const { return !hasByte_ && high_ == 0; }

private:
    void take(std::uint32_t unit, std::string &out);

    const bool isBig_;
    bool hasByte_ = false, isBegun_ = false;
    unsigned char byte_ = 0; // the first half of a unit
    std::uint32_t high_ = 0; // the first half of a pair
};

} // namespace vek::inspect
