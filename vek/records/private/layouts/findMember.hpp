// Finds members of message structures in the layout tables: by the structure's name, and by where a field is bound.
// What is handed out lives as long as the program.
#pragma once

#include "vek/records/private/layouts/layouts.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace vek {

/// The table of a structure; null when there is none.
const structureLayout_t *layoutNamed(std::string_view structure);

struct foundMember_t {
    std::string path; ///< for example "maxDrumSize.width"; empty when it is the structure itself or its base
    std::string_view type;
    bytes_t offset{0, 0};
    bytes_t size{0, 0};
};

/// Finds the member at `offset`, as compiled here, that takes `size` bytes; the outermost when several do. False when
/// there is none. `found` must be new.
bool findMember(const structureLayout_t &layout, std::size_t offset, std::size_t size, foundMember_t &found);

} // namespace vek
