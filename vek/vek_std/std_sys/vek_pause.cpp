// The pause manipulator of vek_stdlib.hpp, apart from the reports, so that these need no streams.
#include "vek/vek_std/std_sys/vek_stdlib.hpp"

#include <cstdio>
#include <ostream>

namespace vek {

std::ostream &pause(std::ostream &stream) {
    stream << " ...Hit enter" << std::flush;
    for (int c = std::getchar(); c != '\n' && c != EOF; c = std::getchar()) {
    }
    return stream;
}

} // namespace vek
