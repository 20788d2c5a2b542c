// VEK_LIFETIMEBOUND: behind a parameter or member function whose result refers to it, so that compilers that can warn
// of views that outlive their text.
#pragma once

#include "vek/vek_std/std_sys/vek_cpp20.hpp"

#if defined(__has_cpp_attribute)
#    if __has_cpp_attribute(clang::lifetimebound)
#        define VEK_LIFETIMEBOUND [[clang::lifetimebound]]
#    endif
#endif
#ifndef VEK_LIFETIMEBOUND
#    define VEK_LIFETIMEBOUND
#endif
