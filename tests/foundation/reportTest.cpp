// Error reports, the memory exchange and the pause.

#include "tests/foundation/reports.hpp"
#include "vek/vek_std/std_sys/vek_stdlib.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

TEST(report, saysWhereAndWhat) {
    vek::signalError(nullptr, 0, nullptr);
    EXPECT_EQ(reported([] { EXPECT_EQ(vek::report("what"), 31); }), "\nwhat ; called from *unknown,0\n");
    vek::signalError("some/where", 4294967295U, nullptr);
    EXPECT_STREQ(vek::getLocation(), "some/where");
    EXPECT_EQ(vek::getLine(), 4294967295U);
    EXPECT_EQ(reported([] { vek::report("it"); }), "\nit ; called from some/where,-1\n");
}

TEST(swapMemory, exchangesEqualSizesOnly) {
    const std::string oldA = "abcdefghijkl", oldB = "ABCDEFGHIJKL";
    std::string a = oldA, b = oldB;
    EXPECT_EQ(reported([&] { EXPECT_EQ(vek::swapMemory(a.data(), b.data(), 3, 4), nullptr); }),
              "\n : DIFF_SZ_SWAP ; called from vek_std/std_sys/vek_stdlib,16\n");
    for (std::size_t size = 0; size < oldA.size(); ++size) {
        EXPECT_EQ(a + b, oldA + oldB);
        EXPECT_EQ(vek::swapMemory(a.data() + 1, b.data() + 1, size, size), a.data() + 1);
        vek::swapMemory(a.data(), a.data(), size, size);
        EXPECT_EQ(a.substr(1, size) + b.substr(1, size), oldB.substr(1, size) + oldA.substr(1, size));
        vek::swapMemory(a.data() + 1, b.data() + 1, size, size);
    }
}

TEST(pause, waitsForTheEndOfALine) {
    std::FILE *input = std::tmpfile();
    std::fputs("not yet\nleft\n", input);
    std::rewind(input);
    const int keyboard = dup(0);
    dup2(fileno(input), 0);
    std::ostringstream stream;
    stream << "before" << vek::pause;
    EXPECT_EQ(stream.str(), "before ...Hit enter");
    EXPECT_EQ(std::getchar(), 'l');
    stream << vek::pause << vek::pause; // the end of the input ends the waiting too
    dup2(keyboard, 0);
    close(keyboard);
    std::fclose(input);
    std::clearerr(stdin);
}

} // namespace
