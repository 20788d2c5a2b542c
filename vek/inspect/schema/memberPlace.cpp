#include "vek/inspect/schema/private/memberPlace.hpp"

#include <utility>

namespace vek::inspect {

memberPlace_t memberAt(const structureLayout_t *layout, std::size_t offset, std::size_t size) {
    foundMember_t found;
    if (layout == nullptr || !findMember(*layout, offset, size, found))
        return {};
    return {std::move(found.path), found.type, found.offset.windows32, found.offset.linux64};
}

} // namespace vek::inspect
