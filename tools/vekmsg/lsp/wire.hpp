// wire_t: the messages of the protocol in the bytes that come: a header with their length, then JSON.
//
// Whatever comes, it goes on: behind a header that says nothing it looks for the next one, and what is too long is
// passed over. Memory is bounded by the longest message. One thread at a time.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vek::tool::lsp {

class wire_t {
public:
    /// Longer messages are not taken: of a text with so many bytes an editor itself is slow.
    static constexpr std::size_t longestMessage = std::size_t{64} << 20;

    struct received_t {
        std::string json;
        std::string problem{}; ///< why there is none
    };

    void feed(std::string_view bytes);
    /// The next one that is whole.
    std::optional<received_t> next();

private:
    std::optional<received_t> readHeader();
    received_t lose(std::string_view why);

    std::string kept_;
    std::size_t length_ = 0;  // of the message whose header was read
    std::size_t skipped_ = 0; // bytes to come that are passed over
    bool hasLength_ = false;
    bool isLost_ = false; // until the next header
};

/// A message with its header.
std::string framed(std::string_view json);

} // namespace vek::tool::lsp
