// exchange_t: the bytes that go between the page's script and the inspection core.
//
// The script asks for room, writes a call's bytes there, makes the call, and reads the result before the next one. An
// instance of the module has one exchange and one thread; the page has an instance, and its worker another.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vek::page {

struct exchange_t {
    std::string input;
    std::string result;

    /// The bytes of a call, taken off one after the other.
    std::string_view take(std::size_t size) {
        const std::string_view piece = std::string_view(input).substr(taken_, size);
        taken_ += piece.size();
        return piece;
    }
    void rewind() { taken_ = 0; }

private:
    std::size_t taken_ = 0;
};

} // namespace vek::page
