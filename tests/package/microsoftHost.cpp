// A host by Microsoft's C++ ABI and linker: what the DLLs hand out lies where this compiler takes it to lie. Without
// the compiler's own libraries, so members are read and nothing is made. Returns the number of the first step that
// fails.
#include "vek/api/vekParams2ASCII.h"
#include "vek/inspect/vekInspect.h"
#include "vek/records/device.hpp"
#include "vek/records/media.hpp"

namespace {

// What the message holds by default.
template <class Structure>
const Structure *defaults(std::int32_t id) {
    void *structure = nullptr;
    return vekStrToVal(nullptr, &id, &structure) == 0 ? static_cast<const Structure *>(structure) : nullptr;
}

} // namespace

extern "C" {
int _fltused = 0; // which the libraries have for programs with reals
}

extern "C" int begin() {
    const auto *device = defaults<vek::DeviceInfo>(VEK_MSG_DEVICE_INFO);
    if (device == nullptr || device->numOfCassette != 1 || device->numLaserBeams != 1 ||
        device->focusValue.values().size() != 2 || device->focusValue.values()[1] != -1.0)
        return 1;
    void *released = const_cast<vek::DeviceInfo *>(device);
    if (vekParamsDeleteStruct(VEK_MSG_DEVICE_INFO, &released) != 0)
        return 2;

    std::int32_t id = 0;
    void *structure = nullptr;
    if (vekStrToVal("@@4117    31 7 41 {ID=TRUE;}!!", &id, &structure) != 0 || id != VEK_MSG_BYTE_ID)
        return 3;
    if (static_cast<const vek::ByteId *>(structure)->id != 1)
        return 4;
    char *text = nullptr;
    if (vekValToStr(id, structure, &text) != 0 || text[0] != '@')
        return 5;
    vekParamsDelete(text);
    vekParamsDeleteStruct(id, &structure);
    return vekInspectCatalogue(nullptr, 0) > 1000 ? 0 : 6;
}
