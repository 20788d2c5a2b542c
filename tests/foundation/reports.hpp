#pragma once

// What a piece of code writes on the standard streams.

#include <gtest/gtest.h>

#include <string>

template <class Code>
std::string reported(Code code) {
    testing::internal::CaptureStderr();
    code();
    return testing::internal::GetCapturedStderr();
}

template <class Code>
std::string printed(Code code) {
    testing::internal::CaptureStdout();
    code();
    return testing::internal::GetCapturedStdout();
}
