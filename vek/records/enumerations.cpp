#include "vek/records/enumerations.hpp"

namespace vek {

namespace {

constexpr std::array mediaTypes{
    "mediaFilm_e",  "mediaPaper_e",         "mediaPlate_e",   "mediaBlanket_e",          "mediaReceiver_e",
    "mediaProof_e", "mediaBlueLineProof_e", "mediaGravure_e", "mediaPlateProcessLess_e", "unknown_e"};
constexpr std::array exposurePolarities{"negative_e", "positive_e"};
constexpr std::array transports{"roller_e", "sheet_e"};
constexpr std::array dataPaths{"NONE", "TSP", "SCSI_CONNECTION", "BITMAP"};

} // namespace

constinit const enumNames_t mediaTypeNames{mediaTypes, "media type"};
constinit const enumNames_t exposurePolarityNames{exposurePolarities, "exposure polarity"};
constinit const enumNames_t transportNames{transports, "transport"};
constinit const enumNames_t dataPathNames{dataPaths, "data path"};

} // namespace vek
