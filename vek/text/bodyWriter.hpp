// bodyWriter_t: the growing output buffer that fields and groups write themselves into.
//
// One buffer serves a whole message. What is written can be taken back to an earlier size, which is how a pair whose
// value turns out empty disappears. Owns its buffer until release(). Not safe for concurrent use.
#pragma once

#include "vek/text/characters.hpp"
#include "vek/vek_std/std_sys/vek_shortRuns.hpp"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace vek {

class bodyWriter_t {
public:
    /// Starts with room for `room` characters, at least 1. Throws std::bad_alloc, as every operation that grows does.
    explicit bodyWriter_t(std::size_t room) : buffer_(static_cast<char *>(std::malloc(room))) {
        if (buffer_ == nullptr)
            throw std::bad_alloc();
        at_ = buffer_;
        end_ = buffer_ + room;
    }
    ~bodyWriter_t() { std::free(buffer_); }
    bodyWriter_t(const bodyWriter_t &) = delete;
    bodyWriter_t &operator=(const bodyWriter_t &) = delete;

    std::size_t size() const { return static_cast<std::size_t>(at_ - buffer_); }
    std::string_view text() const { return {buffer_, size()}; }

    /// Drops everything behind the first `size` characters.
    void rewind(std::size_t size) { at_ = buffer_ + size; }

    /// A place for at least `count` characters; advance() says how many were written there.
    char *room(std::size_t count) {
        if (static_cast<std::size_t>(end_ - at_) < count)
            grow(count);
        return at_;
    }
    void advance(char *end) { at_ = end; }

    void put(char c) {
        *room(1) = c;
        ++at_;
    }
    void put(std::string_view text) {
        copyShort(text.data(), text.size(), room(text.size()));
        at_ += text.size();
    }

    /// Appends a key and a "=".
    void putKey(std::string_view key) {
        char *const to = room(key.size() + 1);
        copyShort(key.data(), key.size(), to);
        to[key.size()] = separators[0];
        at_ = to + key.size() + 1;
    }

    /// Replaces characters that were already written.
    void patch(std::size_t position, std::string_view text) {
        std::memcpy(buffer_ + position, text.data(), text.size());
    }

    /// Hands out the buffer, which the caller frees with std::free; the writer must not be used any more.
    char *release() { return std::exchange(buffer_, nullptr); }

private:
    void grow(std::size_t count);

    char *buffer_;
    char *at_;
    char *end_;
};

} // namespace vek
