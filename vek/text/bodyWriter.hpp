// bodyBuffer_t and bodyWriter_t: the growing output buffer of a message, and the place in it where fields and groups
// write themselves.
//
// One buffer serves a whole message. What is written can be taken back to an earlier size, which is how a pair whose
// value turns out empty disappears. Not safe for concurrent use.
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

/// Owns its storage until release().
class bodyBuffer_t {
public:
    /// Starts with room for `room` characters, at least 1. Throws std::bad_alloc, as every operation that grows does.
    explicit bodyBuffer_t(std::size_t room) : start_(static_cast<char *>(std::malloc(room))) {
        if (start_ == nullptr)
            throw std::bad_alloc();
        end_ = start_ + room;
    }
    ~bodyBuffer_t() { std::free(start_); }
    bodyBuffer_t(const bodyBuffer_t &) = delete;
    bodyBuffer_t &operator=(const bodyBuffer_t &) = delete;

    /// Hands out the storage, which the caller frees with std::free; the buffer must not be used any more.
    char *release() { return std::exchange(start_, nullptr); }

private:
    friend class bodyWriter_t;

    // Makes room for `count` characters behind the first `used`, and returns where they go.
    char *grow(std::size_t used, std::size_t count);

    char *start_;
    char *end_;
};

/// A place in a buffer, which must outlive it. Two pointers, passed by value, so that they stay in registers: whoever
/// writes takes a place and returns the one behind, which alone counts from then on.
class bodyWriter_t {
public:
    /// Nowhere.
    bodyWriter_t() = default;
    explicit bodyWriter_t(bodyBuffer_t &buffer) : at_(buffer.start_), buffer_(&buffer) {}

    std::size_t size() const { return static_cast<std::size_t>(at_ - buffer_->start_); }
    std::string_view text() const { return {buffer_->start_, size()}; }

    /// Drops everything behind the first `size` characters.
    void rewind(std::size_t size) { at_ = buffer_->start_ + size; }

    /// A place for at least `count` characters; advance() says how many were written there.
    char *room(std::size_t count) {
        if (static_cast<std::size_t>(buffer_->end_ - at_) < count)
            at_ = buffer_->grow(size(), count);
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
        to[key.size()] = equalsSign;
        at_ = to + key.size() + 1;
    }

    /// A character that was already written, to be replaced.
    char *at(std::size_t position) { return buffer_->start_ + position; }

private:
    char *at_ = nullptr;
    bodyBuffer_t *buffer_ = nullptr;
};

} // namespace vek
