#include "vek/inspect/words/utf16.hpp"

#include "vek/inspect/words/quoting.hpp"

#include <algorithm>

namespace vek::inspect {

utf16_t::order_t utf16_t::orderOf(std::string_view beginning) {
    constexpr std::size_t enough = 64, least = 8;
    if (beginning.starts_with("\xFF\xFE"))
        return order_t::littleEndian;
    if (beginning.starts_with("\xFE\xFF"))
        return order_t::bigEndian;
    const std::string_view looked = beginning.substr(0, std::min(beginning.size() / 2 * 2, enough));
    std::size_t zeros[2] = {};
    for (std::size_t at = 0; at < looked.size(); ++at)
        zeros[at % 2] += looked[at] == '\0' ? 1 : 0;
    const std::size_t most = looked.size() / 2 - looked.size() / 8; // three of four
    if (looked.size() < least || (zeros[0] > 0 && zeros[1] > 0))
        return order_t::none;
    return zeros[1] >= most ? order_t::littleEndian : zeros[0] >= most ? order_t::bigEndian : order_t::none;
}

void utf16_t::feed(std::string_view block, std::string &out) {
    for (const char c : block) {
        const auto byte = static_cast<unsigned char>(c);
        if (hasByte_)
            take(isBig_ ? std::uint32_t{byte_} << 8 | byte : std::uint32_t{byte} << 8 | byte_, out);
        byte_ = byte;
        hasByte_ = !hasByte_;
    }
}

void utf16_t::take(std::uint32_t unit, std::string &out) {
    constexpr std::uint32_t byteOrderMark = 0xFEFF;
    const bool isMark = !isBegun_ && unit == byteOrderMark;
    isBegun_ = true;
    if (isMark)
        return;
    const bool isHigh = isHighSurrogate(unit);
    if (high_ != 0 && isLowSurrogate(unit))
        unit = joinedSurrogates(high_, unit);
    else if (high_ != 0)
        appendUtf8(out, high_);
    high_ = isHigh ? unit : 0;
    if (!isHigh)
        appendUtf8(out, unit);
}

} // namespace vek::inspect
