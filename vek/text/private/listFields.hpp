// Lists that are members of a message structure: where their elements live and how many of them are printed.
//
// Every list is emptied when a record is made to parse.
#pragma once

#include "vek/text/fieldArray.hpp"
#include "vek/text/growableList.hpp"
#include "vek/text/private/recordVisit.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace vek {

/// What an element's field or record says of itself, for a list's description.
template <class Element, class Value>
void describeElement(fieldDescription_t &description) {
    if constexpr (std::is_base_of_v<textGroup_t, Element>) {
        description.details = elementRecord_t{&visitRecord<Element>};
    } else {
        Value value{};
        Element(pass_t::print, value).describe(description);
    }
}

/// Appends blank elements to a list: the first is left to be cleared, the others are copies of it.
class blanks_t {
public:
    template <class List>
    bool appendTo(List &list) {
        const bool isFirst = first_ < 0;
        if (isFirst) {
            first_ = list.count();
            list.add();
        } else if constexpr (std::is_pointer_v<decltype(list.at(0))>) {
            list.add(*list.at(first_));
        } else {
            list.add(list.at(first_));
        }
        return isFirst;
    }

private:
    std::int32_t first_ = -1;
};

/// Elements in a growableList_t; with a count member, at most that many are printed.
template <class Element, class Value>
class listElements_t {
public:
    using list_t = growableList_t<Value>;

    listElements_t(pass_t pass, list_t &list) : listElements_t(pass, list, nullptr) {}
    listElements_t(pass_t pass, list_t &list, const std::int32_t &count) : listElements_t(pass, list, &count) {}

    Element element(std::int32_t index, pass_t pass) const { return Element(pass, list_[index]); }
    bodyWriter_t write(std::int32_t index, bodyWriter_t out) const {
        return writeElementOf<Element>(list_[index], out);
    }
    std::int32_t printed() const { return count_ == nullptr ? list_.count() : std::min(list_.count(), *count_); }
    std::int32_t allocated() const { return list_.count(); }
    void append() { list_.add(); }
    bool appendBlank() { return blanks_.appendTo(list_); }
    void reserve(std::int32_t count) { list_.reserve(count); }
    void describe(fieldDescription_t &description) const {
        describeElement<Element, Value>(description);
        description.bindTo(list_);
        const auto elements = [](const void *list) -> elementRun_t {
            return {static_cast<const list_t *>(list)->begin(), static_cast<const list_t *>(list)->count()};
        };
        description.list = {.elements = elements, .elementSize = sizeof(Value), .countMember = count_};
    }

private:
    listElements_t(pass_t pass, list_t &list, const std::int32_t *count) : list_(list), count_(count) {
        if (pass == pass_t::parse)
            list.clear();
    }

    list_t &list_;
    const std::int32_t *count_;
    blanks_t blanks_;
};

/// How a list of fixed room is counted: all of its elements; by a member, but never beyond the room; or by a member
/// that is taken as it is, which is then the caller's promise.
enum class counting_t { all, byMember, byMemberUnchecked };

/// Elements in an array inside the structure. Values beyond its room are dropped.
template <class Element, class Value, std::size_t Room, counting_t Counting>
class roomElements_t {
public:
    using array_t = Value[Room];

    roomElements_t(pass_t pass, array_t &values, const std::int32_t &count = roomSize)
        : values_(values), count_(count) {
        if (pass == pass_t::parse)
            for (Value &value : values)
                Element(pass_t::parse, value);
    }

    // By address: the caller's unchecked count may go beyond the array.
    Element element(std::int32_t index, pass_t pass) const { return Element(pass, *(&values_[0] + index)); }
    bodyWriter_t write(std::int32_t index, bodyWriter_t out) const {
        return writeElementOf<Element>(*(&values_[0] + index), out);
    }
    std::int32_t printed() const {
        return Counting == counting_t::byMemberUnchecked ? count_ : std::min(count_, roomSize);
    }
    // A parse takes as many elements into use as it meets values, so that a keyed body can't reach further.
    std::int32_t allocated() const { return used_; }
    void append() { used_ = std::min(used_ + 1, roomSize); }
    bool appendBlank() {
        append();
        return false; // all were cleared
    }
    void reserve(std::int32_t) {}
    void describe(fieldDescription_t &description) const {
        describeElement<Element, Value>(description);
        description.bindTo(values_);
        description.list = {.kind = listKind_t::array,
                            .elements = [](const void *values) -> elementRun_t {
                                return {values, roomSize};
                            },
                            .elementSize = sizeof(Value),
                            .room = roomSize,
                            .countMember = Counting == counting_t::all ? nullptr : &count_,
                            .isCountChecked = Counting != counting_t::byMemberUnchecked};
    }

private:
    static constexpr std::int32_t roomSize = Room;

    array_t &values_;
    const std::int32_t &count_;
    std::int32_t used_ = 0;
};

/// Lists by what stands for one element: a scalar field, or a record class, whose structures lie in the list by value.
template <class Element>
using listField_t = fieldArray_t<listElements_t<Element, typename Element::value_t>>;
template <class Element, std::size_t Room, counting_t Counting>
using roomField_t = fieldArray_t<roomElements_t<Element, typename Element::value_t, Room, Counting>>;

} // namespace vek
