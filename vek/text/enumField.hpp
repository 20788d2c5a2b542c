// enumField_t: an enumeration, written as one name out of a table.
#pragma once

#include "vek/text/members.h"
#include "vek/text/textField.hpp"
#include "vek/vek_std/std_sys/vek_shortRuns.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vek {

/// The names of an enumeration, in order of their values from 0. The table must outlive every field that uses it.
class enumNames_t {
public:
    /// `title` says in words what the enumeration is.
    template <std::size_t Count>
    constexpr explicit enumNames_t(const std::array<const char *, Count> &names, std::string_view title = {})
        : names_(names.data()), count_(static_cast<std::int32_t>(Count)), title_(title) {
        static_assert(Count <= mostNames);
        for (std::size_t value = 0; value < Count; ++value)
            lengths_[value] = static_cast<std::uint8_t>(std::string_view(names[value]).size());
    }

    /// The name of `value`; empty when the table has none.
    std::string_view nameOf(std::int32_t value) const { return value >= 0 && value < count_ ? name(value) : ""; }

    /// The value of a name, letter case counting; -1 when the table lacks it.
    std::int32_t valueOf(std::string_view name) const {
        for (std::int32_t value = 0; value < count_; ++value)
            if (name.size() == lengths_[static_cast<std::size_t>(value)] &&
                areSame(name.data(), names_[value], name.size()))
                return value;
        return -1;
    }

    enumWords_t words() const { return {title_, {names_, static_cast<std::size_t>(count_)}}; }

private:
    static constexpr std::size_t mostNames = 16;

    std::string_view name(std::int32_t value) const {
        return {names_[value], lengths_[static_cast<std::size_t>(value)]};
    }

    const char *const *names_;
    std::int32_t count_;
    std::string_view title_;
    std::uint8_t lengths_[mostNames] = {};
};

/// A value without a name prints nothing. An unknown name leaves the value and the flag as they are.
/// `Holder` is a reference to the 32-bit value or the value itself.
template <class Holder>
class basicEnumField_t : public textField_t {
public:
    bodyWriter_t toText(bodyWriter_t out) const override {
        if (isSet != 0)
            out.put(names_->nameOf(value_));
        return out;
    }

    void fromText(std::string_view text) override {
        if (const std::int32_t value = names_->valueOf(text); value >= 0) {
            value_ = value;
            isSet = 1;
        }
    }

    void describe(fieldDescription_t &description) const override {
        description.kind = fieldKind_t::enumeration;
        description.details = names_->words();
        description.bindTo(value_);
    }

protected:
    basicEnumField_t(textGroup_t &group, std::string_view key, Holder value, const enumNames_t &names)
        : textField_t(group, key), names_(&names), value_(value) {}

    const enumNames_t *names_;
    Holder value_;
};

/// Bound to a member of a message structure.
struct enumField_t : basicEnumField_t<std::int32_t &> {
    enumField_t(textGroup_t &group, std::string_view key, std::int32_t &value, const enumNames_t &names)
        : basicEnumField_t(group, key, value, names) {
        if (group.pass() == pass_t::parse)
            value = 0;
    }
};

/// Keeps its value and stands for it. Assigning a value sets the field.
struct ownEnumField_t : basicEnumField_t<std::int32_t> {
    ownEnumField_t(textGroup_t &group, std::string_view key, const enumNames_t &names)
        : basicEnumField_t(group, key, 0, names) {}

    ownEnumField_t &operator=(std::int32_t value) {
        value_ = value;
        isSet = 1;
        return *this;
    }
    ownEnumField_t &operator=(const ownEnumField_t &other) { return *this = other.value(); }

    /// Takes over the value, and whether it is set.
    void copyFrom(const ownEnumField_t &other) {
        value_ = other.value_;
        isSet = other.isSet;
    }

    std::int32_t value() const { return value_; }
    operator std::int32_t() const { return value_; }

    /// The value's name in the text; empty when it has none.
    std::string_view name() const { return names_->nameOf(value_); }

    /// Puts the value to 0, and unsets the field.
    void clear() {
        value_ = 0;
        isSet = 0;
    }

    /// The member is the field itself: hosts see no more of it than its value.
    void describe(fieldDescription_t &description) const override {
        basicEnumField_t::describe(description);
        description.standIn(*this);
        description.isSet = &isSet;
    }
};

/// The same, which takes no constant of another enumeration.
template <class Enumeration>
struct ownEnumFieldOf_t : ownEnumField_t {
    using ownEnumField_t::ownEnumField_t;

    ownEnumFieldOf_t &operator=(enumMember_t<Enumeration> value) {
        ownEnumField_t::operator=(value);
        return *this;
    }
};

/// The two kinds of a range, in order of valueRange_t::kind.
extern const enumNames_t rangeTypeNames;

} // namespace vek
