// What a structure's text would lose: told with a code, the member and why, and nothing else told. The property: a
// structure without a problem, and no other, comes back from its text as it was.
#include "tests/front/hostTest.hpp"
#include "tests/support/messages.hpp"
#include "tests/support/structureValues.hpp"
#include "vek/api/vekParams2ASCII.hpp"

#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace vek;
using namespace vek::test;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

class CheckTest : public HostTest {};

template <class Structure>
std::string reported(const std::function<void(Structure &)> &change) {
    Structure structure{};
    change(structure);
    std::string all;
    for (const problem_t &problem : check(structure))
        all += std::to_string(static_cast<int>(problem.code)) + " [" + problem.member + "] " + problem.text + '\n';
    problem_t first;
    EXPECT_EQ(print<detail::idsOfStructure<Structure>.first>(structure, first).empty(), !all.empty());
    EXPECT_EQ(all.rfind(std::to_string(static_cast<int>(first.code)) + " [" + first.member + "] " + first.text, 0), 0U);
    return all;
}

std::string told(problemCode_t code, const std::string &member, const std::string &why) {
    return std::to_string(static_cast<int>(code)) + " [" + member + "] " + member + why + '\n';
}

TEST_F(CheckTest, TellsCodeMemberAndWhy) {
    using enum problemCode_t;
    const std::string quoted = " begins with a quotation mark and would be read as a quoted text: begin it otherwise";
    const std::string empty = " is empty, which has no place in a list: the later ones would move up; remove it";
    EXPECT_EQ(reported<FocusValue>([](auto &focus) {
                  focus.mediaName = "\"Violet";
                  focus.focusValue = -infinity;
              }),
              told(leadingQuote, "mediaName", quoted) +
                  told(notFinite, "focusValue", " is -inf and would be read as 0: give it a number"));
    EXPECT_EQ(
        reported<CassetteArray>([](auto &cassettes) {
            cassettes.add();
            Cassette &second = cassettes.add();
            cassettes.add(nullptr);
            second.media.size.height = notANumber;
            second.media.vendor = "a\2b";
            second.isInstalled = 2;
            second.inputType = 2;
            second.numAvailablePunchSys = 3;
            for (const char *name : {"P", "", "\"", ""})
                second.punchSysName.add(name);
        }),
        told(unnamedValue, "[1].inputType", " is 2 and would be read as 0: the values with a name are 0 to 1") +
            told(unknownFlag, "[1].isInstalled", " is 2, but a flag is 0 or 1 and would be read as 1") +
            told(surplusElements, "[1].punchSysName",
                 " has 4 elements, but [1].numAvailablePunchSys is 3, and no more are written: make the two agree") +
            told(emptyElement, "[1].punchSysName[1]", empty) + told(leadingQuote, "[1].punchSysName[2]", quoted) +
            told(reservedCode, "[1].media.vendor",
                 " has the control code 2 at position 1, which would be read as ';': leave it out") +
            told(notFinite, "[1].media.size.height", " is nan and would be read as 0: give it a number") +
            told(nullItem, "[2]", " is a null pointer and would be read as an item of its own: add an item or none"));
    EXPECT_EQ(
        reported<DeviceStatus>([](auto &status) {
            status.numOfMessages = 11;
            setText(status.msgs[2], "third");
            std::fill_n(status.msgs[9], sizeof status.msgs[9], 'x');
        }),
        told(countAboveRoom, "numOfMessages", " is 11, there is room for 10") + told(emptyElement, "msgs[0]", empty) +
            told(emptyElement, "msgs[1]", empty) + told(emptyElement, "msgs[3]", empty) +
            told(emptyElement, "msgs[4]", empty) + told(emptyElement, "msgs[5]", empty) +
            told(emptyElement, "msgs[6]", empty) + told(emptyElement, "msgs[7]", empty) +
            told(emptyElement, "msgs[8]", empty) +
            told(textTooLong, "msgs[9]", " fills its 255 characters and would lose the last: leave room for a NUL"));
    EXPECT_EQ(reported<ExposeJob>([](auto &job) { job.punchParams.numSystems = 11; }),
              told(countAboveRoom, "punchParams.numSystems", " is 11, there is room for 10"));
    EXPECT_EQ(
        reported<DeviceInfo2>([](auto &info) {
            info.resolution.setValues({1.0, infinity});
            info.resolution.kind = 2;
            info.spinnerSpeed.values().add(5.0);
            info.laserInt.clear();
            info.laserInt.setInterval(-5.0, -3.0);
            for (valueRange_t *range : {&info.focusValue, &info.resMotor})
                range->clear();
            info.focusValue.setInterval(2.0, 1.0);
            info.resMotor.setValues({3.0});
            info.resMotor.kind = valueRange_t::continuous;
            info.extra = 7;
            info.deviceName.append("a\0b", 3);
        }),
        told(nulInText, "deviceName", " has a NUL at position 1, where its text would end: cut it there") +
            told(unnamedValue, "resolution.kind", " is 2 and would be read as 0: the values with a name are 0 to 1") +
            told(notFinite, "resolution[1]", " is inf and would be read as 0: give it a number") +
            told(rangeNotKept, "spinnerSpeed",
                 " is continuous with 3 values, but its smallest and its largest alone are written: keep these "
                 "two, or make it discrete") +
            told(rangeNotKept, "laserInt",
                 " is continuous and ends below -1.000000, which would be written as its end: make it discrete") +
            told(rangeNotKept, "focusValue",
                 " is continuous with the larger end first, which would be written second: swap them") +
            told(rangeNotKept, "resMotor",
                 " is continuous with 1 value, which would be written as both its ends: give it two, or make it "
                 "discrete") +
            told(noKey, "extra", " is 7, but no key carries it and it would be read as 0: leave it 0"));
    EXPECT_EQ(reported<MediaOutput>([](auto &output) { output.maxOutput = infinity; }),
              told(notFinite, "maxOutput", " is inf and would be read as 0: give it a number"));
    EXPECT_EQ(reported<DeviceInfo>([](auto &info) {
                  info.resolution.setValues({1.0, 2.0}), info.resolution.kind = 2;
              }),
              told(unnamedValue, "resolution.kind", " is 2 and would be read as 0: the values with a name are 0 to 1"));
    EXPECT_EQ(reported<GdapiDataPath>([](auto &path) { path.gdapiDataPath = -1; }),
              told(unnamedValue, "gdapiDataPath", " is -1 and would be read as 0: the values with a name are 0 to 3"));
    const auto separations = parse<JobSepList>(message(4193, "{SEP_LIST={{67,\"\",0,},\"\",{66,0,},};}"));
    ASSERT_EQ(check(*separations).size(), 2U);
    EXPECT_EQ(check(*separations)[0].member + check(*separations)[1].member, "sepList[0]sepList[1]");
    EXPECT_EQ(check(*separations)[0].code, missingCharacter);
}

TEST_F(CheckTest, LossyPrintsAllTheSameButForWhatIsNotThere) {
    FocusValue focus;
    focus.mediaName = "\"Violet";
    problem_t problem;
    EXPECT_EQ(bodyOf(printLossy(focus)), "{MEDIA_NAME=\"Violet;FOCUS_VALUE=0.000000;}");
    EXPECT_TRUE(print(focus, problem).empty() && problem.code == problemCode_t::leadingQuote);
    EXPECT_THROW((void)print(focus), messageError_t);
    std::string out = "kept";
    EXPECT_TRUE(!printTo(out, focus, problem) && out == "kept");
    EXPECT_THROW(printTo(out, focus), messageError_t);
    focus.mediaName = "Violet";
    printTo(out, focus);
    EXPECT_EQ(out.substr(0, 10), "kept@@4112");

    DeviceStatus status{};
    status.numOfMessages = 11; // more texts than there are
    EXPECT_TRUE(printLossy(status, problem).empty() && problem.code == problemCode_t::countAboveRoom);
    ResIntTable table;
    table.numEntries = -2;
    EXPECT_TRUE(check(table).empty()); // there is no entry to be lost
    DeviceInfo device;
    device.focusValue.clear();
    device.focusValue.setInterval(-2.0, -1.0000004);
    EXPECT_TRUE(check(device).empty()); // it is written as -1.000000
    ExposeJob job{};
    job.punchParams.numSystems = 11;
    EXPECT_TRUE(!printLossy(job, problem).empty() && !problem);
}

TEST_F(CheckTest, TellsAProblemWhenAndOnlyWhenSomethingIsLost) {
    std::minstd_rand random(1);
    int kept = 0, lost = 0;
    messages_t::forEach([&]<class Message>(Message) __attribute__((noinline)) {
        using structure_t = typename Message::structure_t;
        constexpr auto show = &conversionOf<structure_t, typename Message::record_t>::visit;
        for (int round = 0; round < rounds(400); ++round) {
            const auto structure = parse<Message::id>(sampleOf(Message::id).text);
            for (int changes = static_cast<int>(random() % 3); changes >= 0; --changes)
                structureValues_t(show, structure.get()).changeOne(random);
            const std::vector<problem_t> problems = check(*structure);
            (problems.empty() ? kept : lost) += 1;
            problem_t refusal;
            const messageText_t text = printLossy<Message::id>(*structure, refusal);
            if (refusal) {
                EXPECT_TRUE(refusal.code == problemCode_t::countAboveRoom && !problems.empty());
                continue;
            }
            const std::string before = structureValues_t(show, structure.get()).shown();
            const std::string after = structureValues_t(show, parse<Message::id>(text).get()).shown();
            ASSERT_EQ(before == after, problems.empty()) << shown(text.view()) << '\n'
                                                         << (problems.empty() ? "nothing" : problems[0].text) << '\n'
                                                         << shown(before) << '\n'
                                                         << shown(after);
        }
    });
    EXPECT_GT(kept, rounds(2000));
    EXPECT_GT(lost, rounds(2000));
}

} // namespace
