#include "tools/reference/prose.hpp"

#include "tools/reference/markdown.hpp"

#include <array>
#include <stdexcept>
#include <string>

namespace vek {

namespace {

struct prose_t {
    std::string_view record, text;
};

constexpr std::array allProse{
    prose_t{"deviceInfo_t", "The device: its identity, its limits, and the ranges of its parameters."},
    prose_t{"version_t", "The versions of the device's software and hardware."},
    prose_t{"media_t", "A media type."},
    prose_t{"punchSystem_t", "A punch system and the places of its units."},
    prose_t{"cassette_t", "A cassette, that is a media magazine, and the media in it, which stands under the device's "
                          "own word for it."},
    prose_t{"cassetteArray_t", "All cassettes."},
    prose_t{"punchArray_t", "All punch systems."},
    prose_t{"mediaOutput_t", "The media output: its limit, its content and its transport."},
    prose_t{
        "exposeResolution_t",
        "The exposure set-up of one resolution. The laser intensity has 16 bits here, 32 in the exposure parameters."},
    prose_t{"resIntTable_t", "A calibration table: laser intensity and spinner speed by resolution."},
    prose_t{"resIntEntry_t", "Laser intensity and spinner speed of one resolution, as set and by default."},
    prose_t{"tableRef_t", "The number and the name of a calibration table."},
    prose_t{"resIntArray_t", "The calibration tables there are."},
    prose_t{"delayValueTable_t", "The data delay by resolution."},
    prose_t{"delayValue_t", "The data delay in microseconds for one resolution."},
    prose_t{"resMotorTable_t", "The setting of the resolution motor by resolution."},
    prose_t{"resMotorEntry_t", "The setting of the resolution motor for one resolution."},
    prose_t{"focusValue_t", "The focus value for one media name."},
    prose_t{"resIntSpeed_t", "Laser intensity and spiral speed of one resolution, in one table."},
    prose_t{"mediaGroup_t", "A group of media, by their names. The list counts itself; its count is a plain value."},
    prose_t{"mediaGroupArray_t", "All groups of media. The container counts itself; its count is a plain value."},
    prose_t{"mediaArray_t", "All media with their colours. The container counts itself; its size is a plain value."},
    prose_t{"deviceMedia_t", "A media name and its colours. The list counts itself; its size is a plain value."},
    prose_t{"byteId_t", "An id that is a flag."},
    prose_t{"deviceState_t", "The device's state."},
    prose_t{"dataPathPort_t", "The ports of the data path."},
    prose_t{"cylinderJob_t", "A job on a cylinder."},
    prose_t{"deviceMediaNameArray_t", "The names of the media that the device knows."},
    prose_t{"cylinderSize_t", "The largest and the smallest cylinder: four numbers, height first, and no sizes."},
    prose_t{"narrowMode_t", "The narrow mode of a job."},
    prose_t{"supportDataPorts_t", "The data ports that are supported."},
    prose_t{"deviceInfo2_t", "The device, in a structure of its own that is like that of 4096."},
    prose_t{"idRecord_t", "An id. 4160, 4189 and 4192 differ in nothing but the id in the envelope."},
    prose_t{"deviceStatus_t", "The device's status and its messages. A count above the room for them is the host's "
                              "fault and is not checked when a structure is written; reading a text keeps it to the "
                              "room."},
    prose_t{"layout_t", "A layout. Its separations are one text, no list."},
    prose_t{"exposeJob_t", "An exposure job on a drum, with its media and punch parameters. More systems than there is "
                           "room for are kept to the room."},
    prose_t{"exposeParams_t", "The parameters of one exposure. The pixel sizes are integers in the structure and reals "
                              "in the text; reading cuts off their fractions."},
    prose_t{"colorTable_t", "A colour table of a drum. All entries are written."},
    prose_t{"colorValue_t", "A colour's value and flags."},
    prose_t{"imageTopLeft_t", "The placement of one separation's image on a drum. The structure has each pair height "
                              "first, the text width first. A name too long for its array runs on into the separation, "
                              "over which the separation's own text is then written."},
    prose_t{"mediaParams_t", "The media parameters of an exposure job."},
    prose_t{"mediaContent_t", "The content of the media input and output, and their limits."},
    prose_t{"bitmapType_t",
            "A type of bitmap. Its structure has a virtual table but, unlike the others, no kind word."},
    prose_t{"jobSepList_t", "A job's name and its separations. A 16-bit text stands in the body as a list of character "
                            "codes, the terminating 0 included."},
    prose_t{"jobPort_t", "The port of a job. The name stands in the body as a list of character codes, the terminating "
                         "0 included."},
    prose_t{"gdapiDataPath_t", "The data path and its port."},
    prose_t{"info_t", "An information text. The structure owns the text; a null pointer is not written, and a text "
                      "without the key gives an empty one."},
};

} // namespace

std::string_view proseOf(std::string_view record) {
    for (const prose_t &prose : allProse)
        if (prose.record == record)
            return prose.text;
    throw std::runtime_error(joined({"no prose about ", record}));
}

} // namespace vek
