#include "vek/vek_std/std_sys/vek_stdlib.hpp"

#include <algorithm>
#include <cstdio>

namespace vek {

namespace {

constexpr char location[] = "vek_std/std_sys/vek_stdlib";
constexpr std::uint32_t swapSizeLine = 16; // as reports name it, wherever the code stands

constinit processWide_t<const char *> currentLocation = nullptr;
constinit processWide_t<std::uint32_t> currentLine = 0;

void reportSwapSize() {
    report(" : DIFF_SZ_SWAP");
}

} // namespace

constinit processWide_t<errorHook_t> swapSizeHook = reportSwapSize;

void setLocation(const char *where) {
    currentLocation = where;
}
const char *getLocation() {
    return currentLocation;
}

void setLine(std::uint32_t line) {
    currentLine = line;
}
std::uint32_t getLine() {
    return currentLine;
}

// By the C library, not by a stream: classes register, and may clash, while statics are being made, the streams among
// them.
int report(const char *message) {
    const char *const known = currentLocation;
    const char *const where = known != nullptr ? known : "*unknown";
    return std::fprintf(stderr, "\n%s ; called from %s,%d\n", message, where, static_cast<int>(currentLine.get()));
}

// Location and line are recorded also when the hook is null: whoever silenced the report may still ask for them. A
// host's own hook may throw, so callers leave nothing half done, or owned by nobody, when they come here.
void signalError(const char *where, std::uint32_t line, errorHook_t hook) {
    setLocation(where);
    setLine(line);
    if (hook != nullptr)
        hook();
}

void *swapMemory(void *a, void *b, std::size_t sizeA, std::size_t sizeB) {
    if (sizeA != sizeB) {
        signalError(location, swapSizeLine, swapSizeHook);
        return nullptr;
    }
    char *bytes = static_cast<char *>(a);
    if (a != b)
        std::swap_ranges(bytes, bytes + sizeA, static_cast<char *>(b));
    return a;
}

} // namespace vek
