// The enumerations with the names of their constants, which stand in the lists that C hosts get them from.
#include "vek/records/enumerations.hpp"
#include "vek/inspect/schema/private/schemaBuilder.hpp"
#include "vek/vek_std/std_sys/vek_ascii.hpp"

#include <array>

namespace vek::inspect {

namespace {

#define VEK_WORD_OF(constant, name) #constant,

constexpr std::array mediaTypes{VEK_MEDIA_TYPES(VEK_WORD_OF)};
constexpr std::array exposurePolarities{VEK_EXPOSURE_POLARITIES(VEK_WORD_OF)};
constexpr std::array transports{VEK_TRANSPORTS(VEK_WORD_OF)};
constexpr std::array dataPaths{VEK_DATA_PATHS(VEK_WORD_OF)};
constexpr std::array rangeTypes{VEK_RANGE_TYPES(VEK_WORD_OF)};

#undef VEK_WORD_OF

std::string inLowerCamelCase(std::string_view words) {
    std::string name;
    bool isFirst = false;
    for (const char c : words) {
        if (c != ' ')
            name += isFirst ? asciiToUpper(c) : c;
        isFirst = c == ' ';
    }
    return name;
}

enumeration_t enumerationOf(const enumNames_t &names, std::span<const char *const> constants) {
    const enumWords_t words = names.words();
    return {words.title, inLowerCamelCase(words.title), words.names, constants};
}

} // namespace

std::vector<enumeration_t> allEnumerations() {
    return {enumerationOf(mediaTypeNames, mediaTypes), enumerationOf(exposurePolarityNames, exposurePolarities),
            enumerationOf(transportNames, transports), enumerationOf(dataPathNames, dataPaths),
            enumerationOf(rangeTypeNames, rangeTypes)};
}

} // namespace vek::inspect
