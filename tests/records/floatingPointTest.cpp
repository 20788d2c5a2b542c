// Hosts that set up floating point in their own way: the calls give the same bytes, and leave control and status words
// as they were.
//
// What broke before: a host that unmasks exceptions was ended by a real beyond its float, and another rounding came out
// in most texts with reals.
#include "tests/support/messages.hpp"
#include "vek/records/device.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#if defined(__i386__) || defined(__x86_64__)

#    include <xmmintrin.h>

namespace {

using namespace vek;
using namespace vek::test;

// The control words of both units, and which exceptions have happened.
struct environment_t {
    const char *name;
    unsigned sse;
    std::uint16_t x87;
    bool operator==(const environment_t &) const = default;
};

constexpr environment_t ordinary{"ordinary", 0x1F80, 0x037F};
constexpr environment_t environments[] = {
    {"all exceptions end the process", 0x0000, 0x0340},
    {"rounding down", 0x3F80, 0x077F},
    {"rounding up", 0x5F80, 0x0B7F},
    {"rounding to zero", 0x7F80, 0x0F7F},
    {"small numbers are zero", 0x9FC0, 0x037F},
    {"reals of 24 bits", 0x1F80, 0x007F},
    {"reals of 53 bits", 0x1F80, 0x027F},
    {"all exceptions have happened", 0x1FBF, 0x037F},
    {"everything at once", 0xE040, 0x0840},
};

struct words_t {
    unsigned sse;
    std::uint16_t x87;
    std::uint16_t x87Status;
    bool operator==(const words_t &) const = default;
};

words_t words() {
    words_t now{_mm_getcsr(), 0, 0};
    asm volatile("fnstcw %0" : "=m"(now.x87));
    asm volatile("fnstsw %0" : "=m"(now.x87Status));
    return now;
}

void set(const environment_t &environment) {
    asm volatile("fnclex\n\tfldcw %0" : : "m"(environment.x87));
    _mm_setcsr(environment.sse);
}

// What a call does in an environment of the host's. Whether the words are the same behind it is told, too.
template <class Call>
std::string in(const environment_t &environment, Call call) {
    set(environment);
    const words_t before = words();
    call();
    const words_t after = words();
    set(ordinary);
    return before == after ? "" : std::string("the words have changed: ") + environment.name;
}

// Reals that no double or float holds, that only just, or that round.
std::vector<std::string> texts() {
    std::vector<std::string> all{
        message(4110, "{DELAY_VALUE_TABLE={{1e39,1,},{1e-50,1e-40,},{0.1,3e38,},};}"),
        message(4112, "{FOCUS_VALUE=1e400;}"),
        message(4112, "{FOCUS_VALUE=-1e-400;}"),
        message(4112, "{FOCUS_VALUE=4.9e-324;}"),
        message(4112, "{FOCUS_VALUE=2.2250738585072011e-308;}"),
        message(4112, "{FOCUS_VALUE=1.00000000000000011102230246251565404;}"),
        message(4112, "{FOCUS_VALUE=9007199254740993.0000001e23;}"),
        message(4112, "{FOCUS_VALUE=0.0000005;}"),
        message(4112, "{FOCUS_VALUE=123456789.0123455;}"),
        message(4165, "{W_SIZE_PIXEL=-12.9;H_SIZE_PIXEL=1e300;}"),
    };
    for (const sample_t &sample : samples())
        all.push_back(sample.text);
    return all;
}

struct roundTrip_t {
    std::int32_t id = 0;
    void *structure = nullptr;
    char *text = nullptr;

    void run(const char *from) {
        vekStrToVal(from, &id, &structure);
        vekValToStr(id, structure, &text);
    }
    std::string body() const { return bodyOf(text); }
    ~roundTrip_t() {
        vekParamsDelete(text);
        static_cast<void>(structure_t(id, structure)); // releases it
    }
};

TEST(FloatingPoint, OfTheHostNeitherMattersNorChanges) {
    for (const std::string &text : texts()) {
        roundTrip_t expected;
        expected.run(text.c_str());
        for (const environment_t &environment : environments) {
            roundTrip_t actual;
            EXPECT_EQ(in(environment, [&] { actual.run(text.c_str()); }), "") << text;
            EXPECT_EQ(actual.body(), expected.body()) << environment.name;
        }
    }
}

// Also an exception of the host's own that it has not yet noticed stays the host's.
TEST(FloatingPoint, ExceptionsThatWaitGoOnWaiting) {
    const structure_t focus = structureOf(4112, "{FOCUS_VALUE=0.1;}");
    const words_t before = words();
    const double zero = 0;
    std::uint16_t unmasked = 0x0340;
    asm volatile("fldl %0\n\tfld1\n\tfdivp\n\tfldcw %1" : : "m"(zero), "m"(unmasked) : "st");
    const words_t waiting = words();
    char *text = nullptr;
    vekValToStr(4112, focus.address, &text);
    const words_t after = words();
    asm volatile("fnclex\n\tfstp %%st(0)\n\tfldcw %0" : : "m"(before.x87));
    EXPECT_EQ(bodyOf(text), "{FOCUS_VALUE=0.100000;}");
    EXPECT_TRUE(after == waiting);
    vekParamsDelete(text);
}

// A host's own not-a-numbers, of the kind that signals, in a range that is compared.
TEST(FloatingPoint, NotANumbersOfTheHostSignalNothing) {
    const structure_t system = structureOf(4096, sampleOf(4096).body);
    for (const double value :
         {std::numeric_limits<double>::signaling_NaN(), std::numeric_limits<double>::denorm_min()}) {
        auto &range = system.as<DeviceInfo>().spinnerSpeed;
        range.setInterval(value, 1.0);
        const std::string expected = writtenBody(4096, system.address);
        for (const environment_t &environment : environments) {
            char *text = nullptr;
            EXPECT_EQ(in(environment, [&] { vekValToStr(4096, system.address, &text); }), "");
            EXPECT_EQ(bodyOf(text), expected) << environment.name;
            vekParamsDelete(text);
        }
    }
}

} // namespace

#endif
