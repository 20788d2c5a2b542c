#include "records/layouts/layouts.hpp"

#include "records/layouts/fields.hpp"
#include "records/layouts/foundation.hpp"
#include "records/layouts/objects.hpp"
#include "records/layouts/plain.hpp"

namespace vek {

namespace {

template <class... Structures>
constexpr std::array<const structureLayout_t *, sizeof...(Structures)> layouts{&structureLayout<Structures>...};

constexpr std::array families{
    layoutFamily_t{"api/vekParams2ASCII.h",
                   layouts<vekSize, vekHeightWidth, vekPixelSize, vekIdRecord, vekDeviceStatus, vekLayout,
                           vekMediaParams, vekPunchParams, vekExposeJob, vekExposeParams, vekColorValue, vekColorTable,
                           vekImageTopLeft, vekMediaContent, vekInfo>},
    layoutFamily_t{"vek_std/std_sys/vek_string.hpp", layouts<string_t, stringRep_t>},
    layoutFamily_t{"text/growableList.hpp", layouts<growableList_t<string_t>>},
    layoutFamily_t{"text/valueRange.hpp", layouts<valueRange_t>},
    layoutFamily_t{"records/container.hpp", layouts<Container<string_t>, containerBlock_t<string_t>>},
    layoutFamily_t{"records/device.hpp", layouts<DeviceId, DeviceInfo, DeviceInfo2, Version, ByteId, DeviceState,
                                                 DataPathPort, NarrowMode, SupportDataPorts>},
    layoutFamily_t{"records/media.hpp", layouts<Media, Cassette, CassetteArray, MediaOutput, FocusValue, MediaGroup,
                                                MediaGroupArray, DeviceMedia, MediaArray, DeviceMediaNameArray>},
    layoutFamily_t{"records/punch.hpp", layouts<PunchSystem, PunchArray>},
    layoutFamily_t{"records/tables.hpp", layouts<ResIntEntry, ResIntTable, TableRef, ResIntArray, DelayValue,
                                                 DelayValueTable, ResMotorEntry, ResMotorTable, ResIntSpeed>},
    layoutFamily_t{"records/exposure.hpp", layouts<ExposeResolution, CylinderSize, BitmapType>},
    layoutFamily_t{"records/jobs.hpp", layouts<CylinderJob, jobSepList_t, jobPort_t, gdapiDataPath_t>},
    layoutFamily_t{"text/scalarFields.hpp", layouts<ownField_t<longCodec_t>>},
    layoutFamily_t{"text/enumField.hpp", layouts<ownEnumField_t>},
    layoutFamily_t{
        "text/wideStringField.hpp",
        layouts<wideStringField_t, wideStringListField_t, wideElements_t, wideStringElements_t, wideCharacter_t>},
};

} // namespace

std::span<const layoutFamily_t> layoutFamilies() {
    return families;
}

} // namespace vek
