// Finds members of message structures in the layout tables: by the structure's name, and by where a field is bound.
#pragma once

#include "vek/records/private/layouts/layouts.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace vek {

struct foundLayout_t {
    const structureLayout_t &layout;
    std::string_view header; ///< that declares the structure
};

/// Throws std::runtime_error when no table has the structure.
foundLayout_t layoutNamed(std::string_view structure);

struct memberPlace_t {
    std::string path; ///< for example "maxDrumSize.width"; empty when it is the structure itself or its base
    std::string_view type;
    bytes_t offset;
};

/// The member at `offset`, as compiled here, that takes `size` bytes; the outermost when several do. Throws
/// std::runtime_error when there is none.
memberPlace_t memberAt(const structureLayout_t &layout, std::size_t offset, std::size_t size);

} // namespace vek
