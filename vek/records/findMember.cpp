#include "vek/records/private/layouts/findMember.hpp"

namespace vek {

bool findMember(const structureLayout_t &layout, std::size_t offset, std::size_t size, foundMember_t &found) {
    if (layout.base != nullptr) {
        if (offset == 0 && size == layout.base->size.here()) {
            found.type = layout.base->name;
            found.size = layout.base->size;
            return true;
        }
        if (findMember(*layout.base, offset, size, found))
            return true;
    }
    for (const memberLayout_t &member : layout.members) {
        const std::size_t start = member.offset.here();
        if (offset < start || offset >= start + member.size.here())
            continue;
        found.path += found.path.empty() ? "" : ".";
        found.path += member.name;
        found.offset = found.offset + member.offset;
        found.type = member.type;
        found.size = member.size;
        return (offset == start && size == member.size.here()) ||
               (member.structure != nullptr && findMember(*member.structure, offset - start, size, found));
    }
    return false;
}

const structureLayout_t *layoutNamed(std::string_view structure) {
    for (const layoutFamily_t *family : layoutFamilies())
        for (const structureLayout_t *layout : family->structures)
            if (layout->name == structure)
                return layout;
    return nullptr;
}

} // namespace vek
