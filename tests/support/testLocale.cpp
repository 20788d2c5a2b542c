// Gives a test program the numbers of the locale that VEK_TEST_LOCALE names, before its tests begin.
#include <clocale>
#include <cstdio>
#include <cstdlib>

namespace {

[[maybe_unused]] const bool isInLocale = [] {
    const char *const name = std::getenv("VEK_TEST_LOCALE");
    if (name == nullptr)
        return false;
    if (std::setlocale(LC_NUMERIC, name) == nullptr || *std::localeconv()->decimal_point != ',') {
        std::fprintf(stderr, "there is no locale %s with a decimal comma\n", name);
        std::exit(1);
    }
    return true;
}();

} // namespace
