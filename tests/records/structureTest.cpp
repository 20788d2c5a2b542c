// Structures as hosts meet them: their defaults, what a text puts into them, and what they print when a host fills
// them.
#include "tests/support/messages.hpp"
#include "vek/api/private/catalogue.hpp"
#include "vek/records/device.hpp"
#include "vek/records/exposure.hpp"
#include "vek/records/jobs.hpp"
#include "vek/records/media.hpp"
#include "vek/records/punch.hpp"
#include "vek/records/status.hpp"
#include "vek/records/tables.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace vek;
using namespace vek::test;

TEST(Samples, ComeBackByteForByteWithTheNextSequenceNumber) {
    std::set<std::int32_t> ids;
    for (const sample_t &sample : samples()) {
        const structure_t structure(sample.text);
        EXPECT_EQ(written(structure.id, structure.address), message(sample.id, sample.body, 7, 42));
        ids.insert(sample.id);
        EXPECT_NE(structure.address, nullptr) << sample.file << ": vek/api/messageTable.hpp has no row of this id";
    }
    for (const std::int32_t id : bodyIds())
        EXPECT_TRUE(ids.contains(id)) << "message " << id << " has no sample in examples/messages";
}

// The declared defaults, as far as they are not what a body without the key gives.
const std::map<std::int32_t, std::string> declaredDefaults{
    {4096, "{NUM_OF_CASSETTE=1;NUM_LASER_BEAMS=1;SPINNER_SPEED_RANGE_TYPE=continuous_e;SPINNER_SPEED={-1,-1,};"
           "LASER_INT_RANGE_TYPE=continuous_e;LASER_INT={-1,-1,};FOCUS_VALUE_RANGE_TYPE=continuous_e;"
           "FOCUS_VALUE={-1,-1,};}"},
    {4098, "{EXPOSURE_TYPE=positive_e;THICK=-1;VENDOR=normal;}"},
    {4099, "{MIN_FILM_FEED=-1;INDEX=-1;}"},
    {4100, "{VERSION={TYPE=mediaFilm_e;EXPOSURE_TYPE=positive_e;THICK=-1;VENDOR=normal;};}"},
    {4103, "{OUTPUT_TYPE=sheet_e;}"},
    {4105, "{TABLE_ID=-1;}"},
    {4113, "{TABLE_ID=-1;}"},
    {4164, "{W_OFFSET=-1;H_OFFSET=-1;W_SIZE=-1;H_SIZE=-1;W_CYLINDER_SIZE=-1;H_CYLINDER_SIZE=-1;}"},
    {4165, "{W_SIZE=-1;H_SIZE=-1;W_OFFSET=-1;H_OFFSET=-1;W_RES=-1;H_RES=-1;}"},
    {4182, "{UNLOAD_MEDIA_TYPE=-1;UNLOAD_POLICY=-1;FILM_FEED=-1;}"},
    {4183, "{INPUT_CONTENT=1000;MAX_INPUT=1000;MAX_OUTPUT=1000;ONE_EXPOSE_MAX_SIZE=1;IN_OUT_RATIO=1;}"},
    {4188, "{BIT_MAP_TYPE=-1;}"},
};

TEST(Structures, HaveTheirDeclaredDefaultsOnlyWithoutAText) {
    for (const std::int32_t id : bodyIds()) {
        const structure_t defaults = defaultsOf(id), unset = structureOf(id, "{}");
        const auto declared = declaredDefaults.find(id == 4136 ? 4096 : id);
        EXPECT_EQ(writtenBody(id, defaults.address),
                  converted(id, declared == declaredDefaults.end() ? "{}" : declared->second))
            << id;
        for (const structure_t *one : {&defaults, &unset})
            EXPECT_TRUE(id >= 4160 || static_cast<MessageBase *>(one->address)->kind == id - 4096) << id;
    }
}

TEST(Structures, HoldWhatTheTextSaysAndNothingElse) {
    // The resolution of a new range is continuous; one without a key becomes discrete. What has no key stays.
    EXPECT_EQ(defaultsOf(4096).as<DeviceInfo>().resolution.kind, 1);
    EXPECT_EQ(structureOf(4096, "{}").as<DeviceInfo>().resolution.kind, 0);
    EXPECT_EQ(defaultsOf(4202).as<Info>().info, nullptr);
    EXPECT_STREQ(structureOf(4202, "{INFO=\"\";}").as<Info>().info, "");

    auto image = structureOf(4172, "{1,2,3,4,5,6,7,8," + std::string(1000, 'n') + ",}");
    ImageTopLeft placed{.drumId = 1,
                        .index = 2,
                        .topLeft = {.height = 4, .width = 3},
                        .imageTopLeft = {.height = 6, .width = 5},
                        .mirror = {.height = 8, .width = 7}};
    std::memset(placed.name, 'n', sizeof placed.name);
    std::memset(placed.separation + 1, 'n', sizeof placed.separation - 2);
    EXPECT_EQ(std::memcmp(image.address, static_cast<void *>(&placed), sizeof placed), 0)
        << "a name runs on into the separation";

    // Padding is zero, and so is what lies behind a text, whatever its place held before.
    MediaContent content;
    std::memset(static_cast<void *>(&content), 0, sizeof content);
    content.mediaType = 9;
    content.outputType = 3;
    const structure_t read = structureOf(4183, "{MEDIA_TYPE=unknown_e;OUTPUT_TYPE=3;}");
    EXPECT_EQ(std::memcmp(read.address, static_cast<void *>(&content), sizeof content), 0);
    auto status = structureOf(4161, "{NUM_OF_MESSAGES=2;MSGS={a,b,=,};}");
    const auto &messages = status.as<DeviceStatus>().msgs;
    EXPECT_EQ(std::string_view(&messages[0][0], sizeof messages).find_first_not_of('\0'), std::string_view::npos)
        << "what came by position goes with a late key";

    for (std::size_t i = 0; i < 5; ++i) { // each code alone
        const std::string value{static_cast<char>(i + 1), ',', '}'};
        const std::string character(1, "=;,{}"[i]);
        EXPECT_EQ(structureOf(4112, std::string("{") + value).as<FocusValue>().mediaName.c_str(), character);
        EXPECT_EQ(structureOf(4163, std::string("{1,2,") + value).as<Layout>().jobticketName, character);
        EXPECT_EQ(structureOf(4202, std::string("{1,") + value).as<Info>().info, character);
    }
    EXPECT_EQ(structureOf(4107, "{ARRAY_RES_INT={{1,},};}").as<ResIntArray>().at(0)->kind, 10);
    EXPECT_EQ(structureOf(4110, "{DELAY_VALUE_TABLE={x,};}").as<DelayValueTable>().at(0)->kind, -1);
    EXPECT_EQ(structureOf(4101, "{ARRAY_CASSETTE={x,};}").as<CassetteArray>().at(0)->media.thick, 0.0);
}

template <class Structure>
std::string printed(std::int32_t id, Structure &structure) {
    return writtenBody(id, &structure);
}

TEST(HostStructures, PrintListsByTheirCounts) {
    ResIntTable table;
    table.resIntTable.resize(3);
    for (const auto &[count, expected] : {std::pair(0, 1), {2, 4}, {9, 5}, {-4, 1}}) {
        table.numEntries = count;
        const std::string body = printed(4105, table);
        EXPECT_EQ(std::count(body.begin(), body.end(), '{'), expected) << count;
    }
    MediaGroup group;
    group.iCount = 1;
    for (const char *text : {"a", "", "=;,{}\"\x80"})
        group.mediaGroup.add(text);
    EXPECT_EQ(printed(4114, group), "{IS_INSTALLED=0;I_COUNT=1;MEDIA_GROUP={a,\1\2\3\4\5\"\x80,};}");
    ExposeJob job{};
    job.punchParams = {12, 0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}};
    EXPECT_TRUE(printed(4164, job).ends_with("NUM_SYSTEMS=12;ALIGN=0;ACTIVE_SYSTEMS={1,2,3,4,5,6,7,8,9,10,};};}"));
}

TEST(HostStructures, PrintNullItemsAsDefaults) {
    CassetteArray cassettes;
    cassettes.add(nullptr);
    const structure_t cassette = defaultsOf(4100);
    EXPECT_EQ(printed(4101, cassettes), "{ARRAY_CASSETTE={" + writtenBody(4100, cassette.address) + ",};}");
    DeviceMediaNameArray names;
    names.add() = "a";
    names.add(nullptr);
    while (names.count() < 11)
        names.add() = "b";
    EXPECT_EQ(names.capacity(), 20);
    DeviceMediaNameArray copy = names;
    names.clear();
    EXPECT_EQ(printed(4130, names), "");
    names = copy;
    for (DeviceMediaNameArray *array : {&names, &copy})
        EXPECT_EQ(printed(4130, *array), "{DEVICE_MEDIA_NAME_ARRAY={a,b,b,b,b,b,b,b,b,b,};}");
}

TEST(HostStructures, PrintRangesByTheirKind) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        std::int32_t kind;
        std::vector<double> values;
        std::string text;
    } cases[] = {{1, {}, ""},
                 {0, {3, 1, 2}, "DDB_DELAY_RANGE_TYPE=discrete_e;DDB_DELAY={3.000000,1.000000,2.000000,};"},
                 {1, {3, -7, 2}, "DDB_DELAY_RANGE_TYPE=continuous_e;DDB_DELAY={-7.000000,3.000000,};"},
                 {7, {8, 9, 10}, "DDB_DELAY={8.000000,10.000000,};"}, // no name, yet no discrete range
                 {1, {std::copysign(nan, 1), 4}, "DDB_DELAY_RANGE_TYPE=continuous_e;DDB_DELAY={nan,4.000000,};"},
                 {1, {4, nan}, "DDB_DELAY_RANGE_TYPE=continuous_e;DDB_DELAY={4.000000,4.000000,};"},
                 {1, {std::copysign(nan, -1)}, "DDB_DELAY_RANGE_TYPE=continuous_e;DDB_DELAY={-nan,-1.000000,};"}};
    for (const auto &one : cases) {
        DeviceInfo device;
        for (valueRange_t *range : {&device.spinnerSpeed, &device.laserInt, &device.focusValue})
            range->clear();
        device.ddbDelay.setValues(static_cast<std::int32_t>(one.values.size()), one.values.data());
        device.ddbDelay.kind = one.kind;
        const std::string body = printed(4096, device);
        EXPECT_EQ(body.substr(body.find("H_ADDITION=0.000000;") + 20), one.text + '}');
    }
}

TEST(HostStructures, PrintWhateverValuesTheyHold) {
    MediaOutput output;
    output.maxOutput = HUGE_VAL;
    output.outContent = -HUGE_VAL;
    for (const std::int32_t outside : {2, -1, 65536}) {
        output.outputType = outside;
        EXPECT_EQ(printed(4103, output), "{MAX_OUTPUT=inf;OUT_CONTENT=-inf;}") << outside;
    }
    ByteId flag;
    flag.id = 2;
    EXPECT_EQ(printed(4117, flag), "{ID=TRUE;}");

    // Texts without a terminator end with their arrays; only the name of an image runs on into its separation.
    Layout layout;
    std::memset(static_cast<void *>(&layout), 'x', sizeof layout);
    const std::string full(256, 'x'), shorter(132, 'x');
    EXPECT_TRUE(printed(4163, layout).ends_with("JOBTICKET_NAME=" + full + ";SEPS_ARRAY=" + full + ";}"));
    ImageTopLeft image;
    std::memset(static_cast<void *>(&image), 'x', sizeof image);
    EXPECT_TRUE(printed(4172, image).ends_with("NAME=" + full + shorter + ";SEPARATION=" + shorter + ";}"));

    // As many messages as the host says, beyond the structure's own room too; each to its own last character.
    std::vector<char> room(sizeof(DeviceStatus) + std::size_t{2} * 255, 'm');
    const DeviceStatus head{0, 0, 0, 12, {}};
    std::memcpy(room.data(), &head, offsetof(DeviceStatus, msgs));
    room[offsetof(DeviceStatus, msgs) + 254] = ';';
    const std::string body = printed(4161, room[0]);
    EXPECT_TRUE(body.starts_with("{STATUS=0;LOW_STATUS=0;SEVERITY=0;NUM_OF_MESSAGES=12;MSGS={m"));
    EXPECT_EQ(std::count(body.begin(), body.end(), 'm'), 12 * 255 - 1);
    EXPECT_NE(body.find("m\2,m"), std::string::npos);
}

} // namespace
