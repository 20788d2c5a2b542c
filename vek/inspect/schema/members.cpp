#include "vek/inspect/schema/members.hpp"

#include <utility>

namespace vek::inspect {

namespace {

targetBytes_t targetBytes(bytes_t bytes) {
    return {bytes.windows32, bytes.windows64, bytes.linux64};
}

} // namespace

targetBytes_t sizeOf(std::string_view structure) {
    const structureLayout_t *const layout = layoutNamed(structure);
    return layout != nullptr ? targetBytes(layout->size) : targetBytes_t{};
}

member_t memberAt(const structureLayout_t *layout, std::size_t offset, std::size_t size) {
    foundMember_t found;
    if (layout == nullptr || !findMember(*layout, offset, size, found))
        return {};
    return {std::move(found.path), found.type, targetBytes(found.offset), targetBytes(found.size)};
}

} // namespace vek::inspect
