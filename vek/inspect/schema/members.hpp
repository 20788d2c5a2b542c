// Finds members of message structures in the layout tables, as the schema shows them.
#pragma once

#include "vek/inspect/schema/schema.hpp"
#include "vek/records/private/layouts/findMember.hpp"

#include <cstddef>

namespace vek::inspect {

/// The size of a structure; zeros when there is no table.
targetBytes_t sizeOf(std::string_view structure);

/// The member at `offset`, as compiled here, that takes `size` bytes; the outermost when several do. Without a type
/// when there is none, or no table.
member_t memberAt(const structureLayout_t *layout, std::size_t offset, std::size_t size);

} // namespace vek::inspect
