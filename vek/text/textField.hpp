// textField_t and textGroup_t: named fields, and groups of fields that print as one braced body and read one back.
//
// A record derives from textGroup_t and declares its fields as members, in text order. A field is bound to a member of
// the message structure: it holds no value of its own, it prints that member and reads into it. So the structure must
// outlive the record, which lives for one pass only. Groups register their members and never own them.
// Not safe for concurrent use.
#pragma once

#include "vek/text/bodyWriter.hpp"
#include "vek/text/canonicalCursor.hpp"
#include "vek/text/description.hpp"
#include "vek/text/tolerantScanner.hpp"

#include <cstdint>
#include <string_view>

namespace vek {

/// What a field is made for. A field made to print is set. One made to parse is unset, and puts its member to the
/// value of an absent key (0, FALSE, empty), which no default of the structure survives. One made to write appends at
/// once what it would print to its group, a writtenGroup_t, and is of no further use.
enum class pass_t : std::uint16_t { print, parse, write };

class textField_t {
public:
    virtual ~textField_t() = default;
    textField_t(const textField_t &) = delete;
    textField_t &operator=(const textField_t &) = delete;

    /// Appends the value's text, nothing when the field is not set, and returns the place behind it.
    virtual bodyWriter_t toText(bodyWriter_t out) const = 0;

    /// Takes the value from text, whatever the text is, and sets the field. (An enumeration ignores an unknown name.)
    virtual void fromText(std::string_view text) = 0;

    /// Takes the value from the text that stands at the cursor and returns the place behind it. Nowhere when the text
    /// is to be read by fromText(), then with the field made anew, as it must be here.
    virtual canonicalCursor_t readAt(canonicalCursor_t at);

    /// Says what the field is and which member it is bound to.
    virtual void describe(fieldDescription_t &description) const = 0;

    /// The key in the text; empty for a group that is no member of another.
    std::string_view key() const { return {key_, keyLength_}; }

    /// The next member of the same group, in registration order.
    const textField_t *nextMember() const { return next_; }

    /// Whether a value was assigned: 0 or 1. An unset field is left out of the text.
    std::uint8_t isSet = 0;

protected:
    /// A field that is no member of a group.
    explicit textField_t(std::string_view key = {})
        : keyLength_(static_cast<std::uint32_t>(key.size())), key_(key.data()) {}

    /// Registers the field as the last member of `group`, unless it is made to write. The key's characters must outlive
    /// it.
    inline textField_t(textGroup_t &group, std::string_view key);

private:
    friend class textGroup_t;

    bool matched_ = false; // the parse pass met a pair with this key
    std::uint32_t keyLength_;
    const char *key_;
    textField_t *next_ = nullptr;
};

class textGroup_t : public textField_t {
public:
    /// How the members stand in the body: as KEY=value; pairs, or as bare values, told apart by their order.
    enum class bodyForm_t : std::uint16_t { keyed, positional };

    /// A group that is no member of another: a top-level record, or an element of the list with the given key.
    explicit textGroup_t(pass_t pass, bodyForm_t form = bodyForm_t::keyed, std::string_view key = {})
        : textField_t(key), pass_(pass), form_(form) {}
    /// A member of `parent`, made for the same pass.
    inline textGroup_t(textGroup_t &parent, std::string_view key, bodyForm_t form = bodyForm_t::keyed);

    /// The print pass: the set members in braces, or nothing at all when none is set.
    bodyWriter_t toText(bodyWriter_t out) const override;

    /// The parse pass: hands each pair of a body to the member it belongs to. An empty text changes nothing.
    void fromText(std::string_view text) override;

    canonicalCursor_t readAt(canonicalCursor_t at) override;

    void describe(fieldDescription_t &description) const override;

    /// Appends a pair for every set member, in registration order.
    virtual bodyWriter_t collectPairs(bodyWriter_t out) const;

    /// Assigns pairs to members: by key when a "=" stands anywhere in the body, else by position. The first pair of a
    /// key counts, unknown keys are ignored, and an empty value assigns nothing.
    virtual void assignPairs(tolerantScanner_t &pairs);

    pass_t pass() const { return pass_; }
    const textField_t *firstMember() const { return first_; }

    /// Says again what the group is made for. Whatever is written through a pointer could be the group, for all that
    /// the compiler knows; which so knows the pass when the next member is made, and leaves out the others.
    void makeFor(pass_t pass) { pass_ = pass; }

private:
    friend class textField_t;

    void assignByPosition(tolerantScanner_t &pairs);
    static void assign(textField_t &member, std::string_view value);
    class memberSearch_t;

    textField_t *first_ = nullptr;
    textField_t *last_ = nullptr;
    // A whole word in all, so that every compiler lays out a derived record alike.
    pass_t pass_;
    bodyForm_t form_;
    std::uint32_t parsed_ = 0;
};

inline textField_t::textField_t(textGroup_t &group, std::string_view key)
    : isSet(group.pass() == pass_t::print ? 1 : 0), keyLength_(static_cast<std::uint32_t>(key.size())),
      key_(key.data()) {
    if (group.pass() == pass_t::write)
        return;
    (group.last_ != nullptr ? group.last_->next_ : group.first_) = this;
    group.last_ = this;
}

inline textGroup_t::textGroup_t(textGroup_t &parent, std::string_view key, bodyForm_t form)
    : textField_t(parent, key), pass_(parent.pass()), form_(form) {}

} // namespace vek
