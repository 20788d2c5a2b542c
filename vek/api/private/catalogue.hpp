// The catalogue: the table of messages at run time, for looking up an id.
#pragma once

#include "vek/api/messageTable.hpp"
#include "vek/records/conversion.hpp"

#include <cstdint>
#include <span>

namespace vek {

struct catalogueRow_t {
    std::int32_t id;
    const conversion_t *conversion; ///< of its record; null when the id has none, then vekStrToVal does nothing
    service_t write;                ///< what vekValToStr does
    service_t release;              ///< what vekParamsDeleteStruct does
};

/// The row of an id; null for an id that no call takes.
const catalogueRow_t *findInCatalogue(std::int32_t id);

/// Shows the record class of an id to a visitor; null for an id without a structure. No part of the rows, so that a
/// library that describes nothing is without it.
using visitRecord_t = void (*)(recordVisitor_t &visitor);
visitRecord_t visitOf(std::int32_t id);

/// All rows, in order of their ids.
std::span<const catalogueRow_t> catalogueRows();

} // namespace vek
