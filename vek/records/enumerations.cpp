#include "vek/records/enumerations.hpp"

namespace vek {

namespace {

constexpr std::array mediaTypes{VEK_MEDIA_TYPES(VEK_NAME_OF)};
constexpr std::array exposurePolarities{VEK_EXPOSURE_POLARITIES(VEK_NAME_OF)};
constexpr std::array transports{VEK_TRANSPORTS(VEK_NAME_OF)};
constexpr std::array dataPaths{VEK_DATA_PATHS(VEK_NAME_OF)};

} // namespace

constinit const enumNames_t mediaTypeNames{mediaTypes, "media type"};
constinit const enumNames_t exposurePolarityNames{exposurePolarities, "exposure polarity"};
constinit const enumNames_t transportNames{transports, "transport"};
constinit const enumNames_t dataPathNames{dataPaths, "data path"};

} // namespace vek
