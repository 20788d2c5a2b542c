// ordinaryBody_t: whether a body is spelt as the library spells it, told in one go by the keys of a strict plan.
#pragma once

#include "vek/api/front/private/strictPlan.hpp"
#include "vek/text/characterBlock.hpp"
#include "vek/text/characters.hpp"
#include "vek/text/numberText.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace vek {

// What the counts of a record say, and the elements of the longest list that each counts. A list may have fewer
// elements than its count says, which are empty then, but no more.
struct counters_t {
    std::array<std::int32_t, strictPlan_t::mostCounters> said{}, there{};

    void set(const strictField_t &field, std::int32_t value) {
        const auto number = static_cast<std::size_t>(field.counter);
        (field.isList ? there : said)[number] = field.isList ? std::max(there[number], value) : value;
    }
    bool areRight() const {
        for (std::size_t i = 0; i < said.size(); ++i)
            if (said[i] < there[i])
                return false;
        return true;
    }
};

// A body that is spelt as the library spells it. Each function returns the place behind what it takes; null when
// something else is here, be it right or not.
class ordinaryBody_t {
public:
    explicit ordinaryBody_t(const char *end) : end_(end) {}

    const char *record(const strictPlan_t &plan, const char *at) const {
        if (!isAt(at, openBrace))
            return nullptr;
        const char *const start = ++at;
        counters_t counters;
        for (const strictField_t &field : plan.fields) {
            if (!isKeyAt(at, end_, field.key))
                continue;
            std::int32_t number = 0;
            at += field.key.size() + 1;
            at = field.isList ? list(field, at, number) : value(field, at, number);
            if (at == nullptr || !isAt(at, semicolon))
                return nullptr;
            ++at;
            if (field.counter < 0)
                continue;
            if (!field.isList && field.room > 0 && number > field.room)
                return nullptr;
            counters.set(field, number);
        }
        return at != start && isAt(at, closeBrace) && (!plan.hasCounters || counters.areRight()) ? at + 1 : nullptr;
    }

private:
    bool isAt(const char *at, char c) const { return at != end_ && *at == c; }

    const char *list(const strictField_t &field, const char *at, std::int32_t &count) const {
        if (!isAt(at, openBrace))
            return nullptr;
        for (++at; !isAt(at, closeBrace); ++at) {
            std::int32_t number = 0;
            at = value(field, at, number);
            if (at == nullptr || !isAt(at, comma) || (++count > field.room && field.room > 0))
                return nullptr;
        }
        return count > 0 ? at + 1 : nullptr;
    }

    const char *value(const strictField_t &field, const char *at, std::int32_t &number) const {
        switch (field.kind) {
        case fieldKind_t::record:
            return record(*field.plan, at);
        case fieldKind_t::integer32:
            return integer(at, number);
        case fieldKind_t::integer16:
            at = integer(at, number);
            return number == static_cast<std::int16_t>(number) ? at : nullptr;
        case fieldKind_t::float64:
        case fieldKind_t::float32:
            return real(at);
        case fieldKind_t::pixels:
            at = real(at);
            return at != nullptr && std::memcmp(at - 6, "000000", 6) == 0 ? at : nullptr;
        case fieldKind_t::boolean:
            return behind(at, "TRUE", behind(at, "FALSE", nullptr));
        case fieldKind_t::enumeration:
            return name(field, at);
        case fieldKind_t::text:
            return text(field, at);
        case fieldKind_t::text16:
            return codes(at);
        }
        return nullptr;
    }

    const char *behind(const char *at, std::string_view word, const char *otherwise) const {
        const bool isHere = static_cast<std::size_t>(end_ - at) >= word.size() && areSame(at, word.data(), word.size());
        return isHere ? at + word.size() : otherwise;
    }

    const char *integer(const char *at, std::int32_t &value) const {
        const bool isNegative = isAt(at, '-');
        const char *const digits = at += isNegative ? 1 : 0;
        constexpr int mostDigits = 9; // no overflow
        for (; at != end_ && isDigit(*at) && at - digits < mostDigits; ++at)
            value = value * 10 + (*at - '0');
        value = isNegative ? -value : value;
        return at != digits ? at : nullptr;
    }

    // How many digits stand in front of the point is left to prediction: so that what follows needs not wait for it.
    [[gnu::always_inline]] const char *real(const char *at) const {
        using namespace detail;
        at += isAt(at, '-') ? 1 : 0;
        constexpr std::ptrdiff_t longest = 16;
        double unused = 0.0;
        if (end_ - at < longest)
            return isAt(at, '-') ? nullptr : readSixDecimals(at, end_, unused);
        const std::uint64_t digits = loadDigits(at);
        const char *decimals = nullptr;
        std::uint64_t whole = 0;
        const auto isPointBehind = [&]<int Digits>(std::integral_constant<int, Digits>) {
            if (at[Digits] != '.')
                return false;
            decimals = at + Digits + 1;
            whole = digits << (64 - 8 * Digits);
            asm("" : "+r"(decimals)); // so that it is not computed from the point's place after all
            return true;
        };
        const bool isFound =
            isPointBehind(std::integral_constant<int, 1>()) || isPointBehind(std::integral_constant<int, 2>()) ||
            isPointBehind(std::integral_constant<int, 3>()) || isPointBehind(std::integral_constant<int, 4>()) ||
            isPointBehind(std::integral_constant<int, 5>());
        if (!isFound)
            return isAt(at, '-') ? nullptr : readSixDecimals(at, end_, unused);
        return areDigits(whole) && areDigits(loadDigits(decimals) << 16) ? decimals + 6 : nullptr;
    }

    const char *name(const strictField_t &field, const char *at) const {
        const char *const stop = findSeparator(at);
        const std::string_view here(at, static_cast<std::size_t>(stop - at));
        for (const char *name : field.names)
            if (std::strncmp(name, at, here.size()) == 0 && name[here.size()] == '\0')
                return stop;
        return nullptr;
    }

    const char *text(const strictField_t &field, const char *at) const {
        const char *const stop = findSeparator(at);
        const auto size = static_cast<std::size_t>(stop - at);
        const bool isPlain = size > 0 && *at != '"' && (field.textRoom == 0 || size < field.textRoom);
        return isPlain ? stop : nullptr;
    }

    // Or a brace, or the end.
    const char *findSeparator(const char *at) const {
#ifdef __SSE2__
        for (; end_ - at >= characterBlock_t::size; at += characterBlock_t::size)
            if (const unsigned found = characterBlock_t(at).structural(); found != 0)
                return at + std::countr_zero(found);
#endif
        while (at != end_ && !isSeparator(*at) && *at != openBrace && *at != closeBrace)
            ++at;
        return at;
    }

    // A 16-bit text of codes with one to four digits. By blocks: no comma in front of another or of the first code, and
    // no five digits in a row.
    const char *codes(const char *at) const {
        if (!isAt(at, openBrace))
            return nullptr;
        const char *const start = ++at;
        constexpr int mostDigits = 4;
#ifdef __SSE2__
        unsigned lastDigits = 0, lastComma = 1;
        for (; end_ - at >= characterBlock_t::size; at += characterBlock_t::size) {
            const characterBlock_t block(at);
            const unsigned digits = block.between('0', '9'), commas = block.equal(comma);
            const unsigned others = ~(digits | commas) & 0xFFFF;
            const unsigned inFront = others != 0 ? (others & (0U - others)) - 1 : 0xFFFF;
            const unsigned run = lastDigits | (digits & inFront) << mostDigits;
            const unsigned pairs = (commas << 1 | lastComma) & commas & inFront;
            if ((run & run << 1 & run << 2 & run << 3 & run << 4) != 0 || pairs != 0)
                return nullptr;
            if (others != 0) {
                at += std::countr_zero(others);
                return at != start && *at == closeBrace && at[-1] == comma ? at + 1 : nullptr;
            }
            lastDigits = digits >> (characterBlock_t::size - mostDigits);
            lastComma = commas >> (characterBlock_t::size - 1);
        }
        while (at != start && at[-1] != comma)
            --at;
#endif
        for (; !isAt(at, closeBrace); ++at) {
            const char *const code = at;
            while (at != end_ && isDigit(*at))
                ++at;
            if (at == code || at - code > mostDigits || !isAt(at, comma))
                return nullptr;
        }
        return at != start ? at + 1 : nullptr;
    }

    const char *end_;
};

} // namespace vek
