// tolerantScanner_t: the key and value pairs of one body, in text order, found while they are asked for.
//
// The pairs are views into the body. A copy of a scanner goes on from the same place on its own.
#pragma once

#include "vek/text/tolerantTokenizer.hpp"

#include <string_view>

namespace vek {

/// One pair of a body. A pair without a key or without a value has noToken there, but never in both.
struct textPair_t {
    std::string_view key;
    std::string_view value;
};

class tolerantScanner_t {
public:
    /// A body of so many characters has no pair.
    static constexpr std::size_t largestEmptyBody = 2;

    /// `body` is a whole body. Its first and last characters are taken for its braces, whatever they are; a body of
    /// one character is empty.
    explicit tolerantScanner_t(std::string_view body)
        : tokenizer_(body.size() > largestEmptyBody ? body.substr(1, body.size() - 2) : std::string_view{}) {}

    /// `pairs` are what stands between the braces.
    explicit tolerantScanner_t(const tolerantTokenizer_t &pairs) : tokenizer_(pairs) {}

    /// Reads the next pair; false when there is none left.
    bool next(textPair_t &pair) { return read(pair, false); }

    /// Reads the next pair that has a key, and skips those in front of it.
    bool nextKeyed(textPair_t &pair) { return read(pair, true); }

    /// Reads the next pair if it has exactly this key, a short cut for texts whose keys come in order.
    bool nextOf(std::string_view key, std::string_view &value) {
        if (!tokenizer_.skipKey(key))
            return false;
        value = tokenizer_.token();
        tokenizer_.delimiter();
        keyed_ = true;
        return true;
    }

    /// Whether a "=" followed any token so far. A body is positional when none did in the whole of it.
    bool isKeyed() const { return keyed_; }

    /// Whether a "=" is anywhere in the rest of the body.
    bool hasEquals() const { return tokenizer_.rest().find(equalsSign) != std::string_view::npos; }

    /// How far the body was read: behind the separators that follow the last pair.
    const char *position() const { return tokenizer_.position(); }

private:
    bool read(textPair_t &pair, bool isWithKey);

    tolerantTokenizer_t tokenizer_;
    bool keyed_ = false;
};

} // namespace vek
