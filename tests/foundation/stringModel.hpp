#pragma once

// A string_t told in std::string: shared bodies, capacities and settings, with nothing clever. Tests compare the two.

#include "vek/vek_std/std_sys/vek_string.hpp"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <string_view>

namespace model {

inline std::uint64_t rounded(std::uint64_t n) {
    const std::uint64_t initial = vek::stringSettings.initialCapacity;
    const std::uint64_t step = std::max<std::uint64_t>(vek::stringSettings.growthStep, 1);
    std::uint64_t capacity = initial;
    while (capacity < n)
        capacity += step;
    return capacity;
}

struct body_t {
    std::string text;
    std::uint64_t capacity;
};

inline char upper(char c) {
    return static_cast<char>(std::toupper(c));
}
inline char lower(char c) {
    return static_cast<char>(std::tolower(c));
}

class string_t {
public:
    string_t() : body(vek::stringSettings.initialCapacity == 63 ? constant() : made("")) {}
    string_t(const std::string &text) : string_t() {
        if (!text.empty())
            body = made(text);
    }
    string_t(std::string_view text) : string_t(std::string(text)) {}
    string_t(const char *text, std::size_t n) : string_t(std::string(text, n)) {}
    string_t(std::size_t n, char c) : string_t(std::string(n, c)) {}

    const std::string &text() const { return body->text; }
    const char *c_str() const { return body->text.c_str(); }
    std::uint64_t capacity() const { return body->capacity; }
    bool sharesWith(const string_t &other) const { return body == other.body; }

    string_t deepCopy() const { return text(); }
    string_t operator+(const char *other) const { return text() + other; }
    void append(const char *other) { append(std::string_view(other)); }
    void append(std::string_view other) { replace(text().size(), 0, other.data(), other.size()); }
    operator std::string_view() const { return text(); }
    void prepend(std::nullptr_t, std::size_t n) { insert(0, 0, std::string(n, ' ')); }
    void toLower() { transform(0, text().size(), lower); }

    char &operator[](std::int32_t i) {
        makePrivate();
        return body->text[static_cast<std::size_t>(i)];
    }

    /// A source that is part of this very text is read from an old body.
    void replace(std::size_t position, std::size_t removed, const char *source, std::size_t n) {
        const bool isOwn = source >= c_str() && source <= c_str() + text().size();
        const std::string copy(source, n);
        if (isOwn && !isConstant(copy))
            body = made(text());
        insert(position, removed, copy);
    }

    struct view_t {
        string_t *owner;
        std::size_t start, extent;

        operator string_t() const { return owner->text().substr(start, extent); }
        void operator=(const char *text) {
            owner->insert(start, extent, text);
            extent = std::string(text).size();
        }
        void operator=(const view_t &other) { // NOLINT(bugprone-unhandled-self-assignment): std::string's matter
            owner->replace(start, extent, other.owner->c_str() + other.start, other.extent);
        }
        void toLower() const { owner->transform(start, extent, lower); }
        void toUpper() const { owner->transform(start, extent, upper); }
    };
    view_t operator()(std::ptrdiff_t start, std::size_t extent) {
        return {this, static_cast<std::size_t>(start), extent};
    }

    void readToDelim(std::istream &stream, char delimiter) {
        std::string read;
        std::getline(stream, read, delimiter);
        makePrivate();
        body->text = read;
        while (body->capacity < read.size())
            body->capacity = rounded(body->capacity + 64);
        shrink();
    }

private:
    static std::shared_ptr<body_t> made(const std::string &text) {
        return std::make_shared<body_t>(body_t{text, rounded(text.size())});
    }
    static const std::shared_ptr<body_t> &constant() {
        static const auto body = std::make_shared<body_t>(body_t{"", 63});
        return body;
    }
    bool isConstant(const std::string &source) const { return source.empty() && body == constant(); }

    void makePrivate() {
        if (body.use_count() > 1) // the constant body is held by its owner too
            body = made(body->text);
    }
    void insert(std::size_t position, std::size_t removed, const std::string &source) {
        if (isConstant(source))
            return;
        makePrivate();
        body->text.replace(std::min(position, text().size()), removed, source);
        body->capacity = std::max(body->capacity, rounded(text().size()));
        shrink();
    }
    template <class Map>
    void transform(std::size_t position, std::size_t count, Map map) {
        if (count == 0)
            return;
        makePrivate();
        const auto begin = body->text.begin() + static_cast<std::ptrdiff_t>(position);
        std::transform(begin, begin + static_cast<std::ptrdiff_t>(count), begin, map);
    }
    void shrink() {
        const std::uint64_t wanted = rounded(text().size());
        if (body->capacity > wanted + vek::stringSettings.slackLimit)
            body->capacity = wanted;
    }

    std::shared_ptr<body_t> body;
};

} // namespace model
