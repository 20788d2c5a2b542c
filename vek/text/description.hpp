// What fields and records say of themselves: enough to document a message, to check one, and to find its members.
//
// Descriptions refer to what they describe and to constants; they own nothing. The words that people read belong to
// whoever shows them.
#pragma once

#include "vek/vek_std/std_sys/vek_cpp20.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

namespace vek {

class recordVisitor_t;
class textGroup_t;

/// What a field holds; of a list, what its elements hold.
enum class fieldKind_t : std::uint8_t {
    record,    ///< a group of fields
    integer32, ///< signed
    integer16, ///< signed
    float64,
    float32,
    pixels, ///< a 32-bit integer in the structure, a real in the text
    boolean,
    enumeration,
    text,
    text16, ///< a text of 16-bit characters, in the body a list of their codes
};

/// How a list is held in its structure.
enum class listKind_t : std::uint8_t {
    growable,  ///< growableList_t
    container, ///< a Container, which is the structure itself
    array,     ///< an array of fixed room
    range,     ///< the values of a valueRange_t
};

/// Where the elements of a list are, one behind the other.
struct elementRun_t {
    const void *first = nullptr;
    std::int32_t count = 0;
};

/// A list: what its elements hold is what the field says of itself.
struct listDescription_t {
    listKind_t kind = listKind_t::growable;
    elementRun_t (*elements)(const void *value) = nullptr; ///< finds the elements
    std::size_t elementSize = 0;                           ///< from an element to the next; 0: pointers to them
    std::optional<std::int32_t> room = {};                 ///< the elements that a list of fixed room holds
    const void *countMember = nullptr; ///< the member that limits how many elements are printed; null: all are
    bool isCountChecked = true;        ///< false: that many are printed, be there as many or not
};

/// An enumeration: in words, for example "media type", and its names in order of their values.
struct enumWords_t {
    std::string_view title;
    std::span<const char *const> names;
};

/// A text in a character array of so many characters, which may run on as far as `reach` behind its start.
struct arrayText_t {
    std::int32_t room = 0;
    std::int32_t reach = 0;
};

/// A text that is a pointer to its characters, which may be null.
struct pointerText_t {};

/// A nested record, and the name of its structure, for example "Media".
struct nestedRecord_t {
    const textGroup_t *group = nullptr;
    std::string_view structure;
};

/// The record class of a list's elements, which it shows.
struct elementRecord_t {
    void (*visit)(recordVisitor_t &) = nullptr;
};

struct fieldDescription_t {
    fieldKind_t kind = fieldKind_t::record;
    /// What more there is to say of the kind: nothing of numbers, flags, 16-bit texts and string_t.
    std::variant<std::monostate, enumWords_t, arrayText_t, pointerText_t, nestedRecord_t, elementRecord_t> details;
    std::optional<listDescription_t> list;
    const void *member = nullptr;        ///< the member that the field is bound to
    std::size_t memberSize = 0;          ///< its size in bytes
    const void *value = nullptr;         ///< where the value is: the member, or inside it
    const std::uint8_t *isSet = nullptr; ///< the flag that tells whether the value counts; null when it always does

    /// The details of this sort; null when there are others or none.
    template <class Details>
    const Details *as() const {
        return std::get_if<Details>(&details);
    }
    bool isList(listKind_t which) const { return list && list->kind == which; }

    template <class Member>
    void bindTo(const Member &bound) {
        standIn(bound);
        value = &bound;
    }

    /// The member holds the value and more.
    template <class Member>
    void standIn(const Member &holder) {
        member = &holder;
        memberSize = sizeof holder;
    }
};

/// What kind of structure a record class stands for.
enum class structureKind_t : std::uint8_t {
    polymorphic, ///< has a virtual destructor
    plain,       ///< a C structure
    ownRecord,   ///< the record is its own structure
};

/// A record class and its message structure, shown to a recordVisitor_t.
struct recordDescription_t {
    std::string_view record;    ///< name of the record class, for example "media_t"
    std::string_view structure; ///< name of the structure, for example "Media"
    std::string_view about;     ///< what the record is about, a sentence or two
    structureKind_t kind;
    const textGroup_t &fields; ///< the record, made to print `address`
    const void *address;       ///< a structure with its declared defaults
    std::size_t size;          ///< its size in bytes
};

class recordVisitor_t {
public:
    /// The description and what it refers to end with the call.
    virtual void visit(const recordDescription_t &description) = 0;

protected:
    ~recordVisitor_t() = default;
};

} // namespace vek
