// text_t: the text of a document with its lines, where places in bytes and an editor's positions meet.
//
// A line ends with "\n" alone, with "\r\n" too: a lone "\r" is a character for the editors there are. Bytes that are no
// UTF-8 count as a character each. One thread at a time.
#pragma once

#include "vek/inspect/message/place.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vek::tool::lsp {

using inspect::place_t;

/// What an editor counts characters in.
enum class encoding_t : std::uint8_t { utf8, utf16 };

struct position_t {
    std::size_t line = 0, character = 0; ///< from 0
};

class text_t {
public:
    explicit text_t(std::string text);

    std::string_view view() const { return text_; }
    std::size_t lineCount() const { return lineStarts_.size(); }
    /// Without its end.
    place_t line(std::size_t number) const;
    std::size_t lineOf(std::size_t offset) const;

    /// Behind the last line: the text's end; behind the last character of a line: its end.
    std::size_t offsetOf(position_t position, encoding_t encoding) const;

    void replace(place_t place, std::string_view by);
    /// Several at once, in order of their places, which don't overlap.
    struct replacement_t {
        place_t place;
        std::string by;
    };
    void replace(const std::vector<replacement_t> &all);

private:
    void findLines();

    std::string text_;
    std::vector<std::uint32_t> lineStarts_;
};

/// Positions of places, quick for one behind the other.
class positions_t {
public:
    positions_t(const text_t &text, encoding_t encoding) : text_(text), encoding_(encoding) {}

    position_t of(std::size_t offset);

private:
    const text_t &text_;
    const encoding_t encoding_;
    std::size_t offset_ = 0;
    position_t position_;
};

} // namespace vek::tool::lsp
