// Goes over a structure by the rules of its plan. Names of members are made only when there is a problem to tell.
#include "vek/api/front/structureCheck.hpp"

#include "vek/api/front/private/checkPlan.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"
#include "vek/text/valueRange.hpp"
#include "vek/text/wideStringField.hpp"
#include "vek/vek_std/std_sys/private/vek_floatingPoint.hpp"
#include "vek/vek_std/std_sys/vek_string.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace vek {

namespace {

using plan_t = structureCheck_t::plan_t;

template <class T>
const T &valueAt(const char *structure, std::size_t offset) {
    return *reinterpret_cast<const T *>(structure + offset);
}

bool isLow(char c) {
    return static_cast<unsigned char>(c) <= escapedCharacters.size();
}

// The first NUL or code 1 to 5 among so many characters, or their end.
const char *findLow(const char *text, std::size_t size) {
    return std::find_if(text, text + size, isLow);
}

std::size_t sizeOfArray(const checkRule_t &rule) {
    return static_cast<std::size_t>(rule.as<arrayText_t>().room);
}

// Whether a text may go on behind its array.
bool runsOn(const checkRule_t &rule) {
    return rule.as<arrayText_t>().reach > rule.as<arrayText_t>().room;
}

bool isEmptyElement(const plan_t &element, const char *at) {
    if (element.layout != nullptr || element.rules.empty())
        return false; // what always writes something
    const checkRule_t &rule = element.rules.front();
    if (rule.kind == checkRuleKind_t::text)
        return valueAt<string_t>(at, 0).length() == 0;
    if (rule.kind == checkRuleKind_t::arrayText)
        return *at == '\0';
    return rule.kind == checkRuleKind_t::text16 && valueAt<wideStringField_t>(at, 0).count() == 0;
}

// Whether a value at `at` is a text with nothing to tell of, as nearly all are that are not empty.
bool isFineText(const checkRule_t &rule, const char *at) {
    std::string_view text;
    if (rule.kind == checkRuleKind_t::text)
        text = valueAt<string_t>(at, 0);
    else if (rule.kind == checkRuleKind_t::arrayText && std::memchr(at, '\0', sizeOfArray(rule)))
        text = at;
    return !text.empty() && text.front() != '"' && !hasCodes(text);
}

// Whether the double at `at` is finite, told without the floating-point unit, whose environment is the host's.
bool hasFiniteBits(const char *at) {
    constexpr std::uint64_t exponent = 0x7FF0000000000000U;
    std::uint64_t bits = 0;
    std::memcpy(&bits, at, sizeof bits);
    return (bits & exponent) != exponent;
}

// Whether there is nothing to tell of the most frequent kinds of values, told in the fewest steps.
bool isFine(const checkRule_t &rule, const char *at) {
    if (rule.kind != checkRuleKind_t::reals)
        return isFineText(rule, at);
    const char *const end = at + rule.as<realRun_t>().count * sizeof(double);
    while (at != end && hasFiniteBits(at))
        at += sizeof(double);
    return at == end;
}

std::string shown(double value) {
    char text[realRoom];
    return {text, writeReal(value, text)};
}

// An end of a range as it is written, but for the sign of a zero, which may go.
std::string shownEnd(double value) {
    std::string text = shown(value);
    return text == "-0.000000" ? text.substr(1) : text;
}

class checkRun_t {
public:
    checkRun_t(bool onlyFirst, structureCheck_t::take_t take, void *taker)
        : onlyFirst_(onlyFirst), take_(take), taker_(taker) {}

    /// An element that is gone over, and the list that it is in.
    struct inList_t {
        const plan_t *plan = nullptr;
        const checkRule_t *list = nullptr;
        std::int32_t index = 0;
        const inList_t *outer = nullptr;
    };

    /// False when no more is to be found.
    bool goOver(const plan_t &plan, const char *structure, const inList_t *outer, std::size_t firstRule = 0) {
        for (std::size_t i = firstRule; i < plan.rules.size(); ++i) {
            const checkRule_t &rule = plan.rules[i];
            if (!isFine(rule, structure + rule.value) && !goOver({plan, rule, outer}, structure))
                return false;
        }
        return true;
    }

private:
    struct where_t {
        const plan_t &plan;
        const checkRule_t &rule;
        const inList_t *outer;
    };

    bool goOver(const where_t &where, const char *structure) {
        const checkRule_t &rule = where.rule;
        switch (rule.kind) {
        case checkRuleKind_t::reals:
            return checkReals(where, structure);
        case checkRuleKind_t::real32: {
            const float value = valueAt<float>(structure, rule.value);
            return std::isfinite(value) || tellReal(where, static_cast<double>(value));
        }
        case checkRuleKind_t::flag: {
            const std::uint8_t value = valueAt<std::uint8_t>(structure, rule.value);
            return value <= 1 || tell(where, problemCode_t::unknownFlag,
                                      " is " + std::to_string(value) + ", but a flag is 0 or 1 and would be read as 1");
        }
        case checkRuleKind_t::name:
            return checkName(where, structure);
        case checkRuleKind_t::text: {
            const auto &text = valueAt<string_t>(structure, rule.value);
            return checkText(where, text.c_str(), text.length());
        }
        case checkRuleKind_t::pointerText: {
            const char *const text = valueAt<const char *>(structure, rule.value);
            return text == nullptr || checkText(where, text, std::strlen(text));
        }
        case checkRuleKind_t::arrayText:
            return checkText(where, structure + rule.value, sizeOfArray(rule));
        case checkRuleKind_t::text16:
            return valueAt<wideStringField_t>(structure, rule.value).isWhole() ||
                   tell(
                       where, problemCode_t::missingCharacter,
                       " has a character that was read from an empty text and would be left out: assign the text anew");
        case checkRuleKind_t::range:
            return checkRange(where, valueAt<valueRange_t>(structure, rule.value));
        case checkRuleKind_t::noKey: {
            const std::int32_t value = valueAt<std::int32_t>(structure, where.rule.value);
            return value == 0 || tell(where, problemCode_t::noKey,
                                      " is " + std::to_string(value) +
                                          ", but no key carries it and it would be read as 0: leave it 0");
        }
        case checkRuleKind_t::list:
            break;
        }
        return checkList(where, structure);
    }

    bool checkReals(const where_t &where, const char *structure) {
        for (std::size_t i = 0; i < where.rule.as<realRun_t>().count; ++i) {
            const double value = valueAt<double>(structure, where.rule.value + i * sizeof value);
            if (!std::isfinite(value) && !tellReal(where, value, i))
                return false;
        }
        return true;
    }

    bool checkName(const where_t &where, const char *structure) {
        if (where.rule.isSet && valueAt<std::uint8_t>(structure, *where.rule.isSet) == 0)
            return true;
        const std::int32_t value = valueAt<std::int32_t>(structure, where.rule.value);
        const auto names = static_cast<std::int32_t>(where.rule.as<enumWords_t>().names.size());
        return (value >= 0 && value < names) || tellName(where, "", value, names);
    }

    bool checkText(const where_t &where, const char *text, std::size_t size) {
        const char *const low = findLow(text, size);
        const bool isArray = where.rule.kind == checkRuleKind_t::arrayText;
        const bool isTooLong = isArray && low == text + size && !runsOn(where.rule);
        const bool endsHere = low == text + size || (isArray && *low == '\0');
        if (*text != '"' && !isTooLong && endsHere) [[likely]]
            return true;
        return tellText(where, {text, size}, isTooLong, endsHere ? nullptr : low);
    }

    bool tellText(const where_t &where, std::string_view text, bool isTooLong, const char *low) {
        if (text.starts_with('"') &&
            !tell(where, problemCode_t::leadingQuote,
                  " begins with a quotation mark and would be read as a quoted text: begin it otherwise"))
            return false;
        if (isTooLong && !tell(where, problemCode_t::textTooLong,
                               " fills its " + std::to_string(sizeOfArray(where.rule)) +
                                   " characters and would lose the last: leave room for a NUL"))
            return false;
        if (low == nullptr)
            return true;
        const std::string place = std::to_string(low - text.data());
        if (*low == '\0')
            return tell(where, problemCode_t::nulInText,
                        " has a NUL at position " + place + ", where its text would end: cut it there");
        return tell(where, problemCode_t::reservedCode,
                    " has the control code " + std::to_string(*low) + " at position " + place +
                        ", which would be read as '" + unescaped(*low) + "': leave it out");
    }

    bool checkRange(const where_t &where, const valueRange_t &range) {
        if (range.isEmpty())
            return true;
        constexpr std::int32_t kinds = VEK_RANGE_CONTINUOUS + 1;
        if ((range.kind < 0 || range.kind >= kinds) && !tellName(where, ".kind", range.kind, kinds))
            return false;
        for (std::int32_t i = 0; i < range.count(); ++i)
            if (!std::isfinite(range.valueAt(i)) && !tellReal(where, range.valueAt(i), 0, i))
                return false;
        return range.kind == valueRange_t::discrete || checkEnds(where, range);
    }

    // A continuous range is written as its ends, with six decimals.
    bool checkEnds(const where_t &where, const valueRange_t &range) {
        const auto isWritten = [](double end, double written) {
            return !(end < written) || shownEnd(end) == shownEnd(written);
        };
        const double smallest = range.minimum();
        const double largest = range.maximum();
        constexpr std::int32_t ends = 2;
        const char *loss = nullptr;
        if (range.count() > ends)
            loss = " values, but its smallest and its largest alone are written: keep these two, or make it discrete";
        else if (range.count() < ends)
            loss = " value, which would be written as both its ends: give it two, or make it discrete";
        if (loss != nullptr &&
            !tell(where, problemCode_t::rangeNotKept, " is continuous with " + std::to_string(range.count()) + loss))
            return false;
        if (loss == nullptr && !isWritten(smallest, range.valueAt(0)) &&
            !tell(where, problemCode_t::rangeNotKept,
                  " is continuous with the larger end first, which would be written second: swap them"))
            return false;
        const bool reachesFloor =
            std::any_of(range.begin(), range.end(), [&](double value) { return isWritten(value, largest); });
        return reachesFloor || tell(where, problemCode_t::rangeNotKept,
                                    " is continuous and ends below " + shown(largest) +
                                        ", which would be written as its end: make it discrete");
    }

    bool checkList(const where_t &where, const char *structure) {
        const checkedList_t &list = where.rule.list();
        const elementRun_t run = list.elements(structure + where.rule.value);
        std::int32_t count = run.count;
        if (list.countMember) {
            const std::int32_t said = valueAt<std::int32_t>(structure, *list.countMember);
            if (!checkCount(where, said, run.count))
                return false;
            count = std::min(count, said);
        }
        if (list.element->rules.empty() && list.kind != listKind_t::container)
            return true;
        const checkRule_t *const text = list.element->layout == nullptr && list.elementSize != 0 && count > 0
                                            ? &list.element->rules.front()
                                            : nullptr;
        for (std::int32_t i = 0; i < count; ++i)
            if ((text == nullptr || !isFineText(*text, elementAt(list, run, i))) && !checkElement(where, run, i, count))
                return false;
        return true;
    }

    bool checkCount(const where_t &where, std::int32_t said, std::int32_t there) {
        const checkedList_t &list = where.rule.list();
        if (list.kind == listKind_t::array)
            return said <= there ||
                   tell(countIn(where), problemCode_t::countAboveRoom,
                        " is " + std::to_string(said) + ", there is room for " + std::to_string(there));
        return said >= there || there == 0 ||
               tell(where, problemCode_t::surplusElements,
                    " has " + std::to_string(there) + " elements, but " + countIn(where) + " is " +
                        std::to_string(said) + ", and no more are written: make the two agree");
    }

    static const char *elementAt(const checkedList_t &list, const elementRun_t &run, std::int32_t index) {
        const auto *first = static_cast<const char *>(run.first);
        if (list.elementSize != 0)
            return first + static_cast<std::size_t>(index) * list.elementSize;
        const char *element = nullptr;
        std::memcpy(&element, first + static_cast<std::size_t>(index) * sizeof element, sizeof element);
        return element;
    }

    bool checkElement(const where_t &where, const elementRun_t &run, std::int32_t index, std::int32_t count) {
        const checkedList_t &list = where.rule.list();
        const char *const element = elementAt(list, run, index);
        const inList_t at{&where.plan, &where.rule, index, where.outer};
        if (element == nullptr)
            return tell(pathOf(&at), problemCode_t::nullItem,
                        " is a null pointer and would be read as an item of its own: add an item or none");
        if (isEmptyElement(*list.element, element)) {
            // Behind the last text of an array there is nothing that could move up.
            for (std::int32_t later = index + 1; list.kind == listKind_t::array; ++later)
                if (later == count)
                    return true;
                else if (!isEmptyElement(*list.element, elementAt(list, run, later)))
                    break;
            return tell(pathOf(&at), problemCode_t::emptyElement,
                        " is empty, which has no place in a list: the later ones would move up; remove it");
        }
        return goOver(*list.element, element, &at);
    }

    static std::string nameOf(const plan_t &plan, std::size_t offset, std::size_t size) {
        foundMember_t found;
        if (plan.layout != nullptr)
            findMember(*plan.layout, offset, size, found);
        return found.path;
    }

    // The elements that lead to a value, up to its list's index: "punchSysName[2]".
    static std::string pathOf(const inList_t *at) {
        if (at == nullptr)
            return {};
        return joined(pathOf(at->outer), nameOf(*at->plan, at->list->member.offset, at->list->member.size)) + '[' +
               std::to_string(at->index) + ']';
    }
    static std::string joined(const std::string &path, const std::string &name) {
        return path.empty() || name.empty() ? path + name : path + '.' + name;
    }
    static std::string pathOf(const where_t &where, std::size_t ordinal = 0) {
        return joined(pathOf(where.outer),
                      nameOf(where.plan, where.rule.member.offset + ordinal * sizeof(double), where.rule.member.size));
    }
    static std::string countIn(const where_t &where) {
        return joined(pathOf(where.outer),
                      nameOf(where.plan, where.rule.list().countMember.value(), sizeof(std::int32_t)));
    }

    bool tellReal(const where_t &where, double value, std::size_t ordinal = 0, std::int32_t index = -1) {
        return tell(pathOf(where, ordinal) + (index < 0 ? "" : '[' + std::to_string(index) + ']'),
                    problemCode_t::notFinite, " is " + shown(value) + " and would be read as 0: give it a number");
    }
    bool tellName(const where_t &where, const char *member, std::int32_t value, std::int32_t count) {
        return tell(pathOf(where) + member, problemCode_t::unnamedValue,
                    " is " + std::to_string(value) + " and would be read as 0: the values with a name are 0 to " +
                        std::to_string(count - 1));
    }
    bool tell(const where_t &where, problemCode_t code, const std::string &why) {
        return tell(pathOf(where), code, why);
    }
    bool tell(const std::string &path, problemCode_t code, const std::string &why) {
        take_(taker_, code, (path + why).c_str(), path.c_str());
        return !onlyFirst_;
    }

    bool onlyFirst_;
    structureCheck_t::take_t take_;
    void *taker_;
};

[[gnu::noinline]] bool isKeptFrom(const plan_t &plan, std::size_t firstRule, const char *structure) {
    const floatingPointGuard_t guard; // comparing reals sets flags, too
    checkRun_t run(
        true, [](void *, problemCode_t, const char *, const char *) {}, nullptr);
    return run.goOver(plan, structure, nullptr, firstRule);
}

} // namespace

structureCheck_t::structureCheck_t(void (*show)(recordVisitor_t &)) : plan_(makeCheckPlan(show).release()) {}

structureCheck_t::~structureCheck_t() {
    delete plan_;
}

// A run is begun only at the first value that takes more to tell.
bool structureCheck_t::isKept(const void *structure) const {
    const auto *const start = static_cast<const char *>(structure);
    for (const checkRule_t &rule : plan_->rules)
        if (!isFine(rule, start + rule.value))
            return isKeptFrom(*plan_, static_cast<std::size_t>(&rule - plan_->rules.data()), start);
    return true;
}

void structureCheck_t::tell(const void *structure, bool onlyFirst, take_t take, void *taker) const {
    const floatingPointGuard_t guard;
    checkRun_t(onlyFirst, take, taker).goOver(*plan_, static_cast<const char *>(structure), nullptr);
}

} // namespace vek
