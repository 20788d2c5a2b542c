// record_t: the base of the record classes, which bind the members of a message structure to fields.
//
// To add a message: declare its structure, derive a record class that states each key on one line, in text order, as
// field{*this, "KEY", structure.member}, instantiate conversionOf for it, and give its id a row in
// vek/api/catalogue.cpp and one in vek/api/messageTable.hpp.
#pragma once

#include "vek/records/private/conversion.hpp"
#include "vek/text/private/typeName.hpp"
#include "vek/text/textField.hpp"

#include <cstring>
#include <new>
#include <type_traits>

namespace vek {

/// A record over a structure that it does not own. In a print pass the structure is only read.
template <class Structure>
class record_t : public textGroup_t {
public:
    using structure_t = Structure;
    using value_t = Structure; ///< as an element of a list

    /// A top-level record, or an element of a list.
    record_t(pass_t pass, Structure &bound) : textGroup_t(pass), structure(bound) {}

    /// A record nested in `parent`.
    record_t(textGroup_t &parent, std::string_view key, Structure &bound)
        : textGroup_t(parent, key), structure(bound) {}

    void describe(fieldDescription_t &description) const override {
        textGroup_t::describe(description);
        description.memberType = typeName<Structure>();
        description.bindTo(structure);
    }

protected:
    Structure &structure;
};

/// Gives a value-initialised structure its declared defaults: a plain one is zero but for what the record class's
/// setDefaults() says. Memory that a plain structure owns is released by the record class's releaseMembers().
template <class Record>
void fillWithDefaults(typename Record::structure_t &structure) {
    if constexpr (requires { Record::setDefaults(structure); })
        Record::setDefaults(structure);
}

template <class Record>
void *conversionOf<Record>::create() {
    if constexpr (requires { typename Record::structure_t; }) {
        using structure_t = typename Record::structure_t;
        if constexpr (std::is_polymorphic_v<structure_t>) {
            return new structure_t();
        } else {
            // Cleared as memory, so that padding is zero too.
            auto *structure =
                static_cast<structure_t *>(std::memset(::operator new(sizeof(structure_t)), 0, sizeof(structure_t)));
            fillWithDefaults<Record>(*structure);
            return structure;
        }
    } else {
        return new Record();
    }
}

template <class Record>
void conversionOf<Record>::parse(void *structure, std::string_view body) {
    if constexpr (requires { typename Record::structure_t; })
        Record(pass_t::parse, *static_cast<typename Record::structure_t *>(structure)).fromText(body);
    else
        static_cast<Record *>(structure)->Record::fromText(body);
}

template <class Record>
void conversionOf<Record>::print(void *structure, bodyWriter_t &out) {
    if constexpr (requires { typename Record::structure_t; })
        Record(pass_t::print, *static_cast<typename Record::structure_t *>(structure)).toText(out);
    else
        static_cast<Record *>(structure)->Record::toText(out);
}

template <class Record>
void conversionOf<Record>::destroy(void *structure) {
    if constexpr (requires { typename Record::structure_t; }) {
        using structure_t = typename Record::structure_t;
        if constexpr (std::is_polymorphic_v<structure_t>) {
            delete static_cast<structure_t *>(structure);
        } else {
            if constexpr (requires(structure_t & plain) { Record::releaseMembers(plain); })
                Record::releaseMembers(*static_cast<structure_t *>(structure));
            ::operator delete(structure);
        }
    } else {
        delete static_cast<Record *>(structure);
    }
}

template <class Record>
void visitRecord(recordVisitor_t &visitor) {
    if constexpr (requires { typename Record::structure_t; }) {
        using structure_t = typename Record::structure_t;
        structure_t structure{};
        fillWithDefaults<Record>(structure);
        const Record record(pass_t::print, structure);
        visitor.visit({typeName<Record>(), typeName<structure_t>(), record, &structure, sizeof structure});
    } else {
        const Record record;
        visitor.visit({typeName<Record>(), typeName<Record>(), record, &record, sizeof record});
    }
}

template <class Record>
void conversionOf<Record>::visit(recordVisitor_t &visitor) {
    visitRecord<Record>(visitor);
}

} // namespace vek
