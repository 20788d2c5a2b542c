#include "vek/records/private/mediaRecords.hpp"

namespace vek {

template struct conversionOf<media_t>;
template struct conversionOf<cassette_t>;
template struct conversionOf<cassetteArray_t>;
template struct conversionOf<mediaOutput_t>;
template struct conversionOf<focusValue_t>;
template struct conversionOf<mediaGroup_t>;
template struct conversionOf<mediaGroupArray_t>;
template struct conversionOf<mediaArray_t>;
template struct conversionOf<deviceMediaNameArray_t>;
template struct conversionOf<mediaParams_t>;
template struct conversionOf<mediaContent_t>;

} // namespace vek
