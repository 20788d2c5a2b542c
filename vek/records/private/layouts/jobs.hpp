// Layouts of the message structures of jobs. Of the fields that three of them consist of, the size and the place are
// pinned, and nothing inside.
#pragma once

#include "vek/records/jobs.hpp"
#include "vek/records/private/layouts/foundation.hpp"

// offsetof in classes with a virtual table or hidden members is left to compilers; all that build this support it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace vek {

// clang-format off: one line a member

template <>
struct layoutOf<textGroup_t> : opaque_t<textGroup_t, 36, 56> {};

template <>
struct layoutOf<wideStringField_t> : opaque_t<wideStringField_t, 68, 96> {};

template <>
struct layoutOf<wideStringListField_t> : opaque_t<wideStringListField_t, 64, 96> {};

template <>
struct layoutOf<ownField_t<longCodec_t>> : opaque_t<ownField_t<longCodec_t>, 24, 40> {
    static constexpr std::string_view name = "ownField_t<longCodec_t>";
};

template <>
struct layoutOf<ownEnumField_t> : opaque_t<ownEnumField_t, 28, 48> {};

template <>
struct layoutOf<CylinderJob> : pinned_t<CylinderJob, MessageBase, 276, 280, 288> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, cylinderId, 8, 12, 16),
        VEK_MEMBER(uint8_t, isEndlessScreen, 12, 16, 20),
        VEK_MEMBER(int32_t, jobId, 16, 20, 24),
        VEK_MEMBER(char[256], deviceMediaNameId, 20, 24, 28),
    };
};

template <>
struct layoutOf<jobSepList_t> : pinned_t<jobSepList_t, textGroup_t, 168, 248> {
    static constexpr std::array members{
        VEK_MEMBER(wideStringField_t, jobName, 36, 56),
        VEK_MEMBER(wideStringListField_t, sepList, 104, 152),
    };
};

template <>
struct layoutOf<jobPort_t> : pinned_t<jobPort_t, textGroup_t, 152, 232> {
    static constexpr std::array members{
        VEK_MEMBER(wideStringField_t, jobName, 36, 56),
        VEK_MEMBER(ownField_t<longCodec_t>, jobId, 104, 152),
        VEK_MEMBER(ownField_t<longCodec_t>, jobPort, 128, 192),
    };
};

template <>
struct layoutOf<gdapiDataPath_t> : pinned_t<gdapiDataPath_t, textGroup_t, 88, 144> {
    static constexpr std::array members{
        VEK_MEMBER(ownEnumField_t, gdapiDataPath, 36, 56),
        VEK_MEMBER(ownField_t<longCodec_t>, lptScsiPort, 64, 104),
    };
};

// clang-format on

inline constexpr layoutFamily_t jobLayouts{"vek/records/jobs.hpp",
                                           layouts<CylinderJob, jobSepList_t, jobPort_t, gdapiDataPath_t>};

} // namespace vek

#pragma GCC diagnostic pop
