#include "tools/vekmsg/lsp/text.hpp"

#include "vek/inspect/words/quoting.hpp"

#include <algorithm>
#include <cstring>

namespace vek::tool::lsp {

namespace {

// How many of the bytes at the front are ASCII, in steps of eight.
std::size_t asciiRun(std::string_view text) {
    std::size_t at = 0;
    for (std::uint64_t eight; at + sizeof eight <= text.size(); at += sizeof eight) {
        std::memcpy(&eight, text.data() + at, sizeof eight);
        if ((eight & 0x8080808080808080U) != 0)
            break;
    }
    return at;
}

// Goes over characters until all bytes are taken, or as many units.
struct walk_t {
    std::size_t bytes = 0, units = 0;

    walk_t(std::string_view text, std::size_t mostUnits, encoding_t encoding) {
        while (bytes < text.size() && units < mostUnits) {
            const std::size_t run = asciiRun(text.substr(bytes, std::min(mostUnits - units, text.size() - bytes)));
            bytes += run;
            units += run;
            if (bytes == text.size() || units == mostUnits)
                break;
            const std::size_t size = std::max<std::size_t>(inspect::utf8Size(text.substr(bytes)), 1);
            const std::size_t itsUnits = encoding == encoding_t::utf8 ? size : size == 4 ? 2 : 1;
            if (units + itsUnits > mostUnits) // within a character: in front of it
                break;
            bytes += size;
            units += itsUnits;
        }
    }
};

void appendLineStarts(std::vector<std::uint32_t> &starts, std::string_view text, std::size_t offset) {
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string_view::npos;)
        starts.push_back(static_cast<std::uint32_t>(offset + ++at));
}

} // namespace

text_t::text_t(std::string text) : text_(std::move(text)) {
    findLines();
}

void text_t::findLines() {
    lineStarts_.assign(1, 0);
    appendLineStarts(lineStarts_, text_, 0);
}

place_t text_t::line(std::size_t number) const {
    const std::size_t start = lineStarts_[number];
    std::size_t end = number + 1 < lineStarts_.size() ? lineStarts_[number + 1] - 1 : text_.size();
    if (number + 1 < lineStarts_.size() && end > start && text_[end - 1] == '\r')
        --end;
    return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end)};
}

std::size_t text_t::lineOf(std::size_t offset) const {
    const auto behind = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
    return static_cast<std::size_t>(behind - lineStarts_.begin()) - 1;
}

std::size_t text_t::offsetOf(position_t position, encoding_t encoding) const {
    if (position.line >= lineStarts_.size())
        return text_.size();
    const place_t its = line(position.line);
    return its.start + walk_t(its.in(text_), position.character, encoding).bytes;
}

void text_t::replace(place_t place, std::string_view by) {
    const auto first = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), place.start);
    const auto last = std::upper_bound(first, lineStarts_.end(), place.end);
    for (auto start = last; start != lineStarts_.end(); ++start)
        *start = static_cast<std::uint32_t>(*start + by.size() - place.size());
    std::vector<std::uint32_t> added;
    appendLineStarts(added, by, place.start);
    lineStarts_.insert(lineStarts_.erase(first, last), added.begin(), added.end());
    text_.replace(place.start, place.size(), by);
}

void text_t::replace(const std::vector<replacement_t> &all) {
    std::string text;
    std::size_t at = 0;
    for (const replacement_t &one : all) {
        text.append(text_, at, one.place.start - at).append(one.by);
        at = one.place.end;
    }
    text_ = text.append(text_, at);
    findLines();
}

position_t positions_t::of(std::size_t offset) {
    const std::size_t line = text_.lineOf(offset);
    const place_t its = text_.line(line);
    const std::size_t end = std::min<std::size_t>(offset, its.end);
    const bool goesOn = line == position_.line && offset_ >= its.start && offset_ <= end;
    const std::size_t from = goesOn ? offset_ : its.start;
    const std::size_t units = walk_t(text_.view().substr(from, end - from), SIZE_MAX, encoding_).units;
    position_ = {line, (goesOn ? position_.character : 0) + units};
    offset_ = end;
    return position_;
}

} // namespace vek::tool::lsp
