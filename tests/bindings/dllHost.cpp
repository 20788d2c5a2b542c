// Loads a DLL as Python's ctypes does, and makes the calls that it reads: dllHost DLL. For wheels, where there is no
// Python for Windows. A call is a line "NAME LOG SIZE ROOM" and SIZE bytes; its answer a line "RESULT SIZE" and SIZE
// bytes.
#include "tools/bindings/core/vekBindings.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <string>
#include <vector>
#include <windows.h>

namespace {

HMODULE dll;
std::vector<void *> logs;

template <class Call>
Call *entry(const char *name, const Call & /*itsType*/) {
    // By way of a type that compilers let become any function.
    return reinterpret_cast<Call *>(reinterpret_cast<void (*)()>(GetProcAddress(dll, name)));
}

void answer(long long result, const char *bytes, std::size_t size) {
    std::printf("%lld %zu\n", result, size);
    std::fwrite(bytes, 1, size, stdout);
    std::fflush(stdout);
}

void call(char name, std::size_t log, const std::string &text, std::size_t room) {
    std::string buffer(room, '\0');
    if (name == 'R' || name == 'W') {
        const auto read = entry("vekBindingsRead", vekBindingsRead),
                   write = entry("vekBindingsWrite", vekBindingsWrite);
        const std::int32_t size = (name == 'R' ? read : write)(text.data(), text.size(), buffer.data(), room);
        return answer(size, buffer.data(),
                      size < 0 ? room : std::min<std::size_t>(static_cast<std::size_t>(size) + 1, room));
    }
    if (name == 'O') {
        logs.push_back(entry("vekBindingsOpenLog", vekBindingsOpenLog)());
        return answer(static_cast<long long>(logs.size()), "", 0);
    }
    if (name == 'C') {
        entry("vekBindingsCloseLog", vekBindingsCloseLog)(logs.at(log - 1));
        return answer(0, "", 0);
    }
    const std::int32_t size =
        entry("vekBindingsTakeLog", vekBindingsTakeLog)(logs.at(log - 1), text.data(), text.size());
    answer(size, entry("vekBindingsFound", vekBindingsFound)(logs.at(log - 1)),
           size < 0 ? 0 : static_cast<std::size_t>(size));
}

} // namespace

int main(int count, char **arguments) {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    // What it needs is looked for beside it and in the system's folder, not where the program lies or runs.
    dll = count == 2 ? LoadLibraryExA(arguments[1], nullptr,
                                      LOAD_LIBRARY_SEARCH_DEFAULT_DIRS | LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR)
                     : nullptr;
    if (dll == nullptr)
        return std::fprintf(stderr, "dllHost: the DLL can't be loaded: %lu\n", GetLastError()), 1;
    char name = 0;
    for (std::size_t log = 0, size = 0, room = 0; std::scanf("%c %zu %zu %zu", &name, &log, &size, &room) == 4;) {
        std::getchar(); // the line's end
        std::string text(size, '\0');
        if (std::fread(text.data(), 1, size, stdin) != size)
            return 1;
        call(name, log, text, room);
    }
}
