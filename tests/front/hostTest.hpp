// What the tests of the typed front share.
#pragma once

#include "api/envelope.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

/// Fails when anything was printed on standard output. What is captured of a failing test is shown.
class HostTest : public testing::Test {
protected:
    void SetUp() override { testing::internal::CaptureStdout(); }
    void TearDown() override { EXPECT_EQ(testing::internal::GetCapturedStdout(), ""); }
};

/// The body of a message, whose envelope must be right.
inline std::string bodyOf(const std::string &message) {
    vek::envelopeNumbers_t numbers;
    std::string_view body;
    EXPECT_EQ(vek::readEnvelope(message, numbers, body), vek::envelopeResult_t::correct) << message;
    return std::string(body);
}
