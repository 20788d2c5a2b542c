#include "vek/records/private/tableRecords.hpp"

namespace vek {

template struct conversionOf<resIntTable_t>;
template struct conversionOf<tableRef_t>;
template struct conversionOf<resIntArray_t>;
template struct conversionOf<delayValueTable_t>;
template struct conversionOf<resMotorTable_t>;
template struct conversionOf<resIntSpeed_t>;
template struct conversionOf<colorTable_t>;

} // namespace vek
