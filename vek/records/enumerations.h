/*
 * The enumerations in messages: constants and names. Members of structures that hold one are 32-bit integers, so that
 * their layout is the same for every compiler. Usable from C99 and C++; how C++ hosts find a value's name is in
 * vek/records/enumerations.hpp.
 */
#ifndef VEK_ENUMERATIONS_H
#define VEK_ENUMERATIONS_H

#include "vek/text/enumeration.h"

#define VEK_MEDIA_TYPES(one)                                                                                           \
    one(VEK_MEDIA_FILM, "mediaFilm_e") one(VEK_MEDIA_PAPER, "mediaPaper_e") one(VEK_MEDIA_PLATE, "mediaPlate_e")       \
        one(VEK_MEDIA_BLANKET, "mediaBlanket_e") one(VEK_MEDIA_RECEIVER, "mediaReceiver_e")                            \
            one(VEK_MEDIA_PROOF, "mediaProof_e") one(VEK_MEDIA_BLUE_LINE_PROOF, "mediaBlueLineProof_e")                \
                one(VEK_MEDIA_GRAVURE, "mediaGravure_e") one(VEK_MEDIA_PLATE_PROCESS_LESS, "mediaPlateProcessLess_e")  \
                    one(VEK_MEDIA_UNKNOWN, "unknown_e")

#define VEK_EXPOSURE_POLARITIES(one) one(VEK_EXPOSURE_NEGATIVE, "negative_e") one(VEK_EXPOSURE_POSITIVE, "positive_e")

#define VEK_TRANSPORTS(one) one(VEK_TRANSPORT_ROLLER, "roller_e") one(VEK_TRANSPORT_SHEET, "sheet_e")

#define VEK_DATA_PATHS(one)                                                                                            \
    one(VEK_DATA_PATH_NONE, "NONE") one(VEK_DATA_PATH_TSP, "TSP")                                                      \
        one(VEK_DATA_PATH_SCSI_CONNECTION, "SCSI_CONNECTION") one(VEK_DATA_PATH_BITMAP, "BITMAP")

enum vekMediaType { VEK_MEDIA_TYPES(VEK_CONSTANT_OF) };
enum vekExposurePolarity { VEK_EXPOSURE_POLARITIES(VEK_CONSTANT_OF) };
enum vekTransport { VEK_TRANSPORTS(VEK_CONSTANT_OF) };
enum vekDataPath { VEK_DATA_PATHS(VEK_CONSTANT_OF) };

#endif
