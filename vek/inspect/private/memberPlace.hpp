// Finds members of message structures in the layout tables: by the structure's name, and by where a field is bound.
// What is handed out lives as long as the program.
#pragma once

#include "vek/inspect/schema.hpp"
#include "vek/records/private/layouts/layouts.hpp"

#include <cstddef>
#include <string_view>

namespace vek::inspect {

/// The table of a structure; null when there is none.
const structureLayout_t *layoutNamed(std::string_view structure);

/// The member at `offset`, as compiled here, that takes `size` bytes; the outermost when several do. Without a type
/// when there is none, or no table.
memberPlace_t memberAt(const structureLayout_t *layout, std::size_t offset, std::size_t size);

} // namespace vek::inspect
