// Showing a record class to a visitor: how records and the lists of records describe themselves.
#pragma once

#include "vek/text/private/typeName.hpp"
#include "vek/text/textField.hpp"
#include "vek/vek_std/std_sys/private/vek_spareBodies.hpp"

#include <cstring>
#include <type_traits>

namespace vek {

/// A record class over a structure that it does not own; the others are their own structures.
template <class Record>
concept bindsStructure = requires {
    typename Record::structure_t;
};

/// A record class whose plain structure owns memory, which releaseMembers() frees.
template <class Record>
concept ownsMemory = requires(typename Record::structure_t &structure) {
    Record::releaseMembers(structure);
};

/// Gives a structure its declared defaults, which one that is not plain has: zero, padding too, but for what the record
/// class's setDefaults() says.
template <class Record>
void fillWithDefaults(typename Record::structure_t &structure) {
    if constexpr (std::is_trivially_copyable_v<typename Record::structure_t>) {
        constexpr std::size_t fewStores = 128;
        if constexpr (sizeof structure <= fewStores)
            std::memset(static_cast<void *>(&structure), 0, sizeof structure);
        else
            clearStructure(&structure, sizeof structure);
    }
    if constexpr (requires { Record::setDefaults(structure); })
        Record::setDefaults(structure);
}

/// Appends a structure as its record class writes it: in braces, or nothing at all.
template <class Record>
bodyWriter_t writeRecord(const typename Record::structure_t &structure, bodyWriter_t out) {
    return Record(out, const_cast<typename Record::structure_t &>(structure)).ended(); // which only reads it
}

/// Appends an element of a list, a field's or a record's value, and a comma; or nothing.
template <class Element>
bodyWriter_t writeElementOf(const typename Element::value_t &value, bodyWriter_t out) {
    if constexpr (!bindsStructure<Element>) {
        return Element::writeElement(value, out);
    } else {
        const std::size_t start = out.size();
        out = writeRecord<Element>(value, out);
        if (out.size() != start)
            out.put(comma);
        return out;
    }
}

template <class Record>
[[gnu::cold, gnu::flatten]] void visitRecord(recordVisitor_t &visitor) {
    if constexpr (bindsStructure<Record>) {
        using structure_t = typename Record::structure_t;
        structure_t structure;
        fillWithDefaults<Record>(structure);
        const Record record(pass_t::print, structure);
        constexpr structureKind_t kind =
            std::is_polymorphic_v<structure_t> ? structureKind_t::polymorphic : structureKind_t::plain;
        visitor.visit(
            {typeName<Record>(), typeName<structure_t>(), Record::about, kind, record, &structure, sizeof structure});
    } else {
        const Record record;
        visitor.visit({typeName<Record>(), typeName<Record>(), Record::about, structureKind_t::ownRecord, record,
                       &record, sizeof record});
    }
}

} // namespace vek
