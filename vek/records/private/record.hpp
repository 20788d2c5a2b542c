// record_t: the base of the record classes, which bind the members of a message structure to fields.
//
// A record class states each key on one line, in text order, as field{*this, "KEY", structure.member}, and in one line
// what it is about. The steps of adding a message are in docs/adding-a-message.md.
#pragma once

#include "vek/records/conversion.hpp"
#include "vek/text/private/recordVisit.hpp"
#include "vek/text/writtenGroup.hpp"
#include "vek/vek_std/std_sys/private/vek_spareBodies.hpp"

#include <concepts>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>

namespace vek {

/// A record over a structure that it does not own. In a print pass the structure is only read.
template <class Structure>
class record_t : public writtenGroup_t {
public:
    using structure_t = Structure;
    using value_t = Structure; ///< as an element of a list

    /// A top-level record, or an element of a list.
    record_t(pass_t pass, Structure &bound) : writtenGroup_t(pass), structure(bound) {}

    /// The same, written behind `out` as it is made; see writeRecord.
    record_t(bodyWriter_t out, Structure &bound) : writtenGroup_t(out), structure(bound) {}

    void describe(fieldDescription_t &description) const override {
        textGroup_t::describe(description);
        description.details = nestedRecord_t{this, typeName<Structure>()};
        description.bindTo(structure);
    }

protected:
    /// For nested_t.
    record_t(textGroup_t &parent, std::string_view key, Structure &bound)
        : writtenGroup_t(parent, key), structure(bound) {}

    Structure &structure;
};

/// A record that is a member of another: nested_t<media_t> media{*this, "MEDIA", structure.media};
template <class Record>
struct nested_t : Record {
    nested_t(textGroup_t &parent, std::string_view key, typename Record::structure_t &bound)
        : Record(parent, key, bound) {
        this->endIn(parent);
    }
};

namespace detail {

template <class Record>
struct structureOfRecord {
    using type = Record; // its own
};
template <bindsStructure Record>
struct structureOfRecord<Record> {
    using type = typename Record::structure_t;
};

/// Whose code reads and writes a record: its own, or that of the record class that it is like in all but its name.
template <class Record>
struct likeness {
    using type = Record;
};
template <class Record>
requires requires {
    typename Record::like_t;
}
struct likeness<Record> {
    using type = typename Record::like_t;
};

} // namespace detail

template <class Structure, class Record>
void *conversionOf<Structure, Record>::create() {
    static_assert(std::is_same_v<Structure, typename detail::structureOfRecord<Record>::type>,
                  "the record class has another structure");
    static_assert(std::equality_comparable<Structure>, "the structure needs an operator==");
    static_assert(sizeof(Structure) % sizeof(std::int32_t) == 0);
    const auto give = [](void *block) { giveStructure(block, sizeof(Structure)); };
    std::unique_ptr<void, decltype(give)> room(takeStructure(sizeof(Structure)), give);
    if constexpr (std::is_polymorphic_v<Structure>)
        new (room.get()) Structure();
    else
        fillWithDefaults<Record>(*static_cast<Structure *>(room.get()));
    return room.release();
}

namespace detail {

enum class reading_t : std::uint8_t { inOneGo, byEveryRule };

/// Whether the body could be read so. Each time with the record made anew, of which this is the one place.
template <class Record, class Structure>
[[gnu::flatten, gnu::noinline]] bool readBody(Structure &structure, std::string_view body, reading_t reading) {
    const auto read = [body, reading](Record &record) {
        if (reading == reading_t::inOneGo)
            return record.Record::readAt(canonicalCursor_t(body)).isAtEnd();
        record.Record::fromText(body);
        return true;
    };
    if constexpr (bindsStructure<Record>) {
        Record record(pass_t::parse, structure);
        return read(record);
    } else {
        if (reading == reading_t::byEveryRule)
            structure = Record();
        return read(structure);
    }
}

} // namespace detail

// A body that looks as this library writes it is read in one go, any other one from its start by every rule.
template <class Structure, class Record>
void conversionOf<Structure, Record>::parse(void *structure, std::string_view body) {
    using like_t = typename detail::likeness<Record>::type;
    typename detail::structureOfRecord<like_t>::type &read = *static_cast<Structure *>(structure);
    if (!detail::readBody<like_t>(read, body, detail::reading_t::inOneGo))
        detail::readBody<like_t>(read, body, detail::reading_t::byEveryRule);
}

template <class Structure, class Record>
void *conversionOf<Structure, Record>::createFrom(const char *body, std::size_t size) {
    std::unique_ptr<void, void (*)(void *)> structure(create(), &destroy);
    using like_t = typename detail::likeness<Record>::type;
    typename detail::structureOfRecord<like_t>::type &read = *static_cast<Structure *>(structure.get());
    return detail::readBody<like_t>(read, {body, size}, detail::reading_t::inOneGo) ? structure.release() : nullptr;
}

// With the record made inline, where the compiler knows the pass.
template <class Structure, class Record>
[[gnu::flatten, gnu::noinline]] bodyWriter_t conversionOf<Structure, Record>::print(const void *structure,
                                                                                    bodyWriter_t out) {
    const auto &printed = *static_cast<const Structure *>(structure);
    using like_t = typename detail::likeness<Record>::type;
    if constexpr (!std::is_same_v<like_t, Record>)
        return conversionOf<typename like_t::structure_t, like_t>::print(
            static_cast<const typename like_t::structure_t *>(&printed), out);
    else if constexpr (bindsStructure<Record>)
        return writeRecord<Record>(printed, out);
    else
        return printed.Record::toText(out);
}

template <class Structure, class Record>
void conversionOf<Structure, Record>::destroy(void *structure) {
    if constexpr (std::is_polymorphic_v<Structure>)
        static_cast<Structure *>(structure)->~Structure();
    else if constexpr (ownsMemory<Record>)
        Record::releaseMembers(*static_cast<Structure *>(structure));
    giveStructure(structure, sizeof(Structure));
}

template <class Structure, class Record>
void conversionOf<Structure, Record>::visit(recordVisitor_t &visitor) {
    visitRecord<Record>(visitor);
}

} // namespace vek
