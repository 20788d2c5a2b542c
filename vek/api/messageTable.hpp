// The table that ties each message id to its structure, at compile time.
//
// To add a message: add its row. Everything here is a constant.
#pragma once

#include "vek/api/vekParams2ASCII.h"
#include "vek/records/device.hpp"
#include "vek/records/exposure.hpp"
#include "vek/records/jobs.hpp"
#include "vek/records/media.hpp"
#include "vek/records/punch.hpp"
#include "vek/records/status.hpp"
#include "vek/records/tables.hpp"

#include <cstdint>
#include <type_traits>

namespace vek {

/// How a structure that the library made is released: by vekParamsDeleteStruct, or by its virtual destructor when the
/// call refuses its id.
enum class releasedBy_t { call, destructor };

template <std::int32_t Id, class Structure, releasedBy_t ReleasedBy = releasedBy_t::call>
struct message_t {
    static constexpr std::int32_t id = Id;
    static constexpr releasedBy_t releasedBy = ReleasedBy;
    using structure_t = Structure;
};

template <class... Messages>
struct messageTable_t : Messages... {
    /// Calls `visit` with each row, a value of its message_t.
    template <class Visitor>
    static constexpr void forEach(Visitor visit) {
        (visit(Messages()), ...);
    }
};

// clang-format off
using messages_t = messageTable_t<
    message_t<VEK_MSG_DEVICE_INFO, DeviceInfo>,
    message_t<VEK_MSG_VERSION, Version>,
    message_t<VEK_MSG_MEDIA, Media>,
    message_t<VEK_MSG_PUNCH_SYSTEM, PunchSystem>,
    message_t<VEK_MSG_CASSETTE, Cassette>,
    message_t<VEK_MSG_CASSETTE_ARRAY, CassetteArray>,
    message_t<VEK_MSG_PUNCH_ARRAY, PunchArray>,
    message_t<VEK_MSG_MEDIA_OUTPUT, MediaOutput>,
    message_t<VEK_MSG_EXPOSE_RESOLUTION, ExposeResolution>,
    message_t<VEK_MSG_RES_INT_TABLE, ResIntTable>,
    message_t<VEK_MSG_TABLE_REF, TableRef>,
    message_t<VEK_MSG_RES_INT_ARRAY, ResIntArray>,
    message_t<VEK_MSG_DELAY_VALUE_TABLE, DelayValueTable>,
    message_t<VEK_MSG_RES_MOTOR_TABLE, ResMotorTable>,
    message_t<VEK_MSG_FOCUS_VALUE, FocusValue>,
    message_t<VEK_MSG_RES_INT_SPEED, ResIntSpeed>,
    message_t<VEK_MSG_MEDIA_GROUP, MediaGroup>,
    message_t<VEK_MSG_MEDIA_GROUP_ARRAY, MediaGroupArray>,
    message_t<VEK_MSG_MEDIA_ARRAY, MediaArray>,
    message_t<VEK_MSG_BYTE_ID, ByteId>,
    message_t<VEK_MSG_DEVICE_STATE, DeviceState>,
    message_t<VEK_MSG_DATA_PATH_PORT, DataPathPort>,
    message_t<VEK_MSG_CYLINDER_JOB, CylinderJob>,
    message_t<VEK_MSG_DEVICE_MEDIA_NAME_ARRAY, DeviceMediaNameArray>,
    message_t<VEK_MSG_CYLINDER_SIZE, CylinderSize>,
    message_t<VEK_MSG_NARROW_MODE, NarrowMode>,
    message_t<VEK_MSG_SUPPORT_DATA_PORTS, SupportDataPorts, releasedBy_t::destructor>,
    message_t<VEK_MSG_DEVICE_INFO_2, DeviceInfo2, releasedBy_t::destructor>,
    message_t<VEK_MSG_ID_RECORD_4160, IdRecord>,
    message_t<VEK_MSG_DEVICE_STATUS, DeviceStatus>,
    message_t<VEK_MSG_LAYOUT, Layout>,
    message_t<VEK_MSG_EXPOSE_JOB, ExposeJob>,
    message_t<VEK_MSG_EXPOSE_PARAMS, ExposeParams>,
    message_t<VEK_MSG_COLOR_TABLE, ColorTable>,
    message_t<VEK_MSG_IMAGE_TOP_LEFT, ImageTopLeft>,
    message_t<VEK_MSG_MEDIA_PARAMS, MediaParams>,
    message_t<VEK_MSG_MEDIA_CONTENT, MediaContent>,
    message_t<VEK_MSG_BITMAP_TYPE, BitmapType>,
    message_t<VEK_MSG_ID_RECORD_4189, IdRecord>,
    message_t<VEK_MSG_ID_RECORD_4192, IdRecord>,
    message_t<VEK_MSG_JOB_SEP_LIST, JobSepList>,
    message_t<VEK_MSG_JOB_PORT, JobPort>,
    message_t<VEK_MSG_GDAPI_DATA_PATH, GdapiDataPath>,
    message_t<VEK_MSG_INFO, Info>
>;
// clang-format on

namespace detail {

/// The row of an id, found as the one base of the table that fits.
template <std::int32_t Id, class Structure, releasedBy_t ReleasedBy>
message_t<Id, Structure, ReleasedBy> findMessage(const message_t<Id, Structure, ReleasedBy> &);

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

/// The id of a structure that is one message's alone.
template <soleStructure T>
inline constexpr std::int32_t idOf = detail::idsOfStructure<T>.first;

} // namespace vek
