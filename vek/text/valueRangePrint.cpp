#include "vek/text/valueRangePrint.hpp"

#include <ostream>

namespace vek {

void printRange(std::ostream &out, const valueRange_t &range) {
    out << " ------  RANGE INFO  ------" << std::endl;
    for (std::int32_t i = 0; i < range.count(); ++i)
        out << "  range[" << i << "]= " << range.valueAt(i) << std::endl;
    out << " ----------------------------------" << std::endl;
}

} // namespace vek
