// The four calls: what they do with every id, with null pointers, and with what stands around them.
#include "api/envelopeWriter.hpp"
#include "api/loadTime.hpp"
#include "records/status.hpp"
#include "support/messages.hpp"

#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <locale>
#include <malloc.h>
#include <set>
#include <string>
#include <unistd.h>

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

template <class Call>
std::string printedBy(Call call) {
    testing::internal::CaptureStdout();
    call();
    return testing::internal::GetCapturedStdout();
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
            const std::string line = printedBy([&] { result = vekStrToVal(input, &givenId, &structure); });
            EXPECT_EQ(givenId, id);
            EXPECT_EQ(result, row.reads == reads_t::refused ? -1 : 0) << id;
            EXPECT_EQ(line, refusal(row.reads == reads_t::refused, "vekStrToVal: InvalidMsgId = ", id));
            EXPECT_EQ(structure == &dummy, row.reads != reads_t::structure) << id;
            EXPECT_NE(structure, nullptr) << id;

            void *released = structure;
            const std::string releaseLine = printedBy([&] { result = vekParamsDeleteStruct(id, &released); });
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
        printedBy([&] { vekParamsDeleteStruct(id, &none); });
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
        EXPECT_EQ(printedBy([&] { result = vekValToStr(id, nullptr, &text); }), "");
        EXPECT_EQ(result, 0) << id;
        EXPECT_EQ(text, message(id, "", -1, 1));
        EXPECT_GE(malloc_usable_size(text), 40960U) << id;
        vekParamsDelete(text);
        if (row.writes == writes_t::body)
            continue;
        EXPECT_EQ(printedBy([&] { result = vekValToStr(id, &dummy, &text); }),
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
    EXPECT_EQ(printedBy([&] {
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

TEST(LoadTime, ReadsTheDebugMode) {
    const structure_t structure = structureOf(4118, "{}");
    for (const auto &[mode, expected] : {std::pair("msgPrint", 1), {"MSGPRINT", 0}, {"msgPrint ", 0}, {"", 0}}) {
        setenv("PLOT_DEBUG_MODE", mode, 1);
        headerNumbers = {1, 2, 3};
        setUpAtLoad();
        EXPECT_EQ(debugSwitch, expected) << mode;
        EXPECT_EQ(written(4118, structure.address), message(4118, "{DEVICE_STATE=0;}", -1, 1)) << mode;
    }
    unsetenv("PLOT_DEBUG_MODE");
    setUpAtLoad();
    EXPECT_EQ(debugSwitch, 0);
}

TEST(LoadTime, ComesBeforeEverything) {
    setenv("PLOT_DEBUG_MODE", "msgPrint", 1);
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // in a process of its own, which sets up as it is loaded
    EXPECT_EXIT(std::exit(40 + debugSwitch), testing::ExitedWithCode(41), "");
    unsetenv("PLOT_DEBUG_MODE");
}

// Makes a locale with a decimal comma the process's. Where none is installed, one is made for this process.
bool setCommaLocale() {
    for (const char *name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de_DE", "ru_RU.UTF-8"})
        if (std::setlocale(LC_ALL, name) != nullptr)
            return true;
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("vekLocale" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    const std::string make = "localedef -i de_DE -f UTF-8 '" + (folder / "de_DE.UTF-8").string() + "'";
    const bool isMade = std::system(make.c_str()) == 0;
    setenv("LOCPATH", folder.c_str(), 1);
    const bool isSet = isMade && std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    unsetenv("LOCPATH");
    std::filesystem::remove_all(folder);
    return isSet;
}

class comma_t : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\1"; }
};

TEST(Locale, HasNoInfluence) {
    ASSERT_TRUE(setCommaLocale()) << "this test needs a locale with a decimal comma, or localedef and its sources";
    std::array<char, 8> half{};
    std::snprintf(half.data(), half.size(), "%.1f", 0.5);
    ASSERT_STREQ(half.data(), "0,5");
    const std::locale before = std::locale::global(std::locale(std::locale(), new comma_t));
    for (const sample_t &sample : samples())
        EXPECT_EQ(written(sample.id, structure_t(sample.text).address), message(sample.id, sample.body, 7, 42));
    EXPECT_EQ(converted(4112, "{FOCUS_VALUE=1234567.5;}"), "{FOCUS_VALUE=1234567.500000;}");
    EXPECT_EQ(converted(4112, "{FOCUS_VALUE=1e300;}").find_first_of(".,"), std::string("{FOCUS_VALUE=").size() + 301);
    EXPECT_EQ(converted(4112, "{FOCUS_VALUE=123456789012345678901,5;}"), "{FOCUS_VALUE=123456789012345683968.000000;}");
    EXPECT_EQ(printedBy([] { structureOf(123456, "{}"); }), "vekStrToVal: InvalidMsgId = 123456\n");
    std::locale::global(before);
    std::setlocale(LC_ALL, "C");
}

#ifdef VEK_SHARED_LIBRARY
TEST(SharedLibrary, ExportsExactlyTheFourCalls) {
    FILE *list = popen("nm -D --defined-only '" VEK_SHARED_LIBRARY "'", "r");
    ASSERT_NE(list, nullptr);
    std::set<std::string> exported;
    for (char line[200]; std::fgets(line, sizeof line, list) != nullptr;)
        exported.insert(std::string(line).substr(17)); // behind the address
    pclose(list);
    EXPECT_EQ(exported, (std::set<std::string>{"T vekParamsDelete\n", "T vekParamsDeleteStruct\n", "T vekStrToVal\n",
                                               "T vekValToStr\n"}));
}

TEST(SharedLibrary, SetsUpTheHeaderNumbersAsItIsLoaded) {
    void *library = dlopen(VEK_SHARED_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto write = reinterpret_cast<decltype(&vekValToStr)>(dlsym(library, "vekValToStr"));
    const auto release = reinterpret_cast<decltype(&vekParamsDelete)>(dlsym(library, "vekParamsDelete"));
    char *text = nullptr;
    EXPECT_EQ(write(4112, nullptr, &text), 0);
    EXPECT_STREQ(text, "@@4112    21 -1 1 !!");
    release(text);
    dlclose(library);
}
#endif

} // namespace
