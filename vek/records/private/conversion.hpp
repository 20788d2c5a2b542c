// What the catalogue can do with a record class, without knowing it: make its message structure, read a body into it,
// write a body from it, release it, describe it.
#pragma once

#include "vek/text/bodyWriter.hpp"
#include "vek/text/textField.hpp"

#include <string_view>

namespace vek {

/// The functions for one record class. Their definitions are instantiated where the record class is.
template <class Record>
struct conversionOf {
    /// A structure with its declared defaults. Throws std::bad_alloc.
    static void *create();
    /// Reads a body: every member with a key takes its value from it, or the value of an absent key.
    static void parse(void *structure, std::string_view body);
    /// Appends the body of a structure, which is only read; nothing when no field is set.
    static void print(void *structure, bodyWriter_t &out);
    /// Releases a structure that create() made.
    static void destroy(void *structure);
    static void visit(recordVisitor_t &visitor);
};

/// The same as a value, for a table.
struct conversion_t {
    void *(*create)() = nullptr;
    void (*parse)(void *structure, std::string_view body) = nullptr;
    void (*print)(void *structure, bodyWriter_t &out) = nullptr;
    void (*destroy)(void *structure) = nullptr;
    void (*visit)(recordVisitor_t &visitor) = nullptr;
};

template <class Record>
inline constexpr conversion_t conversion{&conversionOf<Record>::create, &conversionOf<Record>::parse,
                                         &conversionOf<Record>::print, &conversionOf<Record>::destroy,
                                         &conversionOf<Record>::visit};

} // namespace vek
