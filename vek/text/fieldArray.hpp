// fieldArray_t: a list of like elements as one unkeyed group, {a,b,}.
//
// Where the elements live is the business of an Elements class. The field or record that converts one bound element is
// made on the stack for each in turn, so nothing that is bound moves when a list grows.
#pragma once

#include "vek/text/elementKeys.hpp"
#include "vek/text/writtenGroup.hpp"

#include <concepts>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <utility>

namespace vek {

/// Where a list's elements are, and what converts one of them: a field or record that is made for its turn, or a
/// reference to one that exists.
template <class Elements>
concept listElements = requires(Elements &elements, const Elements &all, std::int32_t number, pass_t pass,
                                bodyWriter_t out, fieldDescription_t &description) {
    elements.element(number, pass);                           // that of one element
    { all.write(number, out) } -> std::same_as<bodyWriter_t>; // appends one and a comma, or nothing
    { all.printed() } -> std::same_as<std::int32_t>;          // how many elements to print
    { all.allocated() } -> std::same_as<std::int32_t>;        // how many exist
    elements.append();                                        // one more, if there is room
    elements.reserve(number);                                 // gets ready for so many in all
    all.describe(description);
};

/// Elements with records that are made for their turn: appendBlank() makes one more with the values of absent keys, and
/// tells whether it is the first of these, which then is to be cleared.
template <class Elements>
concept blankableElements = listElements<Elements> && requires(Elements &elements) {
    { elements.appendBlank() } -> std::same_as<bool>;
};

template <listElements Elements>
class fieldArray_t : public textGroup_t {
public:
    /// A member of `parent`, over elements that `arguments` name.
    template <class... Arguments>
    fieldArray_t(textGroup_t &parent, std::string_view key, Arguments &...arguments)
        : fieldArray_t(parent.pass(), parent, key, arguments...) {}

    bodyWriter_t collectPairs(bodyWriter_t out) const override {
        const std::int32_t printed = elements_.printed();
        for (std::int32_t i = 0; i < printed; ++i)
            out = elements_.write(i, out);
        return out;
    }

    /// Element i takes the i-th value; when a "=" stands anywhere in the body, the value whose key is the list's key
    /// and i. As many elements as values are made; unless elements existed before, or room is limited: then surplus
    /// values are dropped.
    void assignPairs(tolerantScanner_t &pairs) override {
        // A "=" behind any value makes the whole body keyed, also the values before it.
        if (!isPositional(pairs))
            return assignByKey(pairs);
        const bool isFixed = elements_.allocated() > 0;
        textPair_t pair;
        std::int32_t found = 0;
        for (; pairs.next(pair); ++found) {
            if (!isFixed && isBlank(pair.value)) {
                appendBlank();
                continue;
            }
            // Growing may move the values, so no element's field or record outlives its turn: it is bound to a value
            // where that lies now. Where there is no room, append() makes none and the value is only counted.
            if (!isFixed)
                elements_.append();
            if (found < elements_.allocated())
                assign(found, pair.value);
        }
        found_ = found > 0 ? found : found_;
    }

    // With the element's record made inline, where the compiler knows the pass.
    [[gnu::flatten]] canonicalCursor_t readAt(canonicalCursor_t at) override {
        if (!at.enter())
            return {};
        for (found_ = 0; !at.skip(closeBrace); ++found_) {
            elements_.append();
            if (found_ >= elements_.allocated())
                return {};
            at = elements_.element(found_, pass_t::parse).readAt(at);
            if (at.isNowhere() || !at.skip(comma))
                return {};
        }
        isSet = 1;
        return elements_.printed() >= found_ ? at : canonicalCursor_t(); // a count may say that there are fewer
    }

    void describe(fieldDescription_t &description) const override { elements_.describe(description); }

protected:
    /// An element of an outer list.
    fieldArray_t(std::string_view outerKey, std::int32_t ordinal)
        : textGroup_t(pass_t::parse, bodyForm_t::positional, outerKey), elements_(pass_t::parse), ordinal_(ordinal) {}

    Elements elements_;
    std::int32_t found_ = 0; // how many values the last parse met, even beyond the room for them

private:
    template <class... Arguments>
    fieldArray_t(pass_t pass, textGroup_t &parent, std::string_view key, Arguments &...arguments)
        : textGroup_t(parent, key, bodyForm_t::positional), elements_(pass, arguments...) {
        parent.makeFor(pass);
        if (pass == pass_t::write)
            writtenGroup_t::of(parent).appendGroup(
                key, [this](bodyWriter_t out) { return fieldArray_t::collectPairs(out); });
    }

    /// Is an element's group, if it is one, made for its turn alone? Then an empty body leaves nothing behind.
    static constexpr bool isMadeForEach =
        std::is_base_of_v<textGroup_t, decltype(std::declval<Elements>().element(0, pass_t::parse))>;
    static_assert(!isMadeForEach || blankableElements<Elements>);

    // Whether a record would read nothing from a value. A hostile text has many of these, and few characters for each,
    // so no record is made for them.
    static bool isBlank(std::string_view value) {
        return isMadeForEach && value.size() <= tolerantScanner_t::largestEmptyBody;
    }

    [[gnu::noinline]] void appendBlank() {
        if constexpr (!isMadeForEach)
            elements_.append();
        else if (elements_.appendBlank())
            assign(elements_.allocated() - 1, {});
    }

    // Once for all ways to meet a value apart from a cursor: the element's record is made in it.
    [[gnu::noinline, gnu::flatten]] void assign(std::int32_t index, std::string_view value) {
        auto &&element = elements_.element(index, pass_t::parse);
        if (!value.empty())
            element.fromText(value);
    }

    // Elements by key may come in any order, so all are made at once, before the first is bound.
    void assignByKey(const tolerantScanner_t &start) {
        found_ = countPairs(start);
        if (elements_.allocated() == 0) {
            elements_.reserve(found_);
            for (std::int32_t i = 0; i < found_; ++i)
                appendBlank();
        }
        elementPairs_t pairs(start, {key(), ordinal_}, elements_.allocated());
        for (elementPair_t pair; pairs.next(pair);)
            assign(pair.index, pair.value);
    }

    std::int32_t ordinal_ = -1;
};

} // namespace vek
