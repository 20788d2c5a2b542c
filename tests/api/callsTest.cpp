// The four calls: what they do with every id, with null pointers, and with what stands around them.
#include "api/envelopeWriter.hpp"
#include "foundation/reports.hpp"
#include "records/status.hpp"
#include "support/messages.hpp"

#include <gtest/gtest.h>

#include <malloc.h>
#include <string>

namespace {

using namespace vek;
using namespace vek::test;

enum class reads_t { structure, nothing, refused };
enum class writes_t { body, empty, refused };
enum class releases_t { structure, nullOnly, refused };

struct row_t {
    std::int32_t first, last;
    reads_t reads;
    writes_t writes;
    releases_t releases;
};

// Written down once more on purpose: the three calls agree about few ids, and every one of these is a promise.
constexpr row_t rows[] = {
    {4096, 4107, reads_t::structure, writes_t::body, releases_t::structure},
    {4110, 4119, reads_t::structure, writes_t::body, releases_t::structure},
    {4129, 4132, reads_t::structure, writes_t::body, releases_t::structure},
    {4135, 4136, reads_t::structure, writes_t::body, releases_t::refused},
    {4160, 4161, reads_t::structure, writes_t::body, releases_t::structure},
    {4162, 4162, reads_t::nothing, writes_t::refused, releases_t::nullOnly},
    {4163, 4165, reads_t::structure, writes_t::body, releases_t::structure},
    {4171, 4172, reads_t::structure, writes_t::body, releases_t::structure},
    {4174, 4175, reads_t::nothing, writes_t::refused, releases_t::nullOnly},
    {4178, 4180, reads_t::nothing, writes_t::refused, releases_t::nullOnly},
    {4182, 4183, reads_t::structure, writes_t::body, releases_t::structure},
    {4188, 4189, reads_t::structure, writes_t::body, releases_t::structure},
    {4190, 4191, reads_t::nothing, writes_t::empty, releases_t::nullOnly},
    {4192, 4195, reads_t::structure, writes_t::body, releases_t::structure},
    {4202, 4202, reads_t::structure, writes_t::body, releases_t::structure},
    {4203, 4203, reads_t::nothing, writes_t::refused, releases_t::refused},
};

row_t rowOf(std::int32_t id) {
    for (const row_t &row : rows)
        if (id >= row.first && id <= row.last)
            return row;
    return {id, id, reads_t::refused, writes_t::refused, releases_t::refused};
}

std::vector<std::int32_t> idsToTry() {
    std::vector<std::int32_t> ids{INT32_MIN, -1, 0, 1, 4095 + 65536, INT32_MAX};
    for (std::int32_t id = 4090; id <= 4210; ++id)
        ids.push_back(id);
    return ids;
}

std::string refusal(bool isRefused, const char *line, std::int32_t id) {
    return isRefused ? line + std::to_string(id) + '\n' : std::string();
}

char dummy; // a structure that nobody looks at

TEST(Calls, ReadAndReleaseEveryIdAsTheCatalogueSays) {
    for (const std::int32_t id : idsToTry()) {
        const row_t row = rowOf(id);
        const std::string text = message(id, "{}");
        for (const char *input : {static_cast<const char *>(nullptr), text.c_str()}) {
            std::int32_t result = 1;
            std::int32_t givenId = input == nullptr ? id : 4112;
            void *structure = &dummy;
            const std::string line = printed([&] { result = vekStrToVal(input, &givenId, &structure); });
            EXPECT_EQ(givenId, id);
            EXPECT_EQ(result, row.reads == reads_t::refused ? -1 : 0) << id;
            EXPECT_EQ(line, refusal(row.reads == reads_t::refused, "vekStrToVal: InvalidMsgId = ", id));
            EXPECT_EQ(structure == &dummy, row.reads != reads_t::structure) << id;
            EXPECT_NE(structure, nullptr) << id;

            void *released = structure;
            const std::string releaseLine = printed([&] { result = vekParamsDeleteStruct(id, &released); });
            const bool isRefused = row.releases == releases_t::refused;
            EXPECT_EQ(result, isRefused ? -1 : 0) << id;
            EXPECT_EQ(releaseLine, refusal(isRefused, "vekStrToVal: InvalidMsgId = ", id));
            EXPECT_EQ(released, row.releases == releases_t::nullOnly ? nullptr : structure) << id;
            if (isRefused && row.reads == reads_t::structure) { // still alive
                const structure_t owner(id, structure);
                EXPECT_NE(writtenBody(id, structure), "") << id;
            }
        }
        void *none = nullptr;
        printed([&] { vekParamsDeleteStruct(id, &none); });
        EXPECT_EQ(none, nullptr);
    }
}

TEST(Calls, WriteEveryIdAsTheCatalogueSays) {
    for (const std::int32_t id : idsToTry()) {
        const row_t row = rowOf(id);
        const bool isRefused = row.writes == writes_t::refused;
        std::int32_t result = 1;
        char *text = nullptr;
        headerNumbers = {};
        EXPECT_EQ(printed([&] { result = vekValToStr(id, nullptr, &text); }), "");
        EXPECT_EQ(result, 0) << id;
        EXPECT_EQ(text, message(id, "", -1, 1));
        EXPECT_GE(malloc_usable_size(text), 40960U) << id;
        vekParamsDelete(text);
        if (row.writes == writes_t::body)
            continue;
        EXPECT_EQ(printed([&] { result = vekValToStr(id, &dummy, &text); }),
                  refusal(isRefused, "vekValToStr: Invalid msg ID = ", id));
        EXPECT_EQ(result, isRefused ? -1 : 0) << id;
        EXPECT_STREQ(text, "") << id;
        EXPECT_GE(malloc_usable_size(text), 40960U) << id;
        vekParamsDelete(text);
    }
}

TEST(Calls, GiveTextsTheRoomOfTheirBodyAnd256) {
    const auto expectRoom = [](std::int32_t id, void *structure) {
        char *text = nullptr;
        ASSERT_EQ(vekValToStr(id, structure, &text), 0);
        EXPECT_GE(malloc_usable_size(text), bodyOf(text).size() + 256) << text;
        vekParamsDelete(text);
    };
    for (const sample_t &sample : samples())
        expectRoom(sample.id, structure_t(sample.text).address);
    for (std::size_t length = 0; length < 3000; length += length % 256 < 20 ? 1 : 29) {
        std::string text(length, 'i');
        Info info{1, text.data()};
        expectRoom(4202, &info);
    }
    const structure_t nothingToPrint = defaultsOf(4193);
    headerNumbers = {};
    EXPECT_EQ(written(4193, nothingToPrint.address), "@@4193    21 -1 1 !!");
    expectRoom(4193, nothingToPrint.address);
    vekParamsDelete(nullptr);
}

TEST(Calls, RefuseNullPointersAndTheEmptyTextInSilence) {
    headerNumbers = {0, 3, 4};
    const std::string text = message(4118, "{}");
    std::int32_t id = 4118;
    void *structure = &dummy;
    EXPECT_EQ(printed([&] {
                  EXPECT_EQ(vekStrToVal(text.c_str(), nullptr, &structure), -1);
                  EXPECT_EQ(vekStrToVal(text.c_str(), &id, nullptr), -1);
                  EXPECT_EQ(vekStrToVal(nullptr, &id, nullptr), -1);
                  EXPECT_EQ(vekStrToVal("", &id, &structure), -1);
                  EXPECT_EQ(vekValToStr(4118, &dummy, nullptr), -1);
                  EXPECT_EQ(vekValToStr(1, nullptr, nullptr), -1);
                  EXPECT_EQ(vekParamsDeleteStruct(4118, nullptr), -1);
                  EXPECT_EQ(vekParamsDeleteStruct(1, nullptr), -1);
              }),
              "");
    EXPECT_EQ(structure, &dummy);
    EXPECT_EQ(id, 4118);
    EXPECT_EQ(written(4118, nullptr), message(4118, "", 3, 5)) << "the header numbers are as they were";
}

TEST(Calls, ConvertDamagedMessagesAsFarAsTheyGo) {
    const std::string text = message(4112, "{MEDIA_NAME=m;FOCUS_VALUE=1;}");
    const auto bodyFor = [](const std::string &damaged, std::int32_t id = 0) {
        const structure_t structure(damaged.c_str(), id);
        return std::to_string(structure.id) + writtenBody(structure.id, structure.address);
    };
    EXPECT_EQ(bodyFor(text), "4112{MEDIA_NAME=m;FOCUS_VALUE=1.000000;}");
    EXPECT_EQ(bodyFor(text.substr(0, text.size() - 1)), "4112{FOCUS_VALUE=0.000000;}"); // wrong length
    EXPECT_EQ(bodyFor(text.substr(0, text.size() - 2) + "??"), "4112{MEDIA_NAME=m;FOCUS_VALUE=1.000000;}");
    EXPECT_EQ(bodyFor(text.substr(1), 4118), "4118{DEVICE_STATE=0;}"); // no start marker: the caller's id
    EXPECT_EQ(bodyFor("x", 4118), "4118{DEVICE_STATE=0;}");
}

TEST(Calls, TakeOneTextForThreeIds) {
    for (const std::int32_t id : {4160, 4189, 4192})
        EXPECT_EQ(structureOf(id, "{ID=77;}").as<IdRecord>().id, 77);
}

} // namespace
