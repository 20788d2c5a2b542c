// What a strict reading goes by: the keys of a record in their order, and what may stand behind each.
//
// Made once for each kind of structure, and constant from then on.
#pragma once

#include "vek/api/front/strictReading.hpp"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace vek {

struct strictField_t {
    std::string_view key;
    fieldKind_t kind = fieldKind_t::record; ///< of a list, that of its elements
    bool isList = false;
    std::int32_t room = 0;                         ///< of a list, its elements; 0: any number
    std::size_t textRoom = 0;                      ///< with the NUL; 0: any length
    int counter = -1;                              ///< of a list and of the key that counts it: the pair's number
    std::span<const char *const> names;            ///< of an enumeration
    std::unique_ptr<strictReading_t::plan_t> plan; ///< of a record, or of a list's elements
};

struct strictReading_t::plan_t {
    std::vector<strictField_t> fields;
};

using strictPlan_t = strictReading_t::plan_t;

std::unique_ptr<strictPlan_t> makeStrictPlan(void (*show)(recordVisitor_t &));

} // namespace vek
