// Values are compared as a person reads them; as numbers when both sides are numbers.
#include "vek/inspect/filter/expression.hpp"

#include "vek/inspect/filter/private/regex.hpp"
#include "vek/inspect/message/valueAt.hpp"
#include "vek/text/numberText.hpp"

#include <utility>

namespace vek::inspect {

namespace {

using condition_t = expression_t::condition_t;
using comparison_t = expression_t::comparison_t;

bool isStep(const tree_t &tree, const node_t &node, const expression_t::step_t &step, std::string &room) {
    const bool isElement = node.index >= 0 && node.use != pairUse_t::duplicate;
    if (step.name.empty())
        return isElement && (step.isAny || node.index == step.index);
    if (isElement)
        return false;
    room.clear();
    appendName(room, tree, node);
    return room == step.name;
}

template <typename value_t>
bool isSo(comparison_t comparison, const value_t &left, const value_t &right) {
    switch (comparison) {
    case comparison_t::different:
        return left != right;
    case comparison_t::less:
        return left < right;
    case comparison_t::atMost:
        return left <= right;
    case comparison_t::greater:
        return left > right;
    case comparison_t::atLeast:
        return left >= right;
    default:
        return left == right;
    }
}

bool isTrueOf(const condition_t &condition, const std::string &value) {
    if (condition.comparison == comparison_t::contains)
        return value.find(condition.value) != std::string::npos;
    if (condition.comparison == comparison_t::matches)
        return condition.regex->isIn(value);
    if (condition.number)
        if (const std::optional<double> number = asNumber(value))
            return isSo(condition.comparison, *number, *condition.number);
    return isSo(condition.comparison, value, condition.value);
}

bool holdsBelow(const condition_t &condition, const tree_t &tree, const node_t &node, std::size_t step,
                std::string &room) {
    if (step == condition.steps.size()) {
        if (condition.comparison == comparison_t::isThere)
            return true;
        return node.hasValue && isTrueOf(condition, valueOf(tree, node));
    }
    for (const node_t &child : tree.children(node)) {
        if (!isStep(tree, child, condition.steps[step], room))
            continue;
        if (holdsBelow(condition, tree, child, step + 1, room))
            return true;
        if (!condition.steps[step].isAny) // there is no second one of a name
            return false;
    }
    return false;
}

bool holds(const condition_t &condition, const tree_t &tree) {
    std::string room;
    if (!condition.steps.empty())
        return holdsBelow(condition, tree, tree.body(), 0, room);
    const std::optional<std::string> value = valueAt(tree, condition.path);
    return value && (condition.comparison == comparison_t::isThere || isTrueOf(condition, *value));
}

} // namespace

std::optional<double> asNumber(std::string_view text) {
    std::size_t at = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    const auto digits = [&] {
        const std::size_t start = at;
        while (at < text.size() && isDigit(text[at]))
            ++at;
        return at - start;
    };
    std::size_t count = digits();
    if (at < text.size() && text[at] == '.') {
        ++at;
        count += digits();
    }
    if (count > 0 && at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        ++at;
        at += at < text.size() && (text[at] == '-' || text[at] == '+') ? 1 : 0;
        count = digits();
    }
    return count > 0 && at == text.size() ? std::optional(readReal(text)) : std::nullopt;
}

std::shared_ptr<const expression_t::regex_t> expression_t::regex_t::of(const std::string &text) {
    constexpr auto flags = std::regex::ECMAScript | std::regex::optimize;
    try {
        std::regex compiled(text, flags);
#ifdef __GLIBCXX__
        // Else it goes down a level for each character, and may run out of stack or of time. Looked for from each
        // character on it still takes the square of a value's length: so it begins with anything, and is tried once.
        compiled.assign("[\\s\\S]*(?:" + text + ")", flags | std::regex_constants::__polynomial);
        return std::make_shared<const regex_t>(regex_t{std::move(compiled), std::regex_constants::match_continuous});
#else
        return std::make_shared<const regex_t>(regex_t{std::move(compiled), std::regex_constants::match_default});
#endif
    } catch (const std::regex_error &) {
        return nullptr;
    }
}

bool expression_t::holds(const tree_t &tree, const term_t &term) const {
    using enum term_t::kind_t;
    switch (term.kind) {
    case condition:
        return inspect::holds(conditions_[term.left], tree);
    case negation:
        return !holds(tree, terms_[term.left]);
    case conjunction:
        return holds(tree, terms_[term.left]) && holds(tree, terms_[term.right]);
    default:
        return holds(tree, terms_[term.left]) || holds(tree, terms_[term.right]);
    }
}

} // namespace vek::inspect
