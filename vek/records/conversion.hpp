// What the catalogue can do with a record class, without knowing it: make its message structure, read a body into it,
// write a body from it, release it, describe it.
#pragma once

#include "vek/text/bodyWriter.hpp"
#include "vek/text/description.hpp"

#include <cstddef>
#include <string_view>

namespace vek {

/// The functions for one record class and the structure that the catalogue says it has. They are instantiated where the
/// record class is, so a row of the catalogue that names another structure does not link.
template <class Structure, class Record>
struct conversionOf {
    /// A structure with its declared defaults. Throws std::bad_alloc.
    static void *create();
    /// Reads a body, which stands in an envelope: every member with a key takes its value from it, or the value of an
    /// absent key.
    static void parse(void *structure, std::string_view body);
    /// Makes a structure of a body that looks as the library writes it, and of which therefore all is read as it says;
    /// null of any other one. Throws std::bad_alloc.
    static void *createFrom(const char *body, std::size_t size);
    /// Appends the body of a structure, which is only read; nothing when no field is set.
    static bodyWriter_t print(const void *structure, bodyWriter_t out);
    /// Releases a structure that create() made.
    static void destroy(void *structure);
    static void visit(recordVisitor_t &visitor);
};

/// The same as a value, for a table.
struct conversion_t {
    void *(*create)() = nullptr;
    void (*parse)(void *structure, std::string_view body) = nullptr;
    bodyWriter_t (*print)(const void *structure, bodyWriter_t out) = nullptr;
    void (*destroy)(void *structure) = nullptr;
};

template <class Structure, class Record>
inline constexpr conversion_t conversion{
    &conversionOf<Structure, Record>::create, &conversionOf<Structure, Record>::parse,
    &conversionOf<Structure, Record>::print, &conversionOf<Structure, Record>::destroy};

} // namespace vek
