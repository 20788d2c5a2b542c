// Record classes of exposures. Each line binds a key to its structure's member; the order is the text's.
#include "vek/records/exposure.hpp"

#include "vek/records/private/nestedRecords.hpp"
#include "vek/records/private/record.hpp"
#include "vek/text/scalarFields.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace vek {

struct exposeResolution_t : record_t<ExposeResolution> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "The exposure set-up of one resolution. The laser intensity has 16 bits here, 32 in the exposure parameters.";

    doubleField_t wRes{*this, "W_RES", structure.res.width};
    doubleField_t hRes{*this, "H_RES", structure.res.height};
    doubleField_t dataFreq{*this, "DATA_FREQ", structure.dataFreq};
    doubleField_t spinnerSpeed{*this, "SPINNER_SPEED", structure.spinnerSpeed};
    shortField_t laserIntensity{*this, "LASER_INTENSITY", structure.laserIntensity};
    doubleField_t exposeMhz{*this, "EXPOSE_MHZ", structure.exposeMhz};
};

struct cylinderSize_t : record_t<CylinderSize> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "The largest and the smallest cylinder: four numbers, height first, and no sizes.";

    doubleField_t cylinderSizeMaxH{*this, "CYLINDER_SIZE_MAX_H", structure.cylinderSizeMaxH};
    doubleField_t cylinderSizeMaxW{*this, "CYLINDER_SIZE_MAX_W", structure.cylinderSizeMaxW};
    doubleField_t cylinderSizeMinH{*this, "CYLINDER_SIZE_MIN_H", structure.cylinderSizeMinH};
    doubleField_t cylinderSizeMinW{*this, "CYLINDER_SIZE_MIN_W", structure.cylinderSizeMinW};
};

struct bitmapType_t : record_t<BitmapType> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "A type of bitmap. Its structure has a virtual table but, unlike the others, no kind word.";

    longField_t bitMapType{*this, "BIT_MAP_TYPE", structure.bitMapType};
    stringField_t scrUnitType{*this, "SCR_UNIT_TYPE", structure.scrUnitType};
    stringField_t deviceType{*this, "DEVICE_TYPE", structure.deviceType};
    stringField_t exposeType{*this, "EXPOSE_TYPE", structure.exposeType};
};

struct layout_t : record_t<Layout> {
    using record_t::record_t;
    static constexpr std::string_view about = "A layout. Its separations are one text, no list.";

    longField_t layoutNum{*this, "LAYOUT_NUM", structure.layoutNum};
    longField_t jobId{*this, "JOB_ID", structure.jobId};
    fixedTextField_t<256> jobticketName{*this, "JOBTICKET_NAME", structure.jobticketName};
    fixedTextField_t<256> sepsArray{*this, "SEPS_ARRAY", structure.sepsArray}; // one text, no list
};

struct exposeJob_t : record_t<ExposeJob> {
    using record_t::record_t;
    static constexpr std::string_view about = "An exposure job on a drum, with its media and punch parameters. More "
                                              "systems than there is room for are kept to the room.";

    longField_t drumId{*this, "DRUM_ID", structure.drumId};
    longField_t numPasses{*this, "NUM_PASSES", structure.numPasses};
    longField_t endlessScreen{*this, "ENDLESS_SCREEN", structure.endlessScreen};
    longField_t loadFlag{*this, "LOAD_FLAG", structure.loadFlag};
    longField_t unloadFlag{*this, "UNLOAD_FLAG", structure.unloadFlag};
    fixedTextField_t<256> bitmapFilename{*this, "BITMAP_FILENAME", structure.bitmapFilename};
    doubleField_t marginTop{*this, "MARGIN_TOP", structure.marginTop};
    doubleField_t marginLeft{*this, "MARGIN_LEFT", structure.marginLeft};
    doubleField_t marginBottom{*this, "MARGIN_BOTTOM", structure.marginBottom};
    doubleField_t marginRight{*this, "MARGIN_RIGHT", structure.marginRight};
    doubleField_t wOffset{*this, "W_OFFSET", structure.offset.width};
    doubleField_t hOffset{*this, "H_OFFSET", structure.offset.height};
    doubleField_t wSize{*this, "W_SIZE", structure.size.width};
    doubleField_t hSize{*this, "H_SIZE", structure.size.height};
    doubleField_t wCylinderSize{*this, "W_CYLINDER_SIZE", structure.cylinderSize.width};
    doubleField_t hCylinderSize{*this, "H_CYLINDER_SIZE", structure.cylinderSize.height};
    nested_t<mediaParams_t> mediaParams{*this, "MEDIA_PARAMS", structure.mediaParams};
    nested_t<punchParams_t> punchParams{*this, "PUNCH_PARAMS", structure.punchParams};

    static void setDefaults(ExposeJob &defaults) {
        defaults.offset = defaults.size = defaults.cylinderSize = {.width = -1.0, .height = -1.0};
    }
};

struct exposeParams_t : record_t<ExposeParams> {
    using record_t::record_t;
    static constexpr std::string_view about = "The parameters of one exposure. The pixel sizes are integers in the "
                                              "structure and reals in the text; reading cuts off their fractions.";

    longField_t drumId{*this, "DRUM_ID", structure.drumId};
    longField_t exposeId{*this, "EXPOSE_ID", structure.exposeId};
    doubleField_t spinnerSpeed{*this, "SPINNER_SPEED", structure.spinnerSpeed};
    doubleField_t dataFreq{*this, "DATA_FREQ", structure.dataFreq};
    doubleField_t ld{*this, "LD", structure.ld};
    doubleField_t ls{*this, "LS", structure.ls};
    longField_t laserIntensity{*this, "LASER_INTENSITY", structure.laserIntensity};
    longField_t negative{*this, "NEGATIVE", structure.negative};
    longField_t mirror{*this, "MIRROR", structure.mirror};
    longField_t bitmapByPass{*this, "BITMAP_BY_PASS", structure.bitmapByPass};
    doubleField_t focus{*this, "FOCUS", structure.focus};
    doubleField_t resMotor{*this, "RES_MOTOR", structure.resMotor};
    doubleField_t ddbDelay{*this, "DDB_DELAY", structure.ddbDelay};
    longField_t firstLaserNum{*this, "FIRST_LASER_NUM", structure.firstLaserNum};
    longField_t lastLaserNum{*this, "LAST_LASER_NUM", structure.lastLaserNum};
    pixelField_t wSizePixel{*this, "W_SIZE_PIXEL", structure.sizePixel.width};
    pixelField_t hSizePixel{*this, "H_SIZE_PIXEL", structure.sizePixel.height};
    doubleField_t wSize{*this, "W_SIZE", structure.size.width};
    doubleField_t hSize{*this, "H_SIZE", structure.size.height};
    doubleField_t wOffset{*this, "W_OFFSET", structure.offset.width};
    doubleField_t hOffset{*this, "H_OFFSET", structure.offset.height};
    doubleField_t wRes{*this, "W_RES", structure.res.width};
    doubleField_t hRes{*this, "H_RES", structure.res.height};
    fixedTextField_t<256> ctMapFile{*this, "CT_MAP_FILE", structure.ctMapFile};
    fixedTextField_t<256> lwMapFile{*this, "LW_MAP_FILE", structure.lwMapFile};
    fixedTextField_t<256> oliMapFile{*this, "OLI_MAP_FILE", structure.oliMapFile};
    fixedTextField_t<256> screenType{*this, "SCREEN_TYPE", structure.screenType};

    static void setDefaults(ExposeParams &defaults) {
        defaults.size = defaults.offset = defaults.res = {.width = -1.0, .height = -1.0};
    }
};

/// A text of the image placement, which stands in the structure from `start` to the structure's last byte at most.
/// Its characters are copied only when place() is called, since a name may run on into the separation behind it.
class placedTextField_t : public textField_t {
public:
    placedTextField_t(textGroup_t &group, std::string_view key, char *start, std::size_t size, std::size_t room)
        : textField_t(group, key), start_(start), size_(size), room_(room) {
        if (group.pass() == pass_t::write)
            writtenGroup_t::of(group).append<placedTextField_t>(key, start, room);
    }

    bodyWriter_t toText(bodyWriter_t out) const override {
        return isSet != 0 ? writeValue(written(start_, room_), out) : out;
    }
    static writtenText_t written(const char *start, std::size_t room) { return {start, room, room}; }
    void fromText(std::string_view text) override {
        text_ = text;
        isSet = 1;
    }
    canonicalCursor_t readAt(canonicalCursor_t at) override {
        fromText(at.value());
        return !text_.empty() && text_.size() < size_ ? at : canonicalCursor_t();
    }
    void describe(fieldDescription_t &description) const override;

    /// Writes the text and its terminator over what stands there, except for what would fall behind the room.
    void place();

private:
    char *start_;
    std::size_t size_; // of the member
    std::size_t room_; // that its text may take
    std::string_view text_;
};

struct imageTopLeft_t : record_t<ImageTopLeft> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "The placement of one separation's image on a drum. The structure has each pair height first, the text width "
        "first. A name too long for its array runs on into the separation, over which the separation's own text is "
        "then written.";

    longField_t drumId{*this, "DRUM_ID", structure.drumId};
    longField_t index{*this, "INDEX", structure.index};
    longField_t wTopLeft{*this, "W_TOP_LEFT", structure.topLeft.width};
    longField_t hTopLeft{*this, "H_TOP_LEFT", structure.topLeft.height};
    longField_t wImageTopLeft{*this, "W_IMAGE_TOP_LEFT", structure.imageTopLeft.width};
    longField_t hImageTopLeft{*this, "H_IMAGE_TOP_LEFT", structure.imageTopLeft.height};
    longField_t wMirror{*this, "W_MIRROR", structure.mirror.width};
    longField_t hMirror{*this, "H_MIRROR", structure.mirror.height};
    placedTextField_t name{*this, "NAME", structure.name, sizeof structure.name,
                           sizeof structure.name + sizeof structure.separation};
    placedTextField_t separation{*this, "SEPARATION", structure.separation, sizeof structure.separation,
                                 sizeof structure.separation};

    /// Hosts rely on a long name running on into the separation, and on the separation then being written over it;
    /// so both are placed after the parse, in this order, whatever order the text has them in.
    void assignPairs(tolerantScanner_t &pairs) override;
    canonicalCursor_t readAt(canonicalCursor_t at) override;

private:
    void placeTexts();
};

void placedTextField_t::describe(fieldDescription_t &description) const {
    description.kind = fieldKind_t::text;
    description.member = start_;
    description.memberSize = size_;
    description.value = start_;
    description.details = arrayText_t{static_cast<std::int32_t>(size_), static_cast<std::int32_t>(room_)};
}

void placedTextField_t::place() {
    const std::size_t length = std::min(text_.size(), room_ - 1);
    std::transform(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(length), start_, unescaped);
    start_[length] = '\0';
}

void imageTopLeft_t::placeTexts() {
    std::fill(std::begin(structure.name), std::end(structure.name), '\0');
    std::fill(std::begin(structure.separation), std::end(structure.separation), '\0');
    name.place();
    separation.place();
}

void imageTopLeft_t::assignPairs(tolerantScanner_t &pairs) {
    record_t::assignPairs(pairs);
    placeTexts();
}

canonicalCursor_t imageTopLeft_t::readAt(canonicalCursor_t at) {
    at = record_t::readAt(at);
    placeTexts();
    return at;
}

template struct conversionOf<ExposeResolution, exposeResolution_t>;
template struct conversionOf<CylinderSize, cylinderSize_t>;
template struct conversionOf<BitmapType, bitmapType_t>;
template struct conversionOf<Layout, layout_t>;
template struct conversionOf<ExposeJob, exposeJob_t>;
template struct conversionOf<ExposeParams, exposeParams_t>;
template struct conversionOf<ImageTopLeft, imageTopLeft_t>;

} // namespace vek
