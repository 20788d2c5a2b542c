#include "tools/vekmsg/lsp/wire.hpp"

#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <charconv>

namespace vek::tool::lsp {

namespace {

constexpr std::string_view lengthName = "content-length";
constexpr std::size_t longestHeader = 4096;

char lower(char c) {
    return isAsciiUpper(c) ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool isSameName(std::string_view one, std::string_view lowered) {
    return std::equal(one.begin(), one.end(), lowered.begin(), lowered.end(),
                      [](char a, char b) { return lower(a) == b; });
}

// Where a name of a length stands next; of one that is cut off, its beginning.
std::size_t findLength(std::string_view bytes, std::size_t from) {
    for (std::size_t at = from; at < bytes.size(); ++at)
        if (lower(bytes[at]) == lengthName.front() &&
            isSameName(bytes.substr(at, lengthName.size()), lengthName.substr(0, bytes.size() - at)))
            return at;
    return bytes.size();
}

std::optional<std::size_t> lengthIn(std::string_view header) {
    std::optional<std::size_t> length;
    while (!header.empty()) {
        const std::size_t end = std::min(header.find('\n'), header.size() - 1);
        const std::string_view line = inspect::trimmed(header.substr(0, end + 1));
        header.remove_prefix(end + 1);
        const std::size_t colon = line.find(':');
        if (line.empty() || (colon != std::string_view::npos && !isSameName(line.substr(0, colon), lengthName)))
            continue;
        const std::string_view digits = inspect::trimmed(line.substr(std::min(colon, line.size() - 1) + 1));
        std::size_t number = 0;
        const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
        if (colon == std::string_view::npos || read.ec != std::errc() || digits.empty() ||
            read.ptr != digits.data() + digits.size())
            return std::nullopt;
        length = number;
    }
    return length;
}

} // namespace

void wire_t::feed(std::string_view bytes) {
    const std::size_t skipped = std::min(skipped_, bytes.size());
    skipped_ -= skipped;
    kept_ += bytes.substr(skipped);
}

wire_t::received_t wire_t::lose(std::string_view why) {
    isLost_ = true;
    return {{}, std::string(why)};
}

std::optional<wire_t::received_t> wire_t::readHeader() {
    if (isLost_)
        kept_.erase(0, findLength(kept_, 0));
    std::size_t end = kept_.find("\r\n\r\n"), size = 4;
    if (const std::size_t bare = kept_.find("\n\n"); bare < end) {
        end = bare;
        size = 2;
    }
    if (std::min(end, kept_.size()) > longestHeader) {
        kept_.erase(0, isLost_ ? 1 : 0);
        return lose("a header is longer than any");
    }
    if (end == std::string::npos)
        return std::nullopt;
    const std::optional<std::size_t> length = lengthIn(std::string_view(kept_).substr(0, end));
    if (!length) {
        kept_.erase(0, findLength(kept_, 1));
        return lose("a header has no Content-Length, or none that is a number");
    }
    isLost_ = false;
    kept_.erase(0, end + size);
    if (*length > longestMessage) {
        const std::size_t here = std::min(*length, kept_.size());
        kept_.erase(0, here);
        skipped_ = *length - here;
        return received_t{{}, "the message is too long"};
    }
    hasLength_ = true;
    length_ = *length;
    return std::nullopt;
}

std::optional<wire_t::received_t> wire_t::next() {
    if (!hasLength_) {
        const bool wasLost = isLost_;
        if (std::optional<received_t> problem = readHeader())
            return wasLost && isLost_ ? next() : problem; // told once
        if (!hasLength_)
            return std::nullopt;
    }
    if (kept_.size() < length_)
        return std::nullopt;
    received_t received{kept_.substr(0, length_)};
    kept_.erase(0, length_);
    hasLength_ = false;
    return received;
}

std::string framed(std::string_view json) {
    return inspect::joined({"Content-Length: ", std::to_string(json.size()), "\r\n\r\n", json});
}

} // namespace vek::tool::lsp
