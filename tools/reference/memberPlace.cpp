#include "tools/reference/memberPlace.hpp"

#include "tools/reference/markdown.hpp"

#include <stdexcept>

namespace vek {

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
        place.path = joined({place.path, place.path.empty() ? "" : ".", member.name});
        place.offset = place.offset + member.offset;
        place.type = member.type;
        return (offset == start && size == member.size.here()) ||
               (member.structure != nullptr && find(*member.structure, offset - start, size, place));
    }
    return false;
}

} // namespace

foundLayout_t layoutNamed(std::string_view structure) {
    for (const layoutFamily_t *family : layoutFamilies())
        for (const structureLayout_t *layout : family->structures)
            if (layout->name == structure)
                return {*layout, family->header};
    throw std::runtime_error(joined(
        {"no layout of ", structure, ": pin it in vek/records/private/layouts, and name it in its family's list"}));
}

memberPlace_t memberAt(const structureLayout_t &layout, std::size_t offset, std::size_t size) {
    memberPlace_t place{{}, {}, {0, 0}};
    if (!find(layout, offset, size, place))
        throw std::runtime_error(
            joined({"no member of ", std::to_string(size), " bytes at ", std::to_string(offset), " in ", layout.name}));
    return place;
}

} // namespace vek
