// structureValues_t: the values of any message structure, by its record class's description: shown as text, or put to
// odd ones.
#pragma once

#include "vek/text/description.hpp"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace vek {
class textGroup_t;
} // namespace vek

namespace vek::test {

class structureValues_t {
public:
    /// The structure, which must outlive this, is of the record class that `show` shows.
    structureValues_t(void (*show)(recordVisitor_t &), void *structure);

    /// Another structure of the same kind.
    void moveTo(void *structure);

    /// Every value, a line each.
    std::string shown() const;

    /// Puts one value, chosen by chance, to what hosts may have there: no number, no name, no terminator, null items,
    /// more or fewer elements.
    void changeOne(std::minstd_rand &random);

private:
    void addMembers(const textGroup_t &group);
    void addInteger(const std::int32_t &member);

    const char *base_;
    const char *declared_ = nullptr;
    std::vector<fieldDescription_t> fields_;
};

} // namespace vek::test
