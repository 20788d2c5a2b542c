// Goes over a body token by token, by the keys of its plan.
#include "vek/api/front/strictReading.hpp"

#include "vek/api/front/private/strictPlan.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"
#include "vek/text/tolerantTokenizer.hpp"
#include "vek/vek_std/std_sys/private/vek_floatingPoint.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace vek {

namespace {

// The keys and elements around a value.
struct step_t {
    const step_t *outer;
    std::string_view key;
    std::int32_t index = -1;

    std::string path() const {
        std::string path = outer != nullptr ? outer->path() : std::string();
        if (index >= 0)
            return path + '[' + std::to_string(index) + ']';
        return (path.empty() ? path : path + '.').append(key);
    }
};

bool isGroup(std::string_view value) {
    return value.size() >= 2 && value.front() == openBrace && value.back() == closeBrace;
}

std::string shown(std::string_view value) {
    constexpr std::size_t most = 40;
    std::string text = "\"";
    for (const char c : value.substr(0, most))
        text += static_cast<unsigned char>(c) < 0x20 ? '?' : c;
    return text + (value.size() > most ? "...\"" : "\"");
}

// What stands in quotes is given without them.
struct token_t {
    std::string_view value;
    const char *at; // the first character, a quote too
    bool isQuoted;
};

// Every token as a reader takes it, up to the first problem: then the functions return false.
class strictRun_t {
public:
    using tell_t = void (*)(void *taker, problemCode_t code, const char *at, const std::string &why,
                            const std::string &path);
    strictRun_t(tell_t take, void *taker) : tell_(take), taker_(taker) {}

    bool body(const strictPlan_t &plan, std::string_view body) const {
        if (body.empty())
            return true;
        bool isEmpty = true;
        return isGroup(body) ? record(plan, body, nullptr, isEmpty)
                             : tell(problemCode_t::noBraces, body.data(), nullptr,
                                    "one blank, and a body in braces with nothing behind it, should stand here");
    }

private:
    // A record's body while it is read.
    struct group_t {
        const strictPlan_t &plan;
        const step_t *outer;
        tolerantTokenizer_t tokens;
        std::vector<const char *> values{};  // of each field: where it stands
        std::vector<std::int32_t> numbers{}; // of each field: its elements or, of an integer, its value
    };

    // Where a "=" stands behind any value, or in front, all have keys; else they are told apart by their order.
    static bool hasKeys(tolerantTokenizer_t tokens) {
        for (; !tokens.atEnd(); tokens.token())
            if (tokens.delimiter())
                return true;
        return false;
    }

    bool record(const strictPlan_t &plan, std::string_view body, const step_t *outer, bool &isEmpty) const {
        using enum problemCode_t;
        group_t group{plan, outer, tolerantTokenizer_t(body.substr(1, body.size() - 2))};
        group.values.resize(plan.fields.size());
        group.numbers.resize(plan.fields.size());
        const bool isKeyed = hasKeys(group.tokens);
        for (std::size_t ordinal = 0;; ++ordinal) {
            const char *const front = group.tokens.position();
            if (group.tokens.delimiter())
                return tell(unclear, front, outer, "a \"=\" stands where a key should be");
            if (group.tokens.atEnd())
                break;
            if (!isKeyed && group.tokens.position() - front > (ordinal == 0 ? 0 : 1))
                return tell(unclear, front, outer, "a value is missing between the separators, the later ones move up");
            token_t first{};
            if (!token(group.tokens, outer, first) ||
                !(isKeyed ? pair(group, first, isEmpty) : valueInOrder(group, first, ordinal, isEmpty)))
                return false;
        }
        return checkCounters(group);
    }

    bool pair(group_t &group, const token_t &key, bool &isEmpty) const {
        using enum problemCode_t;
        const std::vector<strictField_t> &fields = group.plan.fields;
        tolerantTokenizer_t &tokens = group.tokens;
        if (tokens.atEnd() || *tokens.position() != equalsSign)
            return tell(key.value == "}" ? unbalanced : strayValue, key.at, group.outer,
                        shown(key.value) + " has no key and would be ignored");
        const auto field =
            std::find_if(fields.begin(), fields.end(), [&](const strictField_t &one) { return one.key == key.value; });
        const step_t step{group.outer, key.value};
        if (field == fields.end())
            return tell(unknownKey, key.at, &step, "there is no such key, it would be ignored");
        if (group.values[static_cast<std::size_t>(field - fields.begin())] != nullptr)
            return tell(duplicateKey, key.at, &step, "the key stood there before, it would be ignored");
        const char *const equals = tokens.position();
        tokens.delimiter();
        const std::string_view between(equals, static_cast<std::size_t>(tokens.position() - equals));
        if (between.find_first_not_of(equalsSign) != std::string_view::npos || tokens.atEnd())
            return tell(unclear, equals, &step, "the key has no value, the next token would be taken for it");
        token_t value{};
        if (!token(tokens, &step, value))
            return false;
        if (!tokens.atEnd() && *tokens.position() == equalsSign)
            return tell(unclear, tokens.position(), &step, "a \"=\" stands behind the value");
        return valueOf(group, *field, value, step, isEmpty);
    }

    bool valueInOrder(group_t &group, const token_t &value, std::size_t ordinal, bool &isEmpty) const {
        if (ordinal >= group.plan.fields.size())
            return tell(problemCode_t::strayValue, value.at, group.outer,
                        shown(value.value) + " stands behind the last value and would be ignored");
        const strictField_t &field = group.plan.fields[ordinal];
        return valueOf(group, field, value, {group.outer, field.key}, isEmpty);
    }

    bool valueOf(group_t &group, const strictField_t &field, const token_t &value, const step_t &step,
                 bool &isEmpty) const {
        const auto place = static_cast<std::size_t>(&field - group.plan.fields.data());
        group.values[place] = value.at;
        std::int32_t &number = group.numbers[place];
        if (!(field.isList ? list(field, value, step, number, isEmpty) : scalar(field, value, step, number, isEmpty)))
            return false;
        return field.isList || field.counter < 0 || field.room == 0 || number <= field.room ||
               tell(problemCode_t::unclear, value.at, &step,
                    "there is room for " + std::to_string(field.room) + " elements alone");
    }

    // The next token, with a separator or the end behind it.
    bool token(tolerantTokenizer_t &tokens, const step_t *step, token_t &token) const {
        using enum problemCode_t;
        token.at = tokens.position();
        token.isQuoted = *token.at == '"';
        if (token.isQuoted && tokens.rest().find('"', 1) == std::string_view::npos)
            return tell(unbalanced, token.at, step, "the quotation mark has no closing one");
        token.value = tokens.token();
        if (token.value.data() == nullptr)
            return tell(unbalanced, token.at, step, "the opening brace has no closing one, what follows would be lost");
        return tokens.atEnd() || isSeparator(*tokens.position()) ||
               tell(unclear, tokens.position(), step, "a separator is missing");
    }

    bool checkCounters(const group_t &group) const {
        const std::vector<strictField_t> &fields = group.plan.fields;
        for (std::size_t list = 0; list < fields.size(); ++list)
            for (std::size_t key = 0; fields[list].isList && fields[list].counter >= 0 && key < fields.size(); ++key) {
                const bool isItsCount = !fields[key].isList && fields[key].counter == fields[list].counter;
                if (!isItsCount || group.numbers[key] >= group.numbers[list])
                    continue;
                const step_t step{group.outer, fields[list].key};
                return tell(problemCode_t::countMismatch, group.values[list], &step,
                            "there are " + std::to_string(group.numbers[list]) + " elements, but " +
                                std::string(fields[key].key) + " says " + std::to_string(group.numbers[key]));
            }
        return true;
    }

    bool list(const strictField_t &field, const token_t &value, const step_t &outer, std::int32_t &count,
              bool &isEmpty) const {
        using enum problemCode_t;
        if (!isGroup(value.value))
            return tell(wrongValue, value.at, &outer, "a list in braces should stand here");
        tolerantTokenizer_t tokens(value.value.substr(1, value.value.size() - 2));
        while (!tokens.atEnd()) {
            const step_t step{&outer, {}, count};
            if (isSeparator(*tokens.position()))
                return tell(unclear, tokens.position(), &step, "an element without a value, the later ones move up");
            token_t element{};
            if (!token(tokens, &step, element))
                return false;
            const char *const behind = tokens.position();
            if (!tokens.atEnd() && *behind == equalsSign)
                return tell(unclear, element.at, &step, "an element of a list has no key");
            if (field.room > 0 && count == field.room)
                return tell(beyondRoom, element.at, &step,
                            "there is room for " + std::to_string(field.room) + " elements");
            std::int32_t number = 0;
            bool isElementEmpty = true;
            if (!scalar(field, element, step, number, isElementEmpty))
                return false;
            if (isElementEmpty)
                return tell(unclear, element.at, &step, "an empty element, which would not come back");
            ++count;
            isEmpty = false;
            if (tokens.delimiter() || tokens.position() - behind > 1)
                return tell(unclear, behind, &step, "more than one separator stands behind an element");
        }
        return true;
    }

    // What is no list: of one, an element.
    bool scalar(const strictField_t &field, const token_t &token, const step_t &step, std::int32_t &number,
                bool &isEmpty) const {
        using enum problemCode_t;
        const std::string_view value = token.value;
        if (field.kind == fieldKind_t::record || field.kind == fieldKind_t::text16) {
            if (!isGroup(value))
                return tell(wrongValue, token.at, &step, "a group in braces should stand here");
            if (field.kind == fieldKind_t::record)
                return record(*field.plan, value, &step, isEmpty);
            strictField_t codes;
            codes.kind = fieldKind_t::integer16;
            std::int32_t count = 0;
            return list(codes, token, step, count, isEmpty);
        }
        if (value.empty())
            return field.kind == fieldKind_t::text || tell(unclear, token.at, &step, "there is nothing in the quotes");
        isEmpty = false;
        if (field.kind == fieldKind_t::text)
            return text(field, token, step);
        const char *const wanted = fault(field, value, number);
        return wanted == nullptr ||
               tell(field.kind == fieldKind_t::pixels && wanted == wholeOnly ? unclear : wrongValue, token.at, &step,
                    shown(value) + wanted);
    }

    bool text(const strictField_t &field, const token_t &token, const step_t &step) const {
        using enum problemCode_t;
        if (field.textRoom > 0 && token.value.size() >= field.textRoom)
            return tell(beyondRoom, token.at, &step,
                        "a text of " + std::to_string(token.value.size()) + " characters, there is room for " +
                            std::to_string(field.textRoom - 1));
        const std::size_t brace = token.isQuoted ? std::string_view::npos : token.value.find_first_of("{}");
        return brace == std::string_view::npos ||
               tell(unclear, token.value.data() + brace, &step, "a brace stands in a text as it is");
    }

    // What is wrong with a value that is neither a group nor a text; null when nothing is.
    static const char *fault(const strictField_t &field, std::string_view value, std::int32_t &number) {
        switch (field.kind) {
        case fieldKind_t::boolean:
            return value == "TRUE" || value == "FALSE" ? nullptr : " is neither TRUE nor FALSE";
        case fieldKind_t::enumeration:
            return std::find(field.names.begin(), field.names.end(), value) != field.names.end()
                       ? nullptr
                       : " is no name of the enumeration";
        case fieldKind_t::integer32:
        case fieldKind_t::integer16:
            number = readInteger(value);
            break;
        default:
            break;
        }
        const bool isInteger = field.kind == fieldKind_t::integer32 || field.kind == fieldKind_t::integer16;
        std::size_t digits = 0;
        const std::size_t end = numberEnd(value, !isInteger, digits);
        if (digits == 0)
            return isInteger ? " is no integer" : " is no number";
        if (!std::all_of(value.begin() + static_cast<std::ptrdiff_t>(end), value.end(), &isSpace))
            return isInteger ? " goes on behind its integer" : " goes on behind its number";
        return rangeFault(field.kind, readReal(value));
    }

    static const char *rangeFault(fieldKind_t kind, double value) {
        constexpr const char *tooLarge = " does not fit its field";
        const auto within = [value](double lowest, double highest) {
            return value >= lowest && value <= highest ? nullptr : tooLarge;
        };
        switch (kind) {
        case fieldKind_t::integer32:
            return within(INT32_MIN, INT32_MAX);
        case fieldKind_t::integer16:
            return within(INT16_MIN, INT16_MAX);
        case fieldKind_t::pixels:
            if (!(value > -2147483649.0 && value < 2147483648.0))
                return tooLarge;
            return std::trunc(value) == value ? nullptr : wholeOnly;
        case fieldKind_t::float32:
            return within(-largestFloat, largestFloat);
        default:
            return std::isfinite(value) ? nullptr : tooLarge;
        }
    }

    bool tell(problemCode_t code, const char *at, const step_t *step, const std::string &why) const {
        const std::string path = step != nullptr ? step->path() : std::string();
        tell_(taker_, code, at, path.empty() ? why : path + ": " + why, path);
        return false;
    }

    static constexpr const char *wholeOnly = " has a fraction, pixels are whole";
    static constexpr auto largestFloat = static_cast<double>(std::numeric_limits<float>::max());

    tell_t tell_;
    void *taker_;
};

} // namespace

strictReading_t::strictReading_t(void (*show)(recordVisitor_t &), make_t make)
    : plan_(makeStrictPlan(show).release()), make_(make) {}

strictReading_t::~strictReading_t() {
    delete plan_;
}

void *strictReading_t::readOrdinary(const char *body, std::size_t size) const {
    const floatingPointGuard_t guard;
    return make_(body, size);
}

void strictReading_t::tell(const char *text, std::size_t size, take_t take, void *taker) const {
    const floatingPointGuard_t guard; // comparing reals sets flags, too
    struct told_t {
        const char *text;
        take_t take;
        void *taker;
    } told{text, take, taker};
    const auto pass = [](void *to, problemCode_t code, const char *at, const std::string &why,
                         const std::string &path) {
        const told_t &one = *static_cast<told_t *>(to);
        one.take(one.taker, code, static_cast<std::size_t>(at - one.text), why.c_str(), path.c_str());
    };
    const envelope_t envelope = readEnvelope({text, size});
    const strictRun_t run(pass, &told);
    // A body is found by counting, whatever stands in front of it.
    const char *const front = text + envelope.head.sequenceNumber.end;
    const bool isBlank = !envelope.head.sequenceNumber.isThere || *front == ' ';
    run.body(*plan_, isBlank && envelope.isBodyRead() ? envelope.body : std::string_view(front, 1));
}

} // namespace vek
