// The typed front as a host uses it: every message read, written and released, and what must not compile.
#include "support/messages.hpp"
#include "tests/front/hostTest.hpp"
#include "vek/api/vekParams2ASCII.hpp"

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace {

using namespace vek;
using test::bodyOf;
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
// A structure of several messages needs the id, and an id takes no other structure.
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
    messages_t::forEach([&]<class Message>(Message) {
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
    messages_t::forEach([&]<class Message>(Message) {
        constexpr std::int32_t id = Message::id;
        SCOPED_TRACE(id);
        const std::string &text = sampleOf(id).text;
        const auto whole = parse<id>(text);
        EXPECT_TRUE(*whole == *parse<id>(text));
        for (int n = 0; n < 40; ++n) {
            const auto part = parse<id>(without(text, n));
            const std::string printed = bodyOf(print<id>(*part));
            EXPECT_EQ(*whole == *part, bodyOf(text) == printed) << n;
            typename Message::structure_t copy(*whole);
            EXPECT_TRUE(copy == *whole && !(copy != *whole)) << n;
            EXPECT_EQ(bodyOf(print<id>(copy)), bodyOf(text)) << n;
            copy = *part;
            EXPECT_TRUE(copy == *part) << n;
            EXPECT_EQ(bodyOf(print<id>(copy)), printed) << n;
        }
    });
    static_assert(!std::equality_comparable_with<Media, string_t>);
    EXPECT_FALSE(static_cast<const DeviceInfo &>(DeviceInfo2()) == DeviceInfo()); // another message
}

TEST_F(FrontTest, ReadsViewsThatNoNulFollows) {
    const std::string text = "@@4118    38 7 41 {DEVICE_STATE=3;}!!";
    const std::vector<char> exact(text.begin(), text.end()); // nothing behind it may be read
    EXPECT_EQ(parse<DeviceState>({exact.data(), exact.size()})->deviceState, 3);
    EXPECT_EQ(parse<DeviceState>(std::string_view(text + "{}!!").substr(0, text.size()))->deviceState, 3);
    EXPECT_EQ(parse<DeviceState>({text.c_str(), text.size() + 1})->deviceState, 3); // its own NUL may be in the view
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

} // namespace
