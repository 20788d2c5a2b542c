// The schema: every message, its record, its keys with their kinds, names, members and defaults, as data.
//
// It is made once, from the declarations that convert, when it is first asked for; it then never changes, so it may be
// read from any thread. Everything it hands out lives as long as the program.
#pragma once

#include "vek/api/messageTable.hpp"
#include "vek/text/description.hpp"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vek {
struct conversion_t;
}

namespace vek::inspect {

struct recordSchema_t;
struct fieldSchema_t;

constexpr bool isInteger(fieldKind_t kind) {
    return kind == fieldKind_t::integer32 || kind == fieldKind_t::integer16;
}
/// Written with a point.
constexpr bool isReal(fieldKind_t kind) {
    return kind == fieldKind_t::float64 || kind == fieldKind_t::float32 || kind == fieldKind_t::pixels;
}
constexpr bool isNumber(fieldKind_t kind) {
    return isInteger(kind) || isReal(kind);
}

/// What a structure with the declared defaults has in a field.
enum class defaultKind_t : std::uint8_t {
    value,  ///< what defaultText says
    empty,  ///< nothing that would be written
    zero,   ///< an array of fixed room that is all zero
    null,   ///< a null pointer
    notSet, ///< the field of a record that is its own structure
    record, ///< a nested record: see its fields
};

/// A number of bytes on 32-bit Windows, 64-bit Windows and 64-bit Linux.
struct targetBytes_t {
    std::size_t windows32 = 0;
    std::size_t windows64 = 0;
    std::size_t linux64 = 0;
};

/// A member of a structure, and where it lies.
struct member_t {
    std::string path;      ///< for example "maxDrumSize.width"; empty when it is the structure itself or its base
    std::string_view type; ///< as it is declared in C; empty when no layout table has the member
    targetBytes_t offset;
    targetBytes_t size;
};

/// An enumeration in messages.
struct enumeration_t {
    std::string_view words;                 ///< for example "media type"
    std::string name;                       ///< the same as an identifier: "mediaType"
    std::span<const char *const> names;     ///< in order of their values from 0
    std::span<const char *const> constants; ///< the same in C: "VEK_MEDIA_FILM"
};

/// A list: what its elements are is what the field says of itself.
struct listSchema_t {
    listKind_t kind = listKind_t::growable;
    std::optional<std::int32_t> room{};       ///< elements that a list of fixed room holds
    const fieldSchema_t *counter = nullptr;   ///< the key that limits how many elements are written; null: all are
    bool isCountChecked = true;               ///< false: so many are written, be there as many or not
    const fieldSchema_t *rangeType = nullptr; ///< of a range's values: the key of its type
};

/// One key of a record.
struct fieldSchema_t {
    std::string_view key;
    std::int32_t position = 0;              ///< in its record, which is its place in a positional body
    fieldKind_t kind = fieldKind_t::record; ///< of a list, that of its elements
    /// What more there is to say of the kind: an enumeration's names; the array that holds a text; the nested record,
    /// or the record of a list's elements, which is never null.
    std::variant<std::monostate, enumWords_t, arrayText_t, const recordSchema_t *> details;
    std::optional<listSchema_t> list;
    member_t member; ///< in the structure of the record that stands at the top
    defaultKind_t defaultKind = defaultKind_t::empty;
    std::string defaultText; ///< as it is written in a body

    bool isList() const { return list.has_value(); }
    bool isList(listKind_t which) const { return list && list->kind == which; }
    /// A group in a body: a nested record, a list, or a 16-bit text, which is a list of codes.
    bool isGroup() const { return isList() || kind == fieldKind_t::record || kind == fieldKind_t::text16; }
    /// The nested record, or that of a list's elements; null when there is none.
    const recordSchema_t *record() const;
    /// An enumeration's; empty when it is none.
    enumWords_t words() const;
    /// The size of the character array that a text, or each text of a list, lies in.
    std::optional<std::int32_t> textRoom() const;
    /// Of a list: the key that limits it; else null.
    const fieldSchema_t *counter() const { return list ? list->counter : nullptr; }
    const fieldSchema_t *rangeType() const { return list ? list->rangeType : nullptr; }
    /// The value of an enumeration's name, -1 when there is none.
    std::int32_t valueOf(std::string_view name) const;
};

/// A record: that of a message, of a list's elements, or nested.
struct recordSchema_t {
    std::string_view name; ///< of the record class, for example "focusValue_t"; of a nested record, its structure's
    std::string_view structure; ///< for example "FocusValue"
    std::string_view about;     ///< what it is about, a sentence or two; empty for a nested record
    structureKind_t kind = structureKind_t::plain;
    bool hasCounts = false;            ///< a key of it, or of a record in it, counts a list
    std::int32_t roomOfSpill = 0;      ///< of a text that runs on into the next member when it is longer; 0: none does
    bool isNested = false;             ///< a part of the structure of another record, whose members it names
    targetBytes_t size;                ///< of its structure
    std::vector<fieldSchema_t> fields; ///< in text order; never changes, so pointers to its elements stay

    /// What it is about in its first sentence.
    std::string_view purpose() const;
    /// The field with exactly this key; null when there is none. The one at `hint` is looked at first.
    const fieldSchema_t *find(std::string_view key, std::size_t hint = 0) const;
};

/// A row of the catalogue.
struct messageSchema_t {
    std::int32_t id = 0;
    std::string_view constant;              ///< "VEK_MSG_FOCUS_VALUE"; empty for an id without a structure
    const recordSchema_t *record = nullptr; ///< null for an id without a structure
    const conversion_t *conversion = nullptr;
    service_t write = service_t::full;   ///< what vekValToStr does
    service_t release = service_t::full; ///< what vekParamsDeleteStruct does
};

/// A place where a key stands.
struct keyUse_t {
    const messageSchema_t *message;
    const fieldSchema_t *field;
    std::string path; ///< "ARRAY_CASSETTE[].VERSION.TYPE"
};

class schema_t {
public:
    schema_t();
    schema_t(const schema_t &) = delete;
    schema_t &operator=(const schema_t &) = delete;

    /// Every row of the catalogue, in order of the ids.
    const std::vector<messageSchema_t> &messages() const { return messages_; }

    const std::vector<enumeration_t> &enumerations() const { return enumerations_; }
    /// That of a field; null when it has none.
    const enumeration_t *enumerationOf(const fieldSchema_t &field) const;

    /// The records of messages and of lists' elements, each once.
    std::vector<const recordSchema_t *> records() const;

    /// Null for an id that no call takes.
    const messageSchema_t *find(std::int32_t id) const;

    /// The messages of a word that a person may use: an id in digits, a constant with or without "VEK_MSG_", the name
    /// of a record with or without "_t", or of a structure. Letter case does not count. Three messages share a record.
    std::vector<const messageSchema_t *> findNamed(std::string_view word) const;

    /// Everywhere that a key stands, letter case not counting, in order of the ids.
    std::vector<keyUse_t> usesOf(std::string_view key) const;

    /// Every key there is, once, in alphabetical order.
    std::vector<std::string_view> keys() const;

private:
    friend class schemaBuilder_t;

    std::vector<enumeration_t> enumerations_;
    std::deque<recordSchema_t> records_; // nested ones too
    std::vector<messageSchema_t> messages_;
};

/// The one schema. Made on the first call; throws std::bad_alloc then.
const schema_t &schema();

/// In a word for people: "long integer", "list of strings", "enumeration media type", "array of 10 shorts".
std::string kindInWords(const fieldSchema_t &field);

/// The declared default as it is written in a body, or what a structure has instead: "(null)"; empty when there is
/// none.
std::string_view defaultInWords(const fieldSchema_t &field);

/// Of a scalar kind alone: "long integer", "double", "string"; "pixels" are a double in the text, a long integer in the
/// structure.
std::string_view kindName(fieldKind_t kind);

/// How a list is held: "list", "container", "array", "range"; empty for what is no list.
std::string_view listName(listKind_t list);

} // namespace vek::inspect
