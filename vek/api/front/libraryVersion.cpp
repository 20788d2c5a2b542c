// What the loaded library says of its version: in the resource of the DLL, or in a note of the shared object.
#include "vek/api/libraryVersion.h"

#include "vek/api/private/versionNote.hpp"

#if defined(_WIN32)
#    include <windows.h>
#elif defined(__ELF__)
#    include <link.h>
#endif

#include <cstddef>
#include <cstring>

namespace {

#if defined(_WIN32)

// The resource begins with its own sizes and a key, "VS_VERSION_INFO" in 16-bit characters; the numbers are behind
// them.
std::int32_t ofLibrary() {
    constexpr std::size_t placeOfNumbers = 40;
    HMODULE library = GetModuleHandleW(L"vekParams2ASCII.dll");
    HRSRC place = library == nullptr ? nullptr : FindResourceW(library, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(16));
    HGLOBAL resource = place == nullptr ? nullptr : LoadResource(library, place);
    const void *bytes = resource == nullptr ? nullptr : LockResource(resource);
    VS_FIXEDFILEINFO numbers;
    if (bytes == nullptr || SizeofResource(library, place) < placeOfNumbers + sizeof numbers)
        return 0;
    std::memcpy(&numbers, static_cast<const char *>(bytes) + placeOfNumbers, sizeof numbers);
    return static_cast<std::int32_t>(HIWORD(numbers.dwFileVersionMS) * 10000 + LOWORD(numbers.dwFileVersionMS) * 100 +
                                     HIWORD(numbers.dwFileVersionLS));
}

#elif defined(__ELF__)

// The version that a segment of notes says, or 0. Names and contents are filled up to the segment's alignment.
std::int32_t inNotes(const char *notes, std::size_t size, std::size_t alignment) {
    const auto filled = [alignment](std::size_t bytes) { return (bytes + alignment - 1) / alignment * alignment; };
    const vek::versionNote_t own;
    constexpr std::size_t head = offsetof(vek::versionNote_t, name);
    while (size >= head) {
        vek::versionNote_t note;
        std::memcpy(&note, notes, size < sizeof note ? size : sizeof note);
        if (size >= sizeof note && std::memcmp(&note, &own, offsetof(vek::versionNote_t, version)) == 0)
            return note.version;
        const std::size_t whole = filled(filled(head + note.nameSize) + note.contentSize);
        if (whole > size)
            break;
        notes += whole;
        size -= whole;
    }
    return 0;
}

int lookAt(dl_phdr_info *loaded, std::size_t, void *version) {
    std::int32_t &found = *static_cast<std::int32_t *>(version);
    for (int i = 0; i < loaded->dlpi_phnum && found == 0; ++i) {
        const ElfW(Phdr) &part = loaded->dlpi_phdr[i];
        if (part.p_type == PT_NOTE)
            // NOLINTNEXTLINE(performance-no-int-to-ptr): the loader gives addresses as numbers
            found = inNotes(reinterpret_cast<const char *>(loaded->dlpi_addr + part.p_vaddr), part.p_memsz,
                            part.p_align < 8 ? 4 : 8);
    }
    return found;
}

std::int32_t ofLibrary() {
    std::int32_t version = 0;
    dl_iterate_phdr(lookAt, &version);
    return version;
}

#else

std::int32_t ofLibrary() {
    return 0;
}

#endif

} // namespace

extern "C" std::int32_t vekLibraryVersion() {
    const std::int32_t version = ofLibrary();
    return version != 0 ? version : VEK_VERSION_NUMBER;
}
