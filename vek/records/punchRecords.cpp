#include "vek/records/private/punchRecords.hpp"

namespace vek {

template struct conversionOf<punchSystem_t>;
template struct conversionOf<punchArray_t>;

} // namespace vek
