#pragma once

// A string_t told in std::string: shared bodies, capacities and settings, with nothing clever. Tests compare the two.

#include "vek/vek_std/std_sys/vek_string.hpp"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

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

class string_t {
public:
    string_t() : body(vek::stringSettings.initialCapacity == 63 ? constant() : made("")) {}
    string_t(const std::string &text) : string_t() {
        if (!text.empty())
            body = made(text);
    }

    const std::string &text() const { return body->text; }
    std::uint64_t capacity() const { return body->capacity; }
    bool sharesWith(const string_t &other) const { return body == other.body; }

    void makePrivate() {
        if (body.use_count() > 1) // the constant body is held by its owner too
            body = made(body->text);
    }

    /// `ownSource`: the source is part of this very text, which is then read from an old body.
    void replace(std::size_t position, std::size_t removed, const std::string &source, bool ownSource = false) {
        if (source.empty() && body == constant())
            return;
        if (ownSource)
            body = made(body->text);
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

    void read(const std::string &read) {
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
    void shrink() {
        const std::uint64_t wanted = rounded(text().size());
        if (body->capacity > wanted + vek::stringSettings.slackLimit)
            body->capacity = wanted;
    }

    std::shared_ptr<body_t> body;
};

} // namespace model
