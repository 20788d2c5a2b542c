// enumField_t: an enumeration, written as one name out of a table.
#pragma once

#include "vek/text/enumNames.hpp"
#include "vek/text/members.h"
#include "vek/text/textField.hpp"
#include "vek/text/writtenGroup.hpp"

#include <cstdint>
#include <string_view>

namespace vek {

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

    canonicalCursor_t readAt(canonicalCursor_t at) override {
        basicEnumField_t::fromText(at.value());
        return isSet != 0 ? at : canonicalCursor_t();
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

/// Bound to a member of a message structure; `isThere` tells whether it is printed.
struct enumField_t : basicEnumField_t<std::int32_t &> {
    enumField_t(textGroup_t &group, std::string_view key, std::int32_t &value, const enumNames_t &names,
                bool isThere = true)
        : basicEnumField_t(group, key, value, names) {
        if (group.pass() == pass_t::parse)
            value = 0;
        else if (!isThere)
            isSet = 0;
        else if (group.pass() == pass_t::write)
            writtenGroup_t::of(group).append<enumField_t>(key, names, value);
    }

    static std::string_view written(const enumNames_t &names, std::int32_t value) { return names.nameOf(value); }
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

} // namespace vek
