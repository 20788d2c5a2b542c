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
#include <variant>
#include <vector>

namespace vek {

enum class checkRuleKind_t : std::uint8_t {
    reals,
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

/// So many reals, one behind the other.
struct realRun_t {
    std::size_t count = 1;
};

struct checkRule_t {
    checkRuleKind_t kind{};
    /// What more there is to say of the kind, as in descriptions.
    std::variant<std::monostate, realRun_t, enumWords_t, arrayText_t, std::unique_ptr<checkedList_t>> details;
    std::size_t value = 0;            ///< where it is in the structure
    std::optional<std::size_t> isSet; ///< the flag that tells whether the value counts
    memberSpan_t member;

    /// The details of this sort, which the kind must have.
    template <class Details>
    const Details &as() const {
        return *std::get_if<Details>(&details);
    }
    const checkedList_t &list() const { return *as<std::unique_ptr<checkedList_t>>(); }
};

struct structureCheck_t::plan_t {
    const structureLayout_t *layout = nullptr; ///< null for an element that is no structure
    std::vector<checkRule_t> rules;
};

std::unique_ptr<structureCheck_t::plan_t> makeCheckPlan(void (*show)(recordVisitor_t &));

} // namespace vek
