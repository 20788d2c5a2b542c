#include "vek/records/private/layouts/layouts.hpp"

#include "vek/records/private/layouts/fields.hpp"
#include "vek/records/private/layouts/foundation.hpp"
#include "vek/records/private/layouts/objects.hpp"
#include "vek/records/private/layouts/plain.hpp"

namespace vek {

namespace {

template <class... Structures>
constexpr std::array<const structureLayout_t *, sizeof...(Structures)> layouts{&structureLayout<Structures>...};

constexpr std::array families{
    layoutFamily_t{"vek/api/vekParams2ASCII.h",
                   layouts<vekSize, vekHeightWidth, vekPixelSize, vekIdRecord, vekDeviceStatus, vekLayout,
                           vekMediaParams, vekPunchParams, vekExposeJob, vekExposeParams, vekColorValue, vekColorTable,
                           vekImageTopLeft, vekMediaContent, vekInfo>},
    layoutFamily_t{"vek/vek_std/std_sys/vek_string.hpp", layouts<string_t, stringRep_t>},
    layoutFamily_t{"vek/text/growableList.hpp", layouts<growableList_t<string_t>>},
    layoutFamily_t{"vek/text/valueRange.hpp", layouts<valueRange_t>},
    layoutFamily_t{"vek/records/container.hpp", layouts<Container<string_t>, containerBlock_t<string_t>>},
    layoutFamily_t{"vek/records/device.hpp", layouts<DeviceId, DeviceInfo, DeviceInfo2, Version, ByteId, DeviceState,
                                                     DataPathPort, NarrowMode, SupportDataPorts>},
    layoutFamily_t{"vek/records/media.hpp", layouts<Media, Cassette, CassetteArray, MediaOutput, FocusValue, MediaGroup,
                                                    MediaGroupArray, DeviceMedia, MediaArray, DeviceMediaNameArray>},
    layoutFamily_t{"vek/records/punch.hpp", layouts<PunchSystem, PunchArray>},
    layoutFamily_t{"vek/records/tables.hpp", layouts<ResIntEntry, ResIntTable, TableRef, ResIntArray, DelayValue,
                                                     DelayValueTable, ResMotorEntry, ResMotorTable, ResIntSpeed>},
    layoutFamily_t{"vek/records/exposure.hpp", layouts<ExposeResolution, CylinderSize, BitmapType>},
    layoutFamily_t{"vek/records/jobs.hpp", layouts<CylinderJob, jobSepList_t, jobPort_t, gdapiDataPath_t>},
    layoutFamily_t{"vek/text/scalarFields.hpp", layouts<ownField_t<longCodec_t>>},
    layoutFamily_t{"vek/text/enumField.hpp", layouts<ownEnumField_t>},
    layoutFamily_t{
        "vek/text/wideStringField.hpp",
        layouts<wideStringField_t, wideStringListField_t, wideElements_t, wideStringElements_t, wideCharacter_t>},
};

} // namespace

std::span<const layoutFamily_t> layoutFamilies() {
    return families;
}

} // namespace vek
