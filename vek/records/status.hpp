// Message structures of status reports: plain ones, by their C++ names.
#pragma once

#include "vek/records/messages.hpp"

namespace vek {

using IdRecord = ::vekIdRecord;
using DeviceStatus = ::vekDeviceStatus;
using Info = ::vekInfo;

} // namespace vek
