#include "vek/vek_std/std_sys/vek_stdlib.hpp"

#include <algorithm>
#include <cstdio>

namespace vek {
namespace {

constexpr char location[] = "vek_std/std_sys/vek_stdlib";
constexpr std::uint32_t swapSizeLine = 16;

const char *currentLocation = nullptr;
std::uint32_t currentLine = 0;

void reportSwapSize() {
    report(" : DIFF_SZ_SWAP");
}

} // namespace

constinit errorHook_t swapSizeHook = reportSwapSize;

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

int report(const char *message) {
    const char *where = currentLocation ? currentLocation : "*unknown";
    return std::fprintf(stderr, "\n%s ; called from %s,%d\n", message, where, static_cast<int>(currentLine));
}

void signalError(const char *where, std::uint32_t line, errorHook_t hook) {
    setLocation(where);
    setLine(line);
    if (hook)
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
