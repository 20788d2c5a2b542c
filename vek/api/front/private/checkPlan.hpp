// The rules that a check goes by: one for each member that can hold what the text can't carry.
//
// Made once for each kind of structure, and constant from then on.
#pragma once

#include "vek/api/front/structureCheck.hpp"
#include "vek/records/private/layouts/findMember.hpp"
#include "vek/text/textField.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace vek {

enum class checkRuleKind_t : std::uint8_t {
    reals, ///< as many as the rule's count, one behind the other
    real32,
    flag,
    name, ///< an enumeration
    text, ///< string_t
    pointerText,
    arrayText,
    text16,
    range,
    list,
    noKey, ///< an integer that is never written
};

struct checkedList_t {
    listKind_t kind = listKind_t::growable;
    elementRun_t (*elements)(const void *value) = nullptr;
    std::size_t elementSize = 0;            ///< 0: pointers to elements
    std::optional<std::size_t> countMember; ///< where the member is that limits how many are written
    std::unique_ptr<structureCheck_t::plan_t> element;
};

/// Where a member lies in its structure, to find its name.
struct memberSpan_t {
    std::size_t offset = 0;
    std::size_t size = 0;
};

struct checkRule_t {
    checkRuleKind_t kind{};
    bool runsOn = false;              ///< a text may go on behind its array
    std::int32_t limit = 0;           ///< the names of an enumeration, or the size of a character array
    std::size_t count = 1;            ///< of reals
    std::size_t value = 0;            ///< where it is in the structure
    std::optional<std::size_t> isSet; ///< the flag that tells whether the value counts
    memberSpan_t member;
    std::unique_ptr<checkedList_t> list;
};

struct structureCheck_t::plan_t {
    const structureLayout_t *layout = nullptr; ///< null for an element that is no structure
    std::vector<checkRule_t> rules;
};

std::unique_ptr<structureCheck_t::plan_t> makeCheckPlan(void (*show)(recordVisitor_t &));

} // namespace vek
