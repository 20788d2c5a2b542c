// The typed front as a host uses it: every message read, written and released, and what must not compile.
#include "tests/front/hostTest.hpp"
#include "tests/support/messages.hpp"
#include "vek/api/vekParams2ASCII.hpp"

#include <algorithm>
#include <cfenv>
#include <cstring>
#include <iterator>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

namespace {

using namespace vek;
using test::bodyOf;
using test::message;
using test::sampleOf;

template <class T>
concept parses = requires {
    parse<T>("");
    defaults<T>();
};
template <std::int32_t Id>
concept parsesById = requires {
    parse<Id>("");
};
template <class T>
concept prints = requires(const T &structure) {
    print(structure);
};
template <std::int32_t Id, class T>
concept printsAs = requires(const T &structure) {
    print<Id>(structure);
};

static_assert(parses<FocusValue> && prints<FocusValue> && prints<const JobPort>);
static_assert(!parses<Size> && !parses<MessageBase> && !parses<DeviceMedia> && !parses<const FocusValue>);
static_assert(!prints<DeviceId> && !prints<string_t> && !prints<owned_t<FocusValue>> && !prints<FocusValue *>);
// An id takes no other structure, and a structure of several messages needs the id.
static_assert(!parses<IdRecord> && !prints<IdRecord>);
static_assert(parsesById<4160> && printsAs<4160, IdRecord> && printsAs<4189, IdRecord> && printsAs<4192, IdRecord>);
static_assert(!printsAs<VEK_MSG_FOCUS_VALUE, Cassette> && !printsAs<VEK_MSG_INFO, IdRecord>);
static_assert(printsAs<VEK_MSG_DEVICE_INFO, DeviceInfo2> && !printsAs<VEK_MSG_DEVICE_INFO_2, DeviceInfo>);
// Ids without a structure, and no message's.
static_assert(!parsesById<4162> && !parsesById<4190> && !parsesById<4203> && !parsesById<4108> && !parsesById<0>);
// One owner, which knows how to release.
static_assert(!std::is_copy_constructible_v<owned_t<FocusValue>>);
static_assert(!std::is_convertible_v<owned_t<DeviceInfo2>, owned_t<DeviceInfo>>);

class FrontTest : public HostTest {};

TEST_F(FrontTest, ReadsAndWritesEveryMessageAndItsDefaults) {
    messages_t::forEach([&]<class Message>(Message) __attribute__((noinline)) {
        constexpr std::int32_t id = Message::id;
        SCOPED_TRACE(id);
        const std::string &text = sampleOf(id).text;
        EXPECT_EQ(messageId(text), id);
        const auto structure = parse<id>(text);
        const std::string written = print<id>(*structure);
        EXPECT_EQ(messageId(written), id);
        EXPECT_EQ(bodyOf(written), bodyOf(text));
        const std::string unset = print<id>(*defaults<id>());
        EXPECT_EQ(bodyOf(print<id>(*parse<id>(unset))), bodyOf(unset));
        if constexpr (soleStructure<typename Message::structure_t>) {
            const owned_t<typename Message::structure_t> again = parse<typename Message::structure_t>(written);
            EXPECT_EQ(bodyOf(print(*again)), bodyOf(text));
        }
    });
}

/// The text with its n-th pair left out, those of nested bodies not counted; the same text when it has no such pair.
std::string without(std::string text, int n) {
    int depth = 0;
    std::size_t begin = text.find('{') + 1;
    for (std::size_t i = begin - 1; i < text.size(); ++i) {
        depth += (text[i] == '{') - (text[i] == '}');
        if (text[i] == ';' && depth == 1) {
            if (n-- == 0)
                return test::message(messageId(text), text.erase(begin, i + 1 - begin).substr(text.find('{')));
            begin = i + 1;
        }
    }
    return text;
}

TEST_F(FrontTest, StructuresAreEqualAsTheirTextsAre) {
    messages_t::forEach([&]<class Message>(Message) __attribute__((noinline)) {
        constexpr std::int32_t id = Message::id;
        SCOPED_TRACE(id);
        const std::string &text = sampleOf(id).text;
        const auto whole = parse<id>(text);
        EXPECT_TRUE(*whole == *parse<id>(text));
        for (int n = 0; n < 40; ++n) {
            const auto part = parse<id>(without(text, n));
            const std::string printed = bodyOf(printLossy<id>(*part)); // some lack the count of their list
            EXPECT_EQ(*whole == *part, bodyOf(text) == printed) << n;
            typename Message::structure_t copy(*whole);
            EXPECT_TRUE(copy == *whole && !(copy != *whole)) << n;
            EXPECT_EQ(bodyOf(print<id>(copy)), bodyOf(text)) << n;
            copy = *part;
            EXPECT_TRUE(copy == *part) << n;
            EXPECT_EQ(bodyOf(printLossy<id>(copy)), printed) << n;
        }
    });
    static_assert(!std::equality_comparable_with<Media, string_t>);
    EXPECT_FALSE(static_cast<const DeviceInfo &>(DeviceInfo2()) == DeviceInfo()); // another message
    EXPECT_FALSE((vekColorValue{.flags = 1} == vekColorValue{.flags = 2}));
    EXPECT_FALSE((vekIdRecord{.id = 1} == vekIdRecord{.id = 2}));
}

TEST_F(FrontTest, ReadsViewsThatNoNulFollows) {
    const std::string text = "@@4118    38 7 41 {DEVICE_STATE=3;}!!";
    const std::vector<char> exact(text.begin(), text.end()); // nothing behind it may be read
    EXPECT_EQ(parse<DeviceState>({exact.data(), exact.size()})->deviceState, 3);
    EXPECT_EQ(parse<DeviceState>(std::string_view(text + "{}!!").substr(0, text.size()))->deviceState, 3);
    EXPECT_EQ(parse<DeviceState>({text.c_str(), text.size() + 1})->deviceState, 3); // its own NUL may be in the view
}

TEST_F(FrontTest, NamesEnumerationsAndKeepsTheKindOfWhatIsAssignedTo) {
    Media media;
    media.type = VEK_MEDIA_PLATE;
    EXPECT_TRUE(nameOf(media.type) == "mediaPlate_e" && nameOf<mediaType_t>(media.type) == "mediaPlate_e");
    media.type = 2;
    EXPECT_TRUE(media.type == VEK_MEDIA_PLATE && static_cast<mediaType_t>(media.type) == VEK_MEDIA_PLATE);
    EXPECT_EQ(nameOf(VEK_DATA_PATH_SCSI_CONNECTION), "SCSI_CONNECTION");
    EXPECT_EQ(nameOf<transport_t>(2), "");
    EXPECT_EQ(valueOf<exposurePolarity_t>("positive_e"), VEK_EXPOSURE_POSITIVE);
    EXPECT_EQ(valueOf<rangeType_t>("Discrete_e"), std::nullopt);
    EXPECT_EQ(parse<Media>(print(media))->type, VEK_MEDIA_PLATE);

    DeviceInfo first;
    DeviceInfo2 second;
    second.deviceName = "Drum";
    first = second;
    EXPECT_TRUE(first.kind == 0 && DeviceInfo2(second).kind == 40 && first.deviceName == "Drum");
    second = DeviceInfo2();
    std::vector<Cassette> cassettes(2);
    cassettes.erase(cassettes.begin());
    EXPECT_TRUE(second.kind == 40 && cassettes[0].kind == 4 && cassettes[0].media.kind == 2);
}

// Also on a stack that was used before; and all that C hosts rely on is as it is there.
TEST_F(FrontTest, PlainStructuresBeginAsZeros) {
    messages_t::forEach([]<class Message>(Message) __attribute__((noinline)) {
        using structure_t = typename Message::structure_t;
        if constexpr (std::is_aggregate_v<structure_t>) {
            static_assert(std::is_standard_layout_v<structure_t> && std::is_trivially_copyable_v<structure_t>);
            SCOPED_TRACE(Message::id);
            alignas(structure_t) char memory[sizeof(structure_t)];
            std::fill(std::begin(memory), std::end(memory), 'm');
            const auto *begun = new (memory) structure_t;
            structure_t zero;
            std::memset(static_cast<void *>(&zero), 0, sizeof zero);
            EXPECT_TRUE(*begun == zero);
        }
    });
}

TEST_F(FrontTest, AnswersWithTheEchoTagOfARefusedMessage) {
    (void)parse<DeviceState>(message(4118, "{DEVICE_STATE=1;}", 7, 41));
    problem_t problem;
    for (const auto &[text, id, echoTag, sequenceNumber] : {std::tuple("@@4112    99 -12345 8 {}!!", 4112, -12345, 8),
                                                            {"@@4161    71 7 44 {STATUS=3;LOW", 4161, 7, 44},
                                                            {"@@4112    29 2147483647 8 {}!?", 4112, INT32_MAX, 8},
                                                            {"@@4118    24 5 8 {}!!x", 4118, 5, 8},
                                                            {"@@4112    99 6", 4112, 6, 0},
                                                            {"@@4112", 4112, -1, 0},
                                                            {"@@", 0, -1, 0},
                                                            {"4112 99 6 7", 0, -1, 0}}) {
        EXPECT_EQ(parse<FocusValue>(text, problem), nullptr);
        EXPECT_TRUE(problem.numbers.id == id && problem.numbers.echoTag == echoTag &&
                    problem.numbers.sequenceNumber == sequenceNumber)
            << text;
        DeviceState state;
        state.deviceState = 3;
        const std::string plain = print(state).str();
        const std::int32_t next = std::stoi(plain.substr(plain.find(" 7 ") + 3)) + 1;
        EXPECT_EQ(plain, message(4118, "{DEVICE_STATE=3;}", 7, next - 1)); // the library's own tag is untouched
        EXPECT_EQ(reply(problem.numbers.echoTag, state), message(4118, "{DEVICE_STATE=3;}", echoTag, next));
        EXPECT_EQ(reply<VEK_MSG_ID_RECORD_4192>(echoTag, IdRecord{5}), message(4192, "{ID=5;}", echoTag, next + 1));
    }
    for (const std::size_t length : {std::size_t{99999}, std::size_t{100000}}) { // the echo tag counts
        std::string text(length - std::string("@@4202 ##### -12345678 4 {TYPE=FALSE;INFO=;}!!").size() - 1, 'i');
        (void)parse<DeviceState>(message(4118, "{}", 7, 3));
        const messageText_t large = reply(-12345678, Info{0, text.data()}, problem);
        EXPECT_EQ(large.size() + 1, length < 100000 ? length : 1);
        EXPECT_EQ(problem.code, length < 100000 ? problemCode_t::none : problemCode_t::tooLong);
        EXPECT_EQ(problem.offset, 0U);
    }
}

TEST_F(FrontTest, FillsContainersListsAndTexts) {
    CassetteArray cassettes;
    Cassette &cassette = cassettes.add();
    cassette.name = "A";
    cassette.punchSysName.add("P1");
    cassette.punchSysName.add(string_t("p2")).toUpper();
    cassette.numAvailablePunchSys = cassette.punchSysName.count();
    cassettes.add(cassette).name = "B";
    std::string seen;
    const auto read = parse<CassetteArray>(print(cassettes));
    for (const Cassette *one : *read) {
        seen += one->name.c_str();
        for (const string_t &name : one->punchSysName)
            seen += name.c_str();
    }
    EXPECT_EQ(seen, "AP1P2BP1P2");

    DeviceStatus status{};
    for (const char *text : {"Drum stopped", ""}) {
        setText(status.msgs[1], text);
        EXPECT_EQ(textOf(status.msgs[1]), text);
    }
    setText(status.msgs[0], std::string(300, 'x'));
    EXPECT_EQ(textOf(status.msgs[0]), std::string(254, 'x'));
    EXPECT_EQ(textOf({'n', 'o', ' ', 'e', 'n', 'd'}), "no end");
}

// Also what is looked at in the host's own module: a not-a-number that signals ends no host that would be ended by it.
TEST_F(FrontTest, LeavesFloatingPointToTheHost) {
    DeviceInfo device;
    device.spinnerSpeed.clear();
    device.spinnerSpeed.setInterval(std::numeric_limits<double>::signaling_NaN(), 4e-324);
    std::feclearexcept(FE_ALL_EXCEPT);
    feenableexcept(FE_ALL_EXCEPT);
    problem_t problem;
    const messageText_t text = print(device, problem);
    const std::size_t problems = check(device).size();
    const int happened = std::fetestexcept(FE_ALL_EXCEPT);
    fedisableexcept(FE_ALL_EXCEPT);
    EXPECT_EQ(problem.code, problemCode_t::notFinite);
    EXPECT_EQ(problem.text, "spinnerSpeed[0] is nan and would be read as 0: give it a number");
    EXPECT_TRUE(text.empty() && problems == 1 && happened == 0);
}

TEST_F(FrontTest, ALineHasNumbersOfItsOwn) {
    line_t line, other{100, INT32_MAX};
    const auto focus = line.parse<FocusValue>(message(4112, "{FOCUS_VALUE=3.000000;}", 7, 41));
    EXPECT_EQ(line.echoTag, 7);
    EXPECT_EQ(messageNumbers(line.print(*focus)).echoTag, 7);
    (void)parse<FocusValue>(message(4112, "{}", 9, 99)); // the process's
    const envelopeNumbers_t second = messageNumbers(line.print(*focus));
    EXPECT_TRUE(second.id == 4112 && second.echoTag == 7 && second.sequenceNumber == 43);
    const messageText_t wrapped = other.print<VEK_MSG_ID_RECORD_4189>(IdRecord{5});
    EXPECT_EQ(wrapped, message(4189, "{ID=5;}", 100, INT32_MIN));
    problem_t problem;
    EXPECT_EQ(line.parse<FocusValue>("@@4112    99 8 1 {}!!", problem), nullptr);
    focus->focusValue = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(line.print(*focus, problem).empty() && problem);
    EXPECT_TRUE(line.echoTag == 7 && line.sequenceNumber == 43); // nothing was taken or written
}

TEST_F(FrontTest, DispatchesEveryMessageToWhatTakesIt) {
    messages_t::forEach([]<class Message>(Message) __attribute__((noinline)) {
        constexpr std::int32_t id = Message::id;
        const std::string &text = sampleOf(id).text;
        const auto take = [](const typename Message::structure_t &structure, std::int32_t given) {
            return std::to_string(given) + bodyOf(print<id>(structure));
        };
        EXPECT_EQ(dispatch(text, take), std::to_string(id) + bodyOf(text));
    });
    line_t line;
    int kept = 0;
    const auto take = [&line, &kept](const std::string &text) {
        return line.dispatch(text,
                             overloaded{[](const DeviceInfo &device) { return device.kind; },
                                        [&kept](owned_t<FocusValue> focus) { return kept = int(focus->focusValue); },
                                        [](const problem_t &problem) { return -problem.numbers.echoTag; }});
    };
    EXPECT_TRUE(take(message(4112, "{FOCUS_VALUE=3.000000;}", 7, 41)) == 3 && kept == 3 && line.echoTag == 7);
    EXPECT_EQ(take(message(4136, "{}", 8, 42)), 40); // DeviceInfo2 is a DeviceInfo
    for (const std::string &refused : {message(4113, "{}", 9, 43), message(4203, "{}", 9, 43), message(1, "{}", 9, 43),
                                       message(-2147483647, "{}", 9, 43), std::string("@@4112    99 9 43 {}!!")})
        EXPECT_TRUE(take(refused) == -9 && line.echoTag == 8) << refused;
    EXPECT_EQ(take(""), 1);
    try {
        dispatch(message(4113, "{}"), [](const Media &) {});
        ADD_FAILURE();
    } catch (const messageError_t &error) {
        EXPECT_STREQ(error.what(), "no handler takes message 4113 (byte 2)");
    }
}

TEST_F(FrontTest, SaysThatATextWasCutAndCutsBetweenCharacters) {
    char name[8];
    for (const char *whole : {"", "1234567", "12345\xC3\xA9", "1234\xE2\x82\xAC"})
        EXPECT_TRUE(setText(name, whole) && textOf(name) == whole);
    for (const auto &[text, cut] :
         std::vector<std::pair<const char *, const char *>>{{"12345678", "1234567"},
                                                            {"123456\xC3\xA9", "123456"},
                                                            {"123456\xE2\x82\xAC", "123456"},
                                                            {"12345\xE2\x82\xAC", "12345"},
                                                            {"1234\xF0\x9F\x98\x80", "1234"},
                                                            {"1234567\xC3\xA9", "1234567"},
                                                            {"12345\xC3\xA9\xC3\xA9", "12345\xC3\xA9"},
                                                            {"123\x80\x80\x80\x80\x80", "123\x80\x80\x80\x80"}})
        EXPECT_TRUE(!setText(name, text) && textOf(name) == cut) << text;
}

TEST_F(FrontTest, MessagesAreSearchedLikeViews) {
    const messageText_t text = print(FocusValue());
    const std::string_view view = text;
    EXPECT_TRUE(text.starts_with("@@4112") && text.ends_with('!') && text.find('{') == view.find('{') &&
                text.rfind("!!") == view.size() - 2 && text.substr(2, 4) == "4112" && text[3] == '1' &&
                text.find_first_of("={") == view.find_first_of("={") && text.find_first_not_of('@') == 2 &&
                text.find_last_of('}') == view.size() - 3 && text.find_last_not_of('!') == view.size() - 3 &&
                std::equal(text.begin(), text.end(), view.begin(), view.end()) &&
                messageText_t().find('@') == text.npos);
}

} // namespace
