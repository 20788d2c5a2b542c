// What fields and records say of themselves: enough to document a message, to check one, and to find its members.
//
// Descriptions refer to what they describe and to constants; they own nothing. The words that people read belong to
// whoever shows them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

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
    none,      ///< no list
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

struct fieldDescription_t {
    fieldKind_t kind = fieldKind_t::record;
    listKind_t list = listKind_t::none;
    const void *member = nullptr;        ///< the member that the field is bound to
    std::size_t memberSize = 0;          ///< its size in bytes
    const void *value = nullptr;         ///< where the value is: the member, or inside it
    const std::uint8_t *isSet = nullptr; ///< the flag that tells whether the value counts; null when it always does
    std::string_view enumeration;        ///< an enumeration in words, for example "media type"
    const char *const *names = nullptr;  ///< an enumeration's names, in order of their values
    std::int32_t nameCount = 0;          ///< how many there are
    const textGroup_t *group = nullptr;  ///< a nested record
    std::string_view structure;          ///< the name of a nested record's structure, for example "Media"
    std::int32_t room = -1;              ///< the elements a list of fixed room holds, or a character array's size
    std::int32_t elementRoom = -1;       ///< the size of the character arrays that are a list's elements
    std::int32_t reach = -1;             ///< how far a text may run on behind its array's start; -1: not behind its end
    bool isTextPointer = false;          ///< a text is a pointer to its characters, which may be null; else a string_t
    const void *countMember = nullptr;   ///< the member that limits how many elements of a list are printed
    bool isCountChecked = true;          ///< false: that many are printed, be there as many or not
    void (*visitElement)(recordVisitor_t &) = nullptr; ///< shows the record class of a list's elements

    elementRun_t (*elements)(const void *value) = nullptr; ///< finds a list's elements
    std::size_t elementSize = 0;                           ///< from an element to the next; 0: pointers to them

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
    bool ownsMemory;           ///< a plain structure whose release frees a text too
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
