// The one table of messages: it ties each id to its structure and to the record class that converts it, and says what
// differs from the ordinary.
//
// To add a message: add its row, in order of the ids. Everything here is a constant.
#pragma once

#include "vek/records/device.hpp"
#include "vek/records/exposure.hpp"
#include "vek/records/jobs.hpp"
#include "vek/records/media.hpp"
#include "vek/records/messages.h"
#include "vek/records/punch.hpp"
#include "vek/records/status.hpp"
#include "vek/records/tables.hpp"

#include <cstdint>
#include <type_traits>

namespace vek {

/// What a call does with an id.
enum class service_t : std::uint8_t {
    full,    ///< what the call is for
    nothing, ///< result 0, but no structure is made, the text is empty, the pointer is put to null
    refused, ///< result -1 and a line on standard output
};

/// A row: vekStrToVal makes the structure and vekValToStr writes it, through the record class; vekParamsDeleteStruct
/// releases it, unless `Release` says that it refuses the id, so that hosts delete it through its virtual destructor.
/// `Record` is private to the library, or the structure itself.
template <std::int32_t Id, class Structure, class Record, service_t Release = service_t::full>
struct message_t {
    static constexpr std::int32_t id = Id;
    static constexpr service_t release = Release;
    using structure_t = Structure;
    using record_t = Record;
};

/// An id that has no structure: vekStrToVal does nothing with it.
struct bareId_t {
    std::int32_t id;
    service_t write;
    service_t release;
};

template <class... Messages>
struct messageTable_t : Messages... {
    static constexpr std::size_t size = sizeof...(Messages);

    /// Calls `visit` with each row, a value of its message_t.
    template <class Visitor>
    static constexpr void forEach(Visitor visit) {
        (visit(Messages()), ...);
    }
};

// clang-format off
using messages_t = messageTable_t<
    message_t<VEK_MSG_DEVICE_INFO, DeviceInfo, struct deviceInfo_t>,
    message_t<VEK_MSG_VERSION, Version, struct version_t>,
    message_t<VEK_MSG_MEDIA, Media, struct media_t>,
    message_t<VEK_MSG_PUNCH_SYSTEM, PunchSystem, struct punchSystem_t>,
    message_t<VEK_MSG_CASSETTE, Cassette, struct cassette_t>,
    message_t<VEK_MSG_CASSETTE_ARRAY, CassetteArray, struct cassetteArray_t>,
    message_t<VEK_MSG_PUNCH_ARRAY, PunchArray, struct punchArray_t>,
    message_t<VEK_MSG_MEDIA_OUTPUT, MediaOutput, struct mediaOutput_t>,
    message_t<VEK_MSG_EXPOSE_RESOLUTION, ExposeResolution, struct exposeResolution_t>,
    message_t<VEK_MSG_RES_INT_TABLE, ResIntTable, struct resIntTable_t>,
    message_t<VEK_MSG_TABLE_REF, TableRef, struct tableRef_t>,
    message_t<VEK_MSG_RES_INT_ARRAY, ResIntArray, struct resIntArray_t>,
    message_t<VEK_MSG_DELAY_VALUE_TABLE, DelayValueTable, struct delayValueTable_t>,
    message_t<VEK_MSG_RES_MOTOR_TABLE, ResMotorTable, struct resMotorTable_t>,
    message_t<VEK_MSG_FOCUS_VALUE, FocusValue, struct focusValue_t>,
    message_t<VEK_MSG_RES_INT_SPEED, ResIntSpeed, struct resIntSpeed_t>,
    message_t<VEK_MSG_MEDIA_GROUP, MediaGroup, struct mediaGroup_t>,
    message_t<VEK_MSG_MEDIA_GROUP_ARRAY, MediaGroupArray, struct mediaGroupArray_t>,
    message_t<VEK_MSG_MEDIA_ARRAY, MediaArray, struct mediaArray_t>,
    message_t<VEK_MSG_BYTE_ID, ByteId, struct byteId_t>,
    message_t<VEK_MSG_DEVICE_STATE, DeviceState, struct deviceState_t>,
    message_t<VEK_MSG_DATA_PATH_PORT, DataPathPort, struct dataPathPort_t>,
    message_t<VEK_MSG_CYLINDER_JOB, CylinderJob, struct cylinderJob_t>,
    message_t<VEK_MSG_DEVICE_MEDIA_NAME_ARRAY, DeviceMediaNameArray, struct deviceMediaNameArray_t>,
    message_t<VEK_MSG_CYLINDER_SIZE, CylinderSize, struct cylinderSize_t>,
    message_t<VEK_MSG_NARROW_MODE, NarrowMode, struct narrowMode_t>,
    message_t<VEK_MSG_SUPPORT_DATA_PORTS, SupportDataPorts, struct supportDataPorts_t, service_t::refused>,
    message_t<VEK_MSG_DEVICE_INFO_2, DeviceInfo2, struct deviceInfo2_t, service_t::refused>,
    message_t<VEK_MSG_ID_RECORD_4160, IdRecord, struct idRecord_t>,
    message_t<VEK_MSG_DEVICE_STATUS, DeviceStatus, struct deviceStatus_t>,
    message_t<VEK_MSG_LAYOUT, Layout, struct layout_t>,
    message_t<VEK_MSG_EXPOSE_JOB, ExposeJob, struct exposeJob_t>,
    message_t<VEK_MSG_EXPOSE_PARAMS, ExposeParams, struct exposeParams_t>,
    message_t<VEK_MSG_COLOR_TABLE, ColorTable, struct colorTable_t>,
    message_t<VEK_MSG_IMAGE_TOP_LEFT, ImageTopLeft, struct imageTopLeft_t>,
    message_t<VEK_MSG_MEDIA_PARAMS, MediaParams, struct mediaParams_t>,
    message_t<VEK_MSG_MEDIA_CONTENT, MediaContent, struct mediaContent_t>,
    message_t<VEK_MSG_BITMAP_TYPE, BitmapType, struct bitmapType_t>,
    message_t<VEK_MSG_ID_RECORD_4189, IdRecord, struct idRecord_t>,
    message_t<VEK_MSG_ID_RECORD_4192, IdRecord, struct idRecord_t>,
    message_t<VEK_MSG_JOB_SEP_LIST, JobSepList, JobSepList>,
    message_t<VEK_MSG_JOB_PORT, JobPort, JobPort>,
    message_t<VEK_MSG_GDAPI_DATA_PATH, GdapiDataPath, GdapiDataPath>,
    message_t<VEK_MSG_INFO, Info, struct info_t>
>;

// The calls deliberately disagree about some of these.
inline constexpr bareId_t bareIds[] = {
    {4162, service_t::refused, service_t::nothing},
    {4174, service_t::refused, service_t::nothing},
    {4175, service_t::refused, service_t::nothing},
    {4178, service_t::refused, service_t::nothing},
    {4179, service_t::refused, service_t::nothing},
    {4180, service_t::refused, service_t::nothing},
    {4190, service_t::nothing, service_t::nothing},
    {4191, service_t::nothing, service_t::nothing},
    {4203, service_t::refused, service_t::refused},
};
// clang-format on

namespace detail {

/// The row of an id, found as the one base of the table that fits.
template <std::int32_t Id, class Structure, class Record, service_t Release>
message_t<Id, Structure, Record, Release> findMessage(const message_t<Id, Structure, Record, Release> &);

struct idsOfStructure_t {
    std::int32_t first = 0;
    int count = 0;
};

template <class Structure>
inline constexpr idsOfStructure_t idsOfStructure = [] {
    idsOfStructure_t ids;
    messages_t::forEach([&ids]<class Message>(Message) {
        if (std::is_same_v<typename Message::structure_t, Structure> && ids.count++ == 0)
            ids.first = Message::id;
    });
    return ids;
}();

} // namespace detail

/// An id that has a structure.
template <std::int32_t Id>
concept structuredId = requires(const messages_t &messages) {
    detail::findMessage<Id>(messages);
};

/// The row of an id.
template <std::int32_t Id>
requires structuredId<Id>
using messageOf_t = decltype(detail::findMessage<Id>(messages_t()));

/// The structure of an id.
template <std::int32_t Id>
requires structuredId<Id>
using structureOf_t = typename messageOf_t<Id>::structure_t;

/// The structure of any message.
template <class T>
concept messageStructure = (detail::idsOfStructure<T>.count > 0);

/// The structure of one message alone, whose id therefore need not be said. IdRecord, which three messages share, is
/// not.
template <class T>
concept soleStructure = (detail::idsOfStructure<T>.count == 1);

template <class T>
concept noSoleStructure = !soleStructure<T>;

/// The id of a structure that is one message's alone.
template <soleStructure T>
inline constexpr std::int32_t idOf = detail::idsOfStructure<T>.first;

} // namespace vek
