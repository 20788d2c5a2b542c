#include "vek/api/private/loadTime.hpp"

#include "vek/api/private/headerNumbers.hpp"

#include <cstdlib>
#include <cstring>

// A DLL is told by Windows that it is loaded; a static library runs its set-up as the program's own.
#if defined(_WIN32) && !defined(VEK_STATIC)
#    define VEK_DLL
#    include <windows.h>
#endif

namespace vek {

// Defined beside the set-up, so that whoever links the header numbers links the set-up too.
alignas(64) constinit processWide_t<headerNumbers_t> headerNumbers = headerNumbers_t();
std::int32_t debugSwitch = 0;

// At load and not at the first call: the environment counts as it is when the host starts, and the calls stay free of a
// test whether they are the first.
void setUpAtLoad() {
    const char *mode = std::getenv("PLOT_DEBUG_MODE");
    debugSwitch = mode != nullptr && std::strcmp(mode, "msgPrint") == 0 ? 1 : 0;
    headerNumbers = headerNumbers_t();
}

} // namespace vek

#ifdef VEK_DLL
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH)
        vek::setUpAtLoad(); // nothing that may not be done while Windows holds its loader's lock
    return TRUE;
}
#else
namespace {
[[gnu::constructor]] void onLoad() {
    vek::setUpAtLoad();
}
} // namespace
#endif
