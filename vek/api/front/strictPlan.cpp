// Makes the plan of a strict reading from the descriptions of a record class.
#include "vek/api/front/private/strictPlan.hpp"

#include "vek/text/textField.hpp"

#include <algorithm>
#include <utility>

namespace vek {

namespace {

// A list, and the key that says how many elements it has, share a number.
void pairCounters(strictPlan_t &plan, const std::vector<fieldDescription_t> &all) {
    int next = 0;
    for (std::size_t list = 0; list < all.size(); ++list)
        for (std::size_t key = 0; key < all.size() && all[list].list && all[list].list->countMember != nullptr; ++key)
            if (!all[key].list && all[key].member == all[list].list->countMember) {
                int &number = plan.fields[key].counter;
                number = number < 0 ? next++ : number;
                plan.fields[list].counter = number;
                if (all[list].list->room)
                    plan.fields[key].room = *all[list].list->room;
            }
}

std::unique_ptr<strictPlan_t> planOf(const textGroup_t &group) {
    auto plan = std::make_unique<strictPlan_t>();
    std::vector<fieldDescription_t> all;
    for (const textField_t *member = group.firstMember(); member != nullptr; member = member->nextMember()) {
        fieldDescription_t &description = all.emplace_back();
        member->describe(description);
        strictField_t &field = plan->fields.emplace_back();
        field.key = member->key();
        field.kind = description.kind;
        field.isList = description.list.has_value();
        if (description.list)
            field.room = description.list->room.value_or(0);
        if (const auto *text = description.as<arrayText_t>())
            field.textRoom = static_cast<std::size_t>(text->room);
        if (const auto *words = description.as<enumWords_t>())
            field.names = words->names;
        if (const auto *nested = description.as<nestedRecord_t>())
            field.plan = planOf(*nested->group);
        else if (const auto *element = description.as<elementRecord_t>())
            field.plan = makeStrictPlan(element->visit);
    }
    pairCounters(*plan, all);
    return plan;
}

} // namespace

std::unique_ptr<strictPlan_t> makeStrictPlan(void (*show)(recordVisitor_t &)) {
    struct visitor_t : recordVisitor_t {
        void visit(const recordDescription_t &record) override { plan = planOf(record.fields); }
        std::unique_ptr<strictPlan_t> plan;
    } visitor;
    show(visitor);
    return std::move(visitor.plan);
}

} // namespace vek
