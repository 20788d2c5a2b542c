// bodyMutator_t: damaged and hostile bodies, made from good ones by a seeded generator.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace model {

class bodyMutator_t {
public:
    /// `corpus`: bodies to take pieces from.
    bodyMutator_t(std::uint64_t seed, std::vector<std::string> corpus) : random_(seed), corpus_(std::move(corpus)) {}

    /// The body after one to six changes. Contains no NUL.
    std::string mutated(std::string body);

    /// The body with any reals in place of its numbers.
    std::string withOtherReals(std::string body);

    /// A real as hosts and people write them: 1 to 20 digits, with or without a point and an exponent.
    std::string anyReal();

    /// Something that breaks or bends a body: separators, numbers at their limits, names, a stretch of another body.
    std::string piece();

    std::size_t below(std::uint64_t limit) { return static_cast<std::size_t>(random_() % limit); }

private:
    void change(std::string &body);
    /// Where a stretch of the body starts and ends: beside separators, braces or quotes.
    std::pair<std::size_t, std::size_t> stretch(const std::string &body);
    void takeKeysAway(std::string &body);
    void giveElementsKeys(std::string &body);

    std::mt19937_64 random_;
    std::vector<std::string> corpus_;
};

} // namespace model
