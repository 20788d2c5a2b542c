// What the page keeps of each message: of one that no host reads its envelope is read alone, whatever stands in it.
#include "tests/support/messages.hpp"
#include "tools/page/core/logRows.hpp"
#include "vek/api/problem.hpp"
#include "vek/inspect/check/check.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

using namespace vek;
using namespace vek::inspect;

TEST(PageRows, OfMessagesThatNoHostReadsCostTheirEnvelope) {
    const std::size_t around = test::message(4112, "{NOTE=;}").size();
    for (const bool isTooLong : {false, true}) {
        const std::size_t size = longestReadableMessage - (isTooLong ? 0 : 1); // and a NUL
        const std::string text = test::message(4112, "{NOTE=" + std::string(size - around, 'x') + ";}");
        ASSERT_EQ(text.size() >= longestReadableMessage, isTooLong);
        page::logRows_t rows;
        std::string out;
        rows.take(text, out);
        rows.take("", out);
        page::row_t row{};
        ASSERT_EQ(out.size(), sizeof row);
        std::memcpy(&row, out.data(), sizeof row);
        const auto has = [&row](findingCode_t code) {
            const auto bit = static_cast<std::size_t>(code);
            return (row.findings[bit / 32] >> bit % 32 & 1) != 0;
        };
        EXPECT_EQ(has(findingCode_t::tooLong), isTooLong);
        EXPECT_EQ(has(findingCode_t::unknownKey), !isTooLong);
        EXPECT_TRUE(row.id == 4112 && row.size == text.size() && row.hasSequence == 1);
    }
}

} // namespace
