// The four calls: what they do with every id, with null pointers, and with what stands around them.
#include "tests/foundation/reports.hpp"
#include "tests/support/messages.hpp"
#include "vek/api/private/headerNumbers.hpp"
#include "vek/api/private/plainEnvelope.hpp"
#include "vek/records/status.hpp"

#include <gtest/gtest.h>

#include <malloc.h>
#include <random>
#include <string>

namespace {

using namespace vek;
using namespace vek::test;

// What a call does with an id: `full` with its structure, `none` without one.
enum class does_t { full, none, refused };
using enum does_t;

struct row_t {
    std::int32_t first, last;
    does_t reads, writes, releases;
};

// Written down once more on purpose: the three calls agree about few ids, and every one of these is a promise.
constexpr row_t rows[] = {
    {4096, 4107, full, full, full},      {4110, 4119, full, full, full}, {4129, 4132, full, full, full},
    {4135, 4136, full, full, refused},   {4160, 4161, full, full, full}, {4162, 4162, none, refused, none},
    {4163, 4165, full, full, full},      {4171, 4172, full, full, full}, {4174, 4175, none, refused, none},
    {4178, 4180, none, refused, none},   {4182, 4183, full, full, full}, {4188, 4189, full, full, full},
    {4190, 4191, none, none, none},      {4192, 4195, full, full, full}, {4202, 4202, full, full, full},
    {4203, 4203, none, refused, refused}};

row_t rowOf(std::int32_t id) {
    for (const row_t &row : rows)
        if (id >= row.first && id <= row.last)
            return row;
    return {id, id, refused, refused, refused};
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

std::size_t roomOf(char *text) {
#ifdef _WIN32
    return _msize(text);
#else
    return malloc_usable_size(text);
#endif
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
            EXPECT_EQ(result, row.reads == refused ? -1 : 0) << id;
            EXPECT_EQ(line, refusal(row.reads == refused, "vekStrToVal: InvalidMsgId = ", id));
            EXPECT_EQ(structure == &dummy, row.reads != full) << id;
            EXPECT_NE(structure, nullptr) << id;

            void *released = structure;
            const std::string releaseLine = printed([&] { result = vekParamsDeleteStruct(id, &released); });
            const bool isRefused = row.releases == refused;
            EXPECT_EQ(result, isRefused ? -1 : 0) << id;
            EXPECT_EQ(releaseLine, refusal(isRefused, "vekStrToVal: InvalidMsgId = ", id));
            EXPECT_EQ(released, row.releases == none ? nullptr : structure) << id;
            if (isRefused && row.reads == full) { // still alive
                const structure_t owner(id, structure);
                EXPECT_NE(writtenBody(id, structure), "") << id;
            }
        }
        void *none = nullptr;
        printed([&] { vekParamsDeleteStruct(id, &none); });
        EXPECT_EQ(none, nullptr);
    }
}

// With a character or two of its head or its end changed, of which the length may stay right.
TEST(Calls, TakeAPlainEnvelopeForWhatItIs) {
    std::mt19937 random(7);
    const auto below = [&random](std::size_t count) { return random() % count; };
    const std::string_view characters = "0123456789 -+@!\t/:{";
    int plain = 0, whole = 0;
    for (int round = 0; round < rounds(100000); ++round) {
        const auto number = [&] { return static_cast<std::int32_t>(random()) >> below(32); };
        std::string text = message(4118, std::string(below(2) * below(12000), 'x'), number(), number());
        const std::size_t changes = below(4) < 3 ? below(3) : 0, head = std::min<std::size_t>(text.size(), 36);
        for (std::size_t i = 0; i < changes; ++i)
            text[below(8) != 0 ? below(head) : text.size() - 1 - below(3)] = characters[below(characters.size())];
        plainEnvelope_t read;
        const bool isPlain = read.read(text);
        plain += isPlain && changes > 0 ? 1 : 0;
        whole += isPlain && changes == 0 ? 1 : 0;
        if (!isPlain)
            continue;
        const envelope_t envelope = readEnvelope(text);
        const envelopeNumbers_t numbers = envelope.head.numbers();
        ASSERT_EQ(envelope.result, envelopeResult_t::correct) << text;
        ASSERT_TRUE(envelope.head.id.isThere && envelope.head.echoTag.isThere && envelope.head.sequenceNumber.isThere);
        ASSERT_EQ(read.id, numbers.id) << text;
        ASSERT_EQ(read.echoTag, numbers.echoTag) << text;
        ASSERT_EQ(read.sequenceNumber, numbers.sequenceNumber) << text;
        ASSERT_EQ(read.body.data(), envelope.body.data()) << text;
        ASSERT_EQ(read.body.size(), envelope.body.size()) << text;
    }
    EXPECT_GT(plain, rounds(100000) / 20);
    EXPECT_GT(whole, rounds(100000) / 5);
}

TEST(Calls, WriteEveryIdAsTheCatalogueSays) {
    for (const std::int32_t id : idsToTry()) {
        const row_t row = rowOf(id);
        const auto expectText = [&](void *structure, bool isRefused, const std::string &expected) {
            std::int32_t result = 1;
            char *text = nullptr;
            EXPECT_EQ(printed([&] { result = vekValToStr(id, structure, &text); }),
                      refusal(isRefused, "vekValToStr: Invalid msg ID = ", id));
            EXPECT_EQ(result, isRefused ? -1 : 0) << id;
            EXPECT_EQ(text, expected);
            EXPECT_GE(roomOf(text), 40960U) << id;
            vekParamsDelete(text);
        };
        headerNumbers = headerNumbers_t();
        expectText(nullptr, false, message(id, "", -1, 1));
        if (row.writes != full)
            expectText(&dummy, row.writes == refused, "");
    }
}

TEST(Calls, GiveTextsTheRoomOfTheirBodyAnd256) {
    for (std::size_t length = 0; length < 3000; length += length % 256 < 20 ? 1 : 29) {
        std::string body(length, 'i');
        Info info{1, body.data()};
        char *text = nullptr;
        ASSERT_EQ(vekValToStr(4202, &info, &text), 0);
        EXPECT_GE(roomOf(text), bodyOf(text).size() + 256) << text;
        vekParamsDelete(text);
    }
    vekParamsDelete(nullptr);
}

TEST(Calls, RefuseNullPointersAndTheEmptyTextInSilence) {
    headerNumbers = {3, 4};
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

} // namespace
