#include "vek/inspect/private/memberPlace.hpp"

namespace vek::inspect {

namespace {

bool find(const structureLayout_t &layout, std::size_t offset, std::size_t size, memberPlace_t &place) {
    if (layout.base != nullptr) {
        if (offset == 0 && size == layout.base->size.here()) {
            place.type = layout.base->name;
            return true;
        }
        if (find(*layout.base, offset, size, place))
            return true;
    }
    for (const memberLayout_t &member : layout.members) {
        const std::size_t start = member.offset.here();
        if (offset < start || offset >= start + member.size.here())
            continue;
        place.path += place.path.empty() ? "" : ".";
        place.path += member.name;
        place.windows32 += member.offset.windows32;
        place.linux64 += member.offset.linux64;
        place.type = member.type;
        return (offset == start && size == member.size.here()) ||
               (member.structure != nullptr && find(*member.structure, offset - start, size, place));
    }
    return false;
}

} // namespace

const structureLayout_t *layoutNamed(std::string_view structure) {
    for (const layoutFamily_t *family : layoutFamilies())
        for (const structureLayout_t *layout : family->structures)
            if (layout->name == structure)
                return layout;
    return nullptr;
}

memberPlace_t memberAt(const structureLayout_t *layout, std::size_t offset, std::size_t size) {
    memberPlace_t place;
    if (layout == nullptr || !find(*layout, offset, size, place))
        return {};
    return place;
}

} // namespace vek::inspect
