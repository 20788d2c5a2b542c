// The framer: what comes out is the same however the bytes were cut, and a message that is whole is never lost.
#include "tests/support/framing.hpp"
#include "tests/support/messages.hpp"
#include "vek/api/vekParams2ASCII.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using namespace vek;
using test::framed;

std::string inOneGo(const std::string &bytes) {
    return framed(bytes, [&bytes] { return bytes.size(); });
}

TEST(Framer, TellsWhatIsNoMessageAndWhere) {
    using namespace std::string_literals;
    const std::string stream =
        "garb @ge\n@@4118    38 7 42 {DEVICE_STATE=1;}!!\r\n@@4118    38 7 42 {DEVICE_STATE=1;}!!\0"s
        "@@4161   134 8 9 {cut @@4118    38 9 42 {DEVICE_STATE=2;}!!@@@4118    38 7 42 "
        "{DEVICE_STATE=3;}!! xx @@ @@1 @@4118 999999 3 {}!! @@4118    38 6 42 {DEVICE_S\0ATE=4;}!!"s
        "@@4118    38 6 42 {DEVICE_S";
    constexpr const char *told = R"(0: bytes that are no message; 9 bytes are passed over
@@4118    38 7 42 {DEVICE_STATE=1;}!!
@@4118    38 7 42 {DEVICE_STATE=1;}!!
86: a message without a "!!" where its length says; 22 bytes are passed over
@@4118    38 9 42 {DEVICE_STATE=2;}!!
145: no message id behind "@@"; 1 byte is passed over
@@4118    38 7 42 {DEVICE_STATE=3;}!!
184: bytes that are no message; 6 bytes are passed over
190: a message without a length that it could have; 4 bytes are passed over
194: a message of 999999 characters with its NUL, of which 99999 are taken; 21 bytes are passed over
215: a NUL inside a message; 37 bytes are passed over
252: a message of 38 characters with its NUL that is cut off; 27 bytes are passed over
)";
    EXPECT_EQ(inOneGo(stream), told);
    for (std::size_t piece = 1; piece < stream.size(); ++piece)
        EXPECT_EQ(framed(stream, [piece] { return piece; }), told) << piece;
}

TEST(Framer, LosesNoMessageHoweverTheBytesAreCut) {
    std::mt19937 random(7);
    const auto below = [&random](std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
    };
    for (int round = 0; round < 300; ++round) {
        std::string stream;
        std::string whole;
        bool isDamaged = false;
        for (std::size_t count = 1 + below(8); count > 0; --count) {
            std::string text = test::samples()[below(test::samples().size())].text;
            whole += text + '\n';
            if (round % 2 != 0 && below(3) == 0) {
                isDamaged = true;
                if (below(2) == 0)
                    text.resize(below(text.size()));
                else
                    text[below(text.size())] = "@!0 9x"[below(6)];
            }
            stream += text + std::vector<std::string>{"", "\n", "\r\n", std::string(1, '\0')}[below(4)];
        }
        const std::string told = inOneGo(stream);
        EXPECT_TRUE(isDamaged || told == whole) << told;
        EXPECT_EQ(framed(stream, [] { return 1; }), told) << stream;
        EXPECT_EQ(framed(stream, [&below] { return 1 + below(200); }), told) << stream;
    }
}

TEST(Framer, GoesOnBehindWhatATakerThrew) {
    framer_t framer(100);
    int taken = 0;
    const std::string message = "@@4118    38 7 42 {DEVICE_STATE=1;}!!";
    const auto taker = overloaded{[&taken](std::string_view) {
                                      if (++taken == 1)
                                          throw taken;
                                  },
                                  [](const problem_t &problem) { EXPECT_EQ(problem.code, problemCode_t::aboveLimit); }};
    EXPECT_THROW(framer.feed(message + message.substr(0, 20), taker), int);
    framer.feed(message.substr(20) + "@@4118   101 7 42 {", taker);
    framer.finish(taker);
    EXPECT_TRUE(taken == 2 && framer.size() == 2 * message.size() + 19);
}

} // namespace
