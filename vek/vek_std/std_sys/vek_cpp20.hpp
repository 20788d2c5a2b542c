// What every C++ header here needs, said in one line where it is missing.
#pragma once

#if (defined(_MSVC_LANG) ? _MSVC_LANG : __cplusplus) < 202002L
// A missing file ends the compilation with this one line; behind an #error everything that follows would add its own.
#    include "this header needs C++20: compile with -std=c++20 or /std:c++20"
#endif
