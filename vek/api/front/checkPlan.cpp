// Makes the rules of a check from the descriptions of a record class.
#include "vek/api/front/private/checkPlan.hpp"

#include "vek/text/enumField.hpp"

#include <algorithm>
#include <optional>

namespace vek {

namespace {

// Calls `use` with the description of the record class that `show` shows.
template <class Use>
void withRecord(void (*show)(recordVisitor_t &), const Use &use) {
    struct visitor_t : recordVisitor_t {
        explicit visitor_t(const Use &wanted) : use(wanted) {}
        void visit(const recordDescription_t &record) override { use(record); }
        const Use &use;
    } visitor(use);
    show(visitor);
}

std::size_t distance(const void *from, const void *to) {
    return static_cast<std::size_t>(static_cast<const char *>(to) - static_cast<const char *>(from));
}

// The type of a range has no rule of its own: it is written only with values, so it is checked with them.
bool isRangeType(const fieldDescription_t &field) {
    return field.as<enumWords_t>()->names.data() == rangeTypeNames.words().names.data();
}

// Nothing: any value comes back.
std::optional<checkRuleKind_t> kindOf(const fieldDescription_t &field) {
    switch (field.kind) {
    case fieldKind_t::float64:
        return checkRuleKind_t::reals;
    case fieldKind_t::float32:
        return checkRuleKind_t::real32;
    case fieldKind_t::boolean:
        return checkRuleKind_t::flag;
    case fieldKind_t::enumeration:
        return isRangeType(field) ? std::nullopt : std::optional(checkRuleKind_t::name);
    case fieldKind_t::text:
        return field.as<arrayText_t>() != nullptr     ? checkRuleKind_t::arrayText
               : field.as<pointerText_t>() != nullptr ? checkRuleKind_t::pointerText
                                                      : checkRuleKind_t::text;
    case fieldKind_t::text16:
        return checkRuleKind_t::text16;
    case fieldKind_t::record:
    case fieldKind_t::integer32:
    case fieldKind_t::integer16:
    case fieldKind_t::pixels:
        break;
    }
    return std::nullopt;
}

class planMaker_t {
public:
    planMaker_t(structureCheck_t::plan_t &plan, const void *address) : plan_(plan), address_(address) {}

    void addMembers(const textGroup_t &group) {
        for (const textField_t *field = group.firstMember(); field != nullptr; field = field->nextMember()) {
            fieldDescription_t description;
            field->describe(description);
            if (const auto *nested = description.as<nestedRecord_t>())
                addMembers(*nested->group);
            else
                add(description);
        }
    }

    // Integers that no field is bound to; behind the others, since they are nowhere in the text.
    void addUnwritten(const structureLayout_t &layout) {
        if (layout.base == nullptr)
            return; // what a message is, or no structure of a message
        addUnwritten(*layout.base);
        for (const memberLayout_t &member : layout.members) {
            const memberSpan_t span{member.offset.here(), member.size.here()};
            const auto isIn = [&span](std::size_t bound) { return bound - span.offset < span.size; };
            if (member.type != "int32_t" || std::any_of(bound_.begin(), bound_.end(), isIn))
                continue;
            checkRule_t &rule = plan_.rules.emplace_back();
            rule.kind = checkRuleKind_t::noKey;
            rule.value = span.offset;
            rule.member = span;
        }
    }

private:
    void add(const fieldDescription_t &field) {
        checkRule_t rule;
        rule.value = distance(address_, field.value);
        rule.member = {distance(address_, field.member), field.memberSize};
        bound_.push_back(rule.member.offset);
        if (field.isList(listKind_t::range)) {
            rule.kind = checkRuleKind_t::range;
        } else if (field.list) {
            makeList(rule, field);
        } else if (const auto kind = kindOf(field)) {
            rule.kind = *kind;
            setDetails(rule, field);
            if (field.isSet != nullptr)
                rule.isSet = distance(address_, field.isSet);
        } else {
            return;
        }
        if (!joinsLast(rule))
            plan_.rules.push_back(std::move(rule));
    }

    static void setDetails(checkRule_t &rule, const fieldDescription_t &field) {
        if (rule.kind == checkRuleKind_t::reals)
            rule.details = realRun_t();
        else if (const auto *words = field.as<enumWords_t>())
            rule.details = *words;
        else if (const auto *text = field.as<arrayText_t>())
            rule.details = *text;
    }

    // Reals that lie behind one another have one rule.
    bool joinsLast(const checkRule_t &rule) {
        if (rule.kind != checkRuleKind_t::reals || plan_.rules.empty())
            return false;
        checkRule_t &last = plan_.rules.back();
        auto *run = std::get_if<realRun_t>(&last.details);
        if (run == nullptr || last.value + run->count * sizeof(double) != rule.value)
            return false;
        ++run->count;
        return true;
    }

    void makeList(checkRule_t &rule, const fieldDescription_t &field) {
        rule.kind = checkRuleKind_t::list;
        checkedList_t &list = *rule.details.emplace<std::unique_ptr<checkedList_t>>(std::make_unique<checkedList_t>());
        list.kind = field.list->kind;
        list.elements = field.list->elements;
        list.elementSize = field.list->elementSize;
        if (field.list->countMember != nullptr)
            list.countMember = distance(address_, field.list->countMember);
        if (const auto *record = field.as<elementRecord_t>()) {
            list.element = makeCheckPlan(record->visit);
            return;
        }
        list.element = std::make_unique<structureCheck_t::plan_t>();
        if (const auto kind = kindOf(field)) {
            checkRule_t element;
            element.kind = *kind;
            setDetails(element, field);
            list.element->rules.push_back(std::move(element));
        }
    }

    structureCheck_t::plan_t &plan_;
    const void *address_;
    std::vector<std::size_t> bound_; // where members with a key lie
};

} // namespace

std::unique_ptr<structureCheck_t::plan_t> makeCheckPlan(void (*show)(recordVisitor_t &)) {
    auto plan = std::make_unique<structureCheck_t::plan_t>();
    withRecord(show, [&plan](const recordDescription_t &record) {
        plan->layout = layoutNamed(record.structure);
        planMaker_t maker(*plan, record.address);
        maker.addMembers(record.fields);
        if (plan->layout != nullptr)
            maker.addUnwritten(*plan->layout);
    });
    return plan;
}

} // namespace vek
