// The C library's numbers with a decimal point, also where the process's locale has a comma: what the tests compare
// with. Under VEK_TEST_LOCALE, the name of a locale with a comma, each test program runs in that one.
#pragma once

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <string>

namespace vek::test {

inline double toDouble(std::string text) {
    std::replace(text.begin(), text.end(), '.', *std::localeconv()->decimal_point);
    return std::strtod(text.c_str(), nullptr);
}

/// Of what printf has made of a number.
inline std::string withPoint(std::string printed) {
    std::replace(printed.begin(), printed.end(), *std::localeconv()->decimal_point, '.');
    return printed;
}

} // namespace vek::test
