#include "vek/records/private/deviceRecords.hpp"

namespace vek {

template struct conversionOf<deviceInfo_t>;
template struct conversionOf<deviceInfo2_t>;
template struct conversionOf<version_t>;
template struct conversionOf<byteId_t>;
template struct conversionOf<deviceState_t>;
template struct conversionOf<dataPathPort_t>;
template struct conversionOf<narrowMode_t>;
template struct conversionOf<supportDataPorts_t>;

} // namespace vek
