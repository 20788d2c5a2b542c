#include "vek/records/private/jobRecords.hpp"

namespace vek {

template struct conversionOf<cylinderJob_t>;
template struct conversionOf<jobSepList_t>;
template struct conversionOf<jobPort_t>;
template struct conversionOf<gdapiDataPath_t>;

} // namespace vek
