// A test of the typed front, which never prints anything on standard output.
#pragma once

#include <gtest/gtest.h>

/// Fails when anything was printed. What is captured of a failing test is shown.
class HostTest : public testing::Test {
protected:
    void SetUp() override { testing::internal::CaptureStdout(); }
    void TearDown() override { EXPECT_EQ(testing::internal::GetCapturedStdout(), ""); }
};
