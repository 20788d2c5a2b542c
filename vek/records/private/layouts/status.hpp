// Layouts of the message structures of status reports.
#pragma once

#include "vek/records/private/layouts/foundation.hpp"
#include "vek/records/status.hpp"

// offsetof in classes with a virtual table or hidden members is left to compilers; all that build this support it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace vek {

// clang-format off: one line a member

template <>
struct layoutOf<vekIdRecord> : pinned_t<vekIdRecord, void, 4, 4> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, id, 0, 0),
    };
};

template <>
struct layoutOf<vekDeviceStatus> : pinned_t<vekDeviceStatus, void, 2568, 2568> {
    static constexpr std::array members{
        VEK_MEMBER(int32_t, status, 0, 0),       VEK_MEMBER(int32_t, lowStatus, 4, 4),
        VEK_MEMBER(int32_t, severity, 8, 8),     VEK_MEMBER(int32_t, numOfMessages, 12, 12),
        VEK_MEMBER(char[10][255], msgs, 16, 16),
    };
};

template <>
struct layoutOf<vekInfo> : pinned_t<vekInfo, void, 8, 16> {
    static constexpr std::array members{
        VEK_MEMBER(uint8_t, type, 0, 0),
        VEK_MEMBER(char *, info, 4, 8),
    };
};

// clang-format on

inline constexpr layoutFamily_t statusLayouts{"vek/records/status.hpp", layouts<vekIdRecord, vekDeviceStatus, vekInfo>};

} // namespace vek

#pragma GCC diagnostic pop
