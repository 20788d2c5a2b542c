#include "tools/reference/pages.hpp"

#include "tools/reference/markdown.hpp"
#include "vek/records/private/layouts/layouts.hpp"

#include <ostream>

namespace vek {

namespace {

constexpr std::string_view layoutIntroduction = R"(# Layouts of the message structures

Where each member of each structure lies, in bytes, for hosts in any language: on Windows with 32 and with 64 bits, by
MinGW's and by Microsoft's compiler alike, and on 64-bit Linux. The same tables are static assertions in the library
(`vek/records/private/layouts`), so a build in which a member has moved fails. Within a major version they stay as they are
([versions.md](versions.md)).

- `int32_t` and its like are signed numbers of as many bits, `uint8_t` and its like unsigned ones, `double` and `float`
  IEEE 754 reals of 64 and 32 bits; `char[n]` holds a text that ends at its NUL or with the array. Everything is
  little-endian. `T *` is a pointer.
- A structure with a virtual table begins with a pointer to it. Members of a base come first.
- Bytes that no member takes are padding.
- The layout of a list or a container does not depend on its elements; `valueRange_t::values_t` is a list of `double`.
- Structures whose names begin with `vek` are plain ones, declared in `vek/records/messages.h` for C hosts; the C++
  headers give them their C++ names.
- What is inside of the library's own fields, which the structures of 4193 to 4195 consist of, is not for hosts.
- Members whose names end in `_`, and `body` of `string_t`, are hidden from C++ hosts, who have functions for them.
- What hosts may change in them, and who releases what, is on [hosts.md](hosts.md); keys and defaults are on
  [messages.md](messages.md).
)";

void writeRow(std::ostream &out, std::string_view name, std::string_view type, bytes_t offset, bytes_t size) {
    out << "| " << name << " | `" << type << "` | " << offset.windows32 << " | " << size.windows32 << " | "
        << offset.windows64 << " | " << size.windows64 << " | " << offset.linux64 << " | " << size.linux64 << " |\n";
}

void writeMembers(std::ostream &out, const structureLayout_t &layout) {
    if (layout.isOpaque)
        return writeRow(out, "*the base*", layout.name, {0, 0}, layout.size);
    if (layout.base != nullptr)
        writeMembers(out, *layout.base);
    else if (layout.hasVirtualTable)
        writeRow(out, "*virtual table*", "const void *", {0, 0}, {4, 8});
    for (const memberLayout_t &member : layout.members)
        writeRow(out, code(member.name), member.type, member.offset, member.size);
}

} // namespace

void writeLayoutPage(std::ostream &out) {
    out << generatedNotice << layoutIntroduction;
    for (const layoutFamily_t *family : layoutFamilies()) {
        out << "\n## " << code(family->header) << "\n";
        for (const structureLayout_t *layout : family->structures) {
            out << "\n### " << code(layout->name) << "\n\n"
                << "Bytes: " << layout->size.windows32 << " on 32-bit Windows, " << layout->size.windows64
                << " on 64-bit Windows, " << layout->size.linux64 << " on Linux.\n\n"
                << "| Member | C type | Windows, 32 | size | Windows, 64 | size | Linux | size |\n"
                << "|---|---|--:|--:|--:|--:|--:|--:|\n";
            writeMembers(out, *layout);
        }
    }
}

} // namespace vek
