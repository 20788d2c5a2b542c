// The catalogue: what the four calls do with each message id.
#pragma once

#include "vek/records/private/conversion.hpp"

#include <cstdint>

namespace vek {

/// What vekStrToVal does. The first three make a structure; they differ in what it is.
enum class reading_t : std::uint8_t {
    object, ///< a polymorphic structure
    plain,  ///< a plain structure
    self,   ///< the record itself
    none,   ///< nothing is made
};

/// What vekValToStr does.
enum class writing_t : std::uint8_t {
    record, ///< writes the structure through its record class
    self,   ///< the structure writes itself
    empty,  ///< hands out the empty string
    invalid,
};

/// What vekParamsDeleteStruct does.
enum class release_t : std::uint8_t {
    destructor,  ///< deletes through the virtual destructor
    plain,       ///< frees a plain structure
    ownedBuffer, ///< frees a plain structure and the text it owns
    nullOnly,    ///< sets the caller's pointer to null
    invalid,
};

struct catalogueRow_t {
    std::int32_t id;
    reading_t reading;
    writing_t writing;
    release_t release;
    const conversion_t *conversion; ///< null when the id has no record
};

/// The row of an id; null for an id that no call takes.
const catalogueRow_t *findInCatalogue(std::int32_t id);

/// All rows, in order of their ids.
struct catalogueRows_t {
    const catalogueRow_t *first;
    const catalogueRow_t *last;
    const catalogueRow_t *begin() const { return first; }
    const catalogueRow_t *end() const { return last; }
};
catalogueRows_t catalogueRows();

} // namespace vek
