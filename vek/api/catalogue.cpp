#include "vek/api/private/catalogue.hpp"

#include <array>
#include <cstddef>

namespace vek {

class deviceInfo_t;
class version_t;
class media_t;
class punchSystem_t;
class cassette_t;
class cassetteArray_t;
class punchArray_t;
class mediaOutput_t;
class exposeResolution_t;
class resIntTable_t;
class tableRef_t;
class resIntArray_t;
class delayValueTable_t;
class resMotorTable_t;
class focusValue_t;
class resIntSpeed_t;
class mediaGroup_t;
class mediaGroupArray_t;
class mediaArray_t;
class byteId_t;
class deviceState_t;
class dataPathPort_t;
class cylinderJob_t;
class deviceMediaNameArray_t;
class cylinderSize_t;
class narrowMode_t;
class supportDataPorts_t;
class deviceInfo2_t;
class idRecord_t;
class deviceStatus_t;
class layout_t;
class exposeJob_t;
class exposeParams_t;
class colorTable_t;
class imageTopLeft_t;
class mediaParams_t;
class mediaContent_t;
class bitmapType_t;
class jobSepList_t;
class jobPort_t;
class gdapiDataPath_t;
class info_t;

namespace {

using enum reading_t;
using r = release_t;
using w = writing_t;

// The three calls deliberately disagree about some ids.
constexpr std::array catalogue{
    catalogueRow_t{4096, object, w::record, r::destructor, &conversion<deviceInfo_t>},
    catalogueRow_t{4097, object, w::record, r::destructor, &conversion<version_t>},
    catalogueRow_t{4098, object, w::record, r::destructor, &conversion<media_t>},
    catalogueRow_t{4099, object, w::record, r::destructor, &conversion<punchSystem_t>},
    catalogueRow_t{4100, object, w::record, r::destructor, &conversion<cassette_t>},
    catalogueRow_t{4101, object, w::record, r::destructor, &conversion<cassetteArray_t>},
    catalogueRow_t{4102, object, w::record, r::destructor, &conversion<punchArray_t>},
    catalogueRow_t{4103, object, w::record, r::destructor, &conversion<mediaOutput_t>},
    catalogueRow_t{4104, object, w::record, r::destructor, &conversion<exposeResolution_t>},
    catalogueRow_t{4105, object, w::record, r::destructor, &conversion<resIntTable_t>},
    catalogueRow_t{4106, object, w::record, r::destructor, &conversion<tableRef_t>},
    catalogueRow_t{4107, object, w::record, r::destructor, &conversion<resIntArray_t>},
    catalogueRow_t{4110, object, w::record, r::destructor, &conversion<delayValueTable_t>},
    catalogueRow_t{4111, object, w::record, r::destructor, &conversion<resMotorTable_t>},
    catalogueRow_t{4112, object, w::record, r::destructor, &conversion<focusValue_t>},
    catalogueRow_t{4113, object, w::record, r::destructor, &conversion<resIntSpeed_t>},
    catalogueRow_t{4114, object, w::record, r::destructor, &conversion<mediaGroup_t>},
    catalogueRow_t{4115, object, w::record, r::destructor, &conversion<mediaGroupArray_t>},
    catalogueRow_t{4116, object, w::record, r::destructor, &conversion<mediaArray_t>},
    catalogueRow_t{4117, object, w::record, r::destructor, &conversion<byteId_t>},
    catalogueRow_t{4118, object, w::record, r::destructor, &conversion<deviceState_t>},
    catalogueRow_t{4119, object, w::record, r::destructor, &conversion<dataPathPort_t>},
    catalogueRow_t{4129, object, w::record, r::destructor, &conversion<cylinderJob_t>},
    catalogueRow_t{4130, object, w::record, r::destructor, &conversion<deviceMediaNameArray_t>},
    catalogueRow_t{4131, object, w::record, r::destructor, &conversion<cylinderSize_t>},
    catalogueRow_t{4132, object, w::record, r::destructor, &conversion<narrowMode_t>},
    catalogueRow_t{4135, object, w::record, r::invalid, &conversion<supportDataPorts_t>},
    catalogueRow_t{4136, object, w::record, r::invalid, &conversion<deviceInfo2_t>},
    catalogueRow_t{4160, plain, w::record, r::plain, &conversion<idRecord_t>},
    catalogueRow_t{4161, plain, w::record, r::plain, &conversion<deviceStatus_t>},
    catalogueRow_t{4162, none, w::invalid, r::nullOnly, nullptr},
    catalogueRow_t{4163, plain, w::record, r::plain, &conversion<layout_t>},
    catalogueRow_t{4164, plain, w::record, r::plain, &conversion<exposeJob_t>},
    catalogueRow_t{4165, plain, w::record, r::plain, &conversion<exposeParams_t>},
    catalogueRow_t{4171, plain, w::record, r::plain, &conversion<colorTable_t>},
    catalogueRow_t{4172, plain, w::record, r::plain, &conversion<imageTopLeft_t>},
    catalogueRow_t{4174, none, w::invalid, r::nullOnly, nullptr},
    catalogueRow_t{4175, none, w::invalid, r::nullOnly, nullptr},
    catalogueRow_t{4178, none, w::invalid, r::nullOnly, nullptr},
    catalogueRow_t{4179, none, w::invalid, r::nullOnly, nullptr},
    catalogueRow_t{4180, none, w::invalid, r::nullOnly, nullptr},
    catalogueRow_t{4182, plain, w::record, r::plain, &conversion<mediaParams_t>},
    catalogueRow_t{4183, plain, w::record, r::plain, &conversion<mediaContent_t>},
    catalogueRow_t{4188, object, w::record, r::destructor, &conversion<bitmapType_t>},
    catalogueRow_t{4189, plain, w::record, r::plain, &conversion<idRecord_t>},
    catalogueRow_t{4190, none, w::empty, r::nullOnly, nullptr},
    catalogueRow_t{4191, none, w::empty, r::nullOnly, nullptr},
    catalogueRow_t{4192, plain, w::record, r::plain, &conversion<idRecord_t>},
    catalogueRow_t{4193, self, w::self, r::destructor, &conversion<jobSepList_t>},
    catalogueRow_t{4194, self, w::self, r::destructor, &conversion<jobPort_t>},
    catalogueRow_t{4195, self, w::self, r::destructor, &conversion<gdapiDataPath_t>},
    catalogueRow_t{4202, plain, w::record, r::ownedBuffer, &conversion<info_t>},
    catalogueRow_t{4203, none, w::invalid, r::invalid, nullptr},
};

constexpr std::int32_t firstId = catalogue.front().id;
constexpr std::size_t idCount = static_cast<std::size_t>(catalogue.back().id - firstId) + 1;

// The row of each id, by its distance from the first.
constexpr std::uint8_t noRow = UINT8_MAX;
constexpr auto rowOfId = [] {
    std::array<std::uint8_t, idCount> rows{};
    rows.fill(noRow);
    for (std::size_t row = 0; row < catalogue.size(); ++row)
        rows[static_cast<std::size_t>(catalogue[row].id - firstId)] = static_cast<std::uint8_t>(row);
    return rows;
}();

} // namespace

const catalogueRow_t *findInCatalogue(std::int32_t id) {
    const auto distance = static_cast<std::size_t>(static_cast<std::uint32_t>(id) - std::uint32_t{firstId});
    const std::uint8_t row = distance < idCount ? rowOfId[distance] : noRow;
    return row != noRow ? &catalogue[row] : nullptr;
}

catalogueRows_t catalogueRows() {
    return {catalogue.data(), catalogue.data() + catalogue.size()};
}

} // namespace vek
