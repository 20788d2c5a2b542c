// What the library makes of the process around it: its environment, its locale, its dynamic linker.
#include "tests/foundation/reports.hpp"
#include "tests/support/messages.hpp"
#include "vek/api/private/headerNumbers.hpp"
#include "vek/api/private/loadTime.hpp"
#include "vek/api/vekParams2ASCII.hpp"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <locale>
#include <string>
#include <unistd.h>

namespace {

using namespace vek;
using namespace vek::test;

TEST(LoadTime, ReadsTheDebugMode) {
    const structure_t structure = structureOf(4118, "{}");
    for (const auto &[mode, expected] : {std::pair("msgPrint", 1), {"MSGPRINT", 0}, {"msgPrint ", 0}, {"", 0}}) {
        setenv("PLOT_DEBUG_MODE", mode, 1);
        headerNumbers = {2, 3};
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

// A static object of a host's that converts when the process ends, behind all that the library has made since.
struct lastWords_t {
    const structure_t focus = structureOf(4112, "{FOCUS_VALUE=1.500000;}");
    CassetteArray cassettes;
    std::string expected;

    ~lastWords_t() {
        const bool isSame = writtenBody(4101, &cassettes) == expected &&
                            print(focus.as<const FocusValue>()).size() > 0 &&
                            converted(4112, "{MEDIA_NAME=x;}") == "{MEDIA_NAME=x;FOCUS_VALUE=0.000000;}";
        _exit(isSame ? 42 : 43);
    }
};

TEST(ProcessEnd, ComesBeforeTheLastMessages) {
    const auto exitWithWords = [] {
        static lastWords_t words;
        words.cassettes.add(nullptr);
        words.expected = writtenBody(4101, &words.cassettes);
        const bool isWhole = words.expected.find("VENDOR=normal;") != std::string::npos;
        std::exit(isWhole && print(words.focus.as<const FocusValue>()).size() > 0 ? 44 : 45);
    };
    EXPECT_EXIT(exitWithWords(), testing::ExitedWithCode(42), "");
}

// Makes a locale with a decimal comma the process's, having made one where none is installed.
bool setCommaLocale() {
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr)
        return true;
    const std::string folder = testing::TempDir() + "vekLocale" + std::to_string(getpid());
    const std::string make = "mkdir " + folder + " && localedef -i de_DE -f UTF-8 " + folder + "/de_DE.UTF-8";
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
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    const std::locale before = std::locale::global(std::locale(std::locale(), new comma_t));
    for (const sample_t &sample : samples())
        EXPECT_EQ(written(sample.id, structure_t(sample.text).address), message(sample.id, sample.body, 7, 42));
    EXPECT_EQ(converted(4112, "{FOCUS_VALUE=1e300;}").find_first_of(".,"), std::string("{FOCUS_VALUE=").size() + 301);
    EXPECT_EQ(converted(4112, "{FOCUS_VALUE=123456789012345678901,5;}"), "{FOCUS_VALUE=123456789012345683968.000000;}");
    EXPECT_EQ(printed([] { structureOf(123456, "{}"); }), "vekStrToVal: InvalidMsgId = 123456\n");
    std::locale::global(before);
    std::setlocale(LC_ALL, "C");
}

} // namespace
