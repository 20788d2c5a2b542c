// What a structure's text would lose: told with a code, the member and why, and nothing else told. The property: a
// structure without a problem, and no other, comes back from its text as it was.
#include "support/messages.hpp"
#include "tests/front/hostTest.hpp"
#include "vek/api/vekParams2ASCII.hpp"

#include <cmath>
#include <cstdio>
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
            info.deviceName.append("a\0b", 3);
        }),
        told(nulInText, "deviceName", " has a NUL at position 1, where its text would end: cut it there") +
            told(unnamedValue, "resolution.kind", " is 2 and would be read as 0: the values with a name are 0 to 1") +
            told(notFinite, "resolution[1]", " is inf and would be read as 0: give it a number") +
            told(rangeNotKept, "spinnerSpeed",
                 " is continuous with 3 values, but its smallest and its largest alone are written: keep these "
                 "two, or make it discrete") +
            told(rangeNotKept, "laserInt",
                 " is continuous and ends below -1.000000, which would be written as its end: make it discrete"));
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
    ExposeJob job{};
    job.punchParams.numSystems = 11;
    EXPECT_TRUE(!printLossy(job, problem).empty() && !problem);
}

// Goes over the values of a structure by its description: shows them all as text, or puts odd ones in.
class values_t {
public:
    values_t(void (*show)(recordVisitor_t &), void *structure) : base_(static_cast<char *>(structure)) {
        struct visitor_t : recordVisitor_t {
            explicit visitor_t(values_t &wanted) : values(wanted) {}
            void visit(const recordDescription_t &record) override {
                values.declared_ = static_cast<const char *>(record.address);
                values.addMembers(record.fields);
            }
            values_t &values;
        } visitor(*this);
        show(visitor);
    }

    std::string shown() const {
        std::string all;
        for (const fieldDescription_t &field : fields_)
            all += shown(field) + '\n';
        return all;
    }

    void changeOne(std::mt19937 &random) { change(fields_[random() % fields_.size()], random); }

private:
    void addMembers(const textGroup_t &group) {
        for (const textField_t *member = group.firstMember(); member != nullptr; member = member->nextMember()) {
            fieldDescription_t field;
            member->describe(field);
            if (field.group != nullptr) {
                addMembers(*field.group);
                continue;
            }
            for (const void **address : {&field.value, &field.countMember})
                if (*address != nullptr)
                    *address = base_ + (static_cast<const char *>(*address) - declared_);
            if (field.isSet != nullptr)
                field.isSet = reinterpret_cast<const std::uint8_t *>(base_) +
                              (reinterpret_cast<const char *>(field.isSet) - declared_);
            fields_.push_back(field);
        }
    }

    static std::string shown(double value) { return std::isnan(value) ? "nan" : sixDecimals(value); }
    static std::string sixDecimals(double value) {
        char text[400];
        return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, "%.6f", value))};
    }

    static std::string shown(const fieldDescription_t &field) {
        if (field.list == listKind_t::range)
            return shown(*static_cast<const valueRange_t *>(field.value));
        if (field.list == listKind_t::none)
            return field.isSet != nullptr && *field.isSet == 0 ? "not set" : shown(field, field.value, field.room);
        std::string all;
        const elementRun_t run = field.elements(field.value);
        const std::int32_t count = field.list == listKind_t::array && field.countMember != nullptr
                                       ? std::min(run.count, *static_cast<const std::int32_t *>(field.countMember))
                                       : run.count;
        for (std::int32_t i = 0; i < count; ++i) {
            void *element = elementOf(field, run, i);
            all += element == nullptr              ? "null"
                   : field.visitElement != nullptr ? values_t(field.visitElement, element).shown()
                                                   : shown(field, element, field.elementRoom);
            all += ',';
        }
        return all;
    }

    // A continuous range is its ends.
    static std::string shown(const valueRange_t &range) {
        if (range.isEmpty())
            return "no values";
        std::vector<double> values(range.begin(), range.end());
        if (range.kind != valueRange_t::discrete && values.size() == 1)
            values.push_back(values[0]);
        if (range.kind != valueRange_t::discrete && values.size() == 2 && values[1] < values[0])
            std::swap(values[0], values[1]);
        std::string all = std::to_string(range.kind);
        for (const double value : values)
            all += ',' + shown(range.kind == valueRange_t::discrete ? value : value + 0.0); // no zero with a sign
        return all;
    }

    static std::string shown(const fieldDescription_t &field, const void *value, std::int32_t room) {
        const auto as = [value]<class T>(const T &) -> const T & { return *static_cast<const T *>(value); };
        switch (field.kind) {
        case fieldKind_t::float64:
            return shown(as(double()));
        case fieldKind_t::float32:
            return shown(static_cast<double>(as(float())));
        case fieldKind_t::integer16:
            return std::to_string(as(std::int16_t()));
        case fieldKind_t::boolean:
            return std::to_string(as(std::uint8_t()));
        case fieldKind_t::text16: {
            std::string all;
            for (const char16_t c : static_cast<const wideStringField_t *>(value)->text())
                all += std::to_string(c) + ' ';
            return all;
        }
        case fieldKind_t::text:
            if (room >= 0)
                return std::string(static_cast<const char *>(value),
                                   strnlen(static_cast<const char *>(value), static_cast<std::size_t>(room)));
            if (field.isTextPointer)
                return as(static_cast<char *>(nullptr)) != nullptr ? as(static_cast<char *>(nullptr)) : "";
            return std::string(as(string_t()).c_str(), as(string_t()).length());
        case fieldKind_t::enumeration:
            if (field.enumeration == "range type")
                return {}; // shown with the values
            break;
        default:
            break;
        }
        return std::to_string(as(std::int32_t()));
    }

    static void *elementOf(const fieldDescription_t &field, const elementRun_t &run, std::int32_t i) {
        if (field.elementSize == 0)
            return static_cast<void *const *>(run.first)[i];
        return const_cast<char *>(static_cast<const char *>(run.first)) +
               static_cast<std::size_t>(i) * field.elementSize;
    }

    static void change(const fieldDescription_t &field, std::mt19937 &random) {
        auto *const value = const_cast<void *>(field.value);
        if (field.list == listKind_t::none)
            return change(field, value, field.room, random);
        if (field.list == listKind_t::range)
            static_cast<valueRange_t *>(value)->values().resize(static_cast<std::int32_t>(random() % 4));
        else if (field.list == listKind_t::growable && field.kind == fieldKind_t::text)
            static_cast<growableList_t<string_t> *>(value)->resize(static_cast<std::int32_t>(random() % 4));
        const elementRun_t run = field.elements(value);
        if (run.count == 0)
            return;
        void *element = elementOf(field, run, static_cast<std::int32_t>(random() % static_cast<unsigned>(run.count)));
        if (field.visitElement != nullptr)
            values_t(field.visitElement, element).changeOne(random);
        else
            change(field, element, field.elementRoom, random);
    }

    static void change(const fieldDescription_t &field, void *value, std::int32_t room, std::mt19937 &random) {
        static const double reals[] = {0.0, -0.0, -1.0, -2.5, 7.0, 1e-9, 1e300, infinity, -infinity, notANumber};
        static const std::string texts[] = {"",
                                            "\"",
                                            "\"x",
                                            "x\"y\"",
                                            "x\1",
                                            "abcdefg\5h",
                                            "\3",
                                            "=;,{}",
                                            " ",
                                            "TRUE",
                                            std::string("a\0b", 3),
                                            std::string("\0", 1),
                                            "\6\x7f\xff",
                                            "12345678\n",
                                            std::string(300, 'l'),
                                            std::string(400, '"'),
                                            "{}",
                                            "abcd\4"};
        const double real = reals[random() % std::size(reals)];
        const std::string &text = texts[random() % std::size(texts)];
        switch (field.kind) {
        case fieldKind_t::float64:
            *static_cast<double *>(value) = real;
            break;
        case fieldKind_t::float32:
            *static_cast<float *>(value) = std::fabs(real) == 1e300 ? 3e38F : static_cast<float>(real);
            break;
        case fieldKind_t::integer16:
            *static_cast<std::int16_t *>(value) = static_cast<std::int16_t>(random());
            break;
        case fieldKind_t::boolean:
            *static_cast<std::uint8_t *>(value) = static_cast<std::uint8_t>(random() % 4);
            break;
        case fieldKind_t::text:
            if (room >= 0)
                std::snprintf(static_cast<char *>(value), static_cast<std::size_t>(room), "%s", text.c_str());
            else if (!field.isTextPointer)
                static_cast<string_t *>(value)->replace(0, 400, text.data(), text.size());
            if (room >= 0 && text.size() > 200)
                std::fill_n(static_cast<char *>(value), room, text[0]);
            break;
        case fieldKind_t::enumeration:
            *static_cast<std::int32_t *>(value) = static_cast<std::int32_t>(random() % 12) - 1;
            break;
        case fieldKind_t::text16:
            static_cast<wideStringField_t *>(value)->clear();
            if (random() % 2 == 0)
                *static_cast<wideStringField_t *>(value) = std::u16string_view(u"\0x\xFFFF", random() % 4);
            break;
        default:
            *static_cast<std::int32_t *>(value) = static_cast<std::int32_t>(random() % 16) - 2;
            break;
        }
    }

    char *base_;
    const char *declared_ = nullptr;
    std::vector<fieldDescription_t> fields_;
};

TEST_F(CheckTest, TellsAProblemWhenAndOnlyWhenSomethingIsLost) {
    std::mt19937 random(1);
    int kept = 0, lost = 0;
    messages_t::forEach([&]<class Message>(Message) {
        using structure_t = typename Message::structure_t;
        constexpr auto show = &conversionOf<structure_t, typename Message::record_t>::visit;
        for (int round = 0; round < rounds(400); ++round) {
            const auto structure = parse<Message::id>(sampleOf(Message::id).text);
            for (int changes = static_cast<int>(random() % 3); changes >= 0; --changes)
                values_t(show, structure.get()).changeOne(random);
            const std::vector<problem_t> problems = check(*structure);
            (problems.empty() ? kept : lost) += 1;
            problem_t refusal;
            const messageText_t text = printLossy<Message::id>(*structure, refusal);
            if (refusal) {
                EXPECT_TRUE(refusal.code == problemCode_t::countAboveRoom && !problems.empty());
                continue;
            }
            const std::string before = values_t(show, structure.get()).shown();
            const std::string after = values_t(show, parse<Message::id>(text).get()).shown();
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
