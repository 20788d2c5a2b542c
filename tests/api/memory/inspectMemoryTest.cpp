// The inspection calls without memory: each allocation of a process's first calls fails, alone or with all later ones.
// No call ends the process; one that fails says so in words, and with memory again all is as ever.
#include "tests/foundation/memory/failingMemory.hpp"
#include "tests/foundation/reports.hpp"
#include "vek/inspect/vekInspect.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

enum ending_t { completed = 10, failedOrSurvived, wrong };

using call_t = std::function<std::int32_t(char *, std::size_t)>;

constexpr std::string_view message = "@@4096   114 7 42 {DEVICE_INFO={DEVICE_NAME=a;};NUM_OF_CASETTE=4;"
                                     "RES_MOTOR={1,2.x,};UNKNOWN=5;INSIDE={{1,},};;}!!";
constexpr std::string_view json = R"({"id":4112,"name":"FOCUS_VALUE","echoTag":7,"sequenceNumber":42,)"
                                  R"("focusValue_t":{"MEDIA_NAME":"Violet","FOCUS_VALUE":"3.5"}})";
constexpr std::string_view wrongJson = R"({"id":4112,"focusValue_t":{"MEDIA_NAME":)";

ending_t attempt(const call_t &call, std::size_t n, bool andAllLater) {
    std::vector<char> buffer(1 << 20), again(buffer.size());
    memory::failAt(n, andAllLater);
    const std::int32_t result = call(buffer.data(), buffer.size());
    const bool hasFailed = memory::stopFailing() != 0;
    const std::int32_t expected = call(again.data(), again.size());
    if (result == expected && std::string_view(buffer.data()) == again.data())
        return hasFailed ? failedOrSurvived : completed;
    return hasFailed && result == -1 && std::string_view(buffer.data()) == "out of memory" ? failedOrSurvived : wrong;
}

// In a process of its own, so that the call is its first.
ending_t attemptInChild(const call_t &call, std::size_t n, bool andAllLater) {
    int status = 0;
    const std::string printed = reported([&] {
        const pid_t child = fork();
        if (child == 0)
            _exit(attempt(call, n, andAllLater));
        waitpid(child, &status, 0);
    });
    EXPECT_EQ(printed, "");
    return WIFEXITED(status) ? static_cast<ending_t>(WEXITSTATUS(status)) : wrong;
}

TEST(InspectMemory, CallsThatGetNoneSayIt) {
    const std::vector<call_t> calls{
        [](char *buffer, std::size_t room) { return vekInspectToJson(message.data(), message.size(), buffer, room); },
        [](char *buffer, std::size_t room) { return vekInspectFromJson(json.data(), json.size(), buffer, room); },
        [](char *buffer, std::size_t room) {
            return vekInspectFromJson(wrongJson.data(), wrongJson.size(), buffer, room);
        },
        [](char *buffer, std::size_t room) { return vekInspectCatalogue(buffer, room); }};
    for (const call_t &call : calls)
        for (const bool andAllLater : {false, true}) {
            ending_t ending = failedOrSurvived;
            std::size_t failed = 0;
            for (std::size_t n = 1; ending == failedOrSurvived; n += 1 + n / 20) { // later ones are much alike
                ending = attemptInChild(call, n, andAllLater);
                ASSERT_NE(ending, wrong) << "call " << &call - calls.data() << ", allocation " << n << andAllLater;
                ++failed;
            }
            EXPECT_GT(failed, 10U);
        }
}

TEST(InspectMemory, EveryRefusalHasWords) {
    char words[64], cut[4];
    EXPECT_EQ(vekInspectToJson(nullptr, 0, words, sizeof words), -1);
    EXPECT_STREQ(words, "there is no text: the pointer is null");
    EXPECT_EQ(vekInspectFromJson("", (std::size_t{1} << 30) + 1, words, sizeof words), -1);
    EXPECT_STREQ(words, "the text is larger than 1 GB");
    EXPECT_EQ(vekInspectFromJson("", 0, cut, sizeof cut), -1);
    EXPECT_STREQ(cut, "lin");
    EXPECT_EQ(vekInspectToJson(nullptr, 0, nullptr, 0), -1);
}

} // namespace
